#pragma once

#include <string>

#include "tools/tool_context.h"

namespace qv {

/// "excelMergeCells" and "excelUnmergeCells". Host UI thread.
[[nodiscard]] std::wstring MergeCells(const ToolContext& context, const std::wstring& json);
[[nodiscard]] std::wstring UnmergeCells(const ToolContext& context, const std::wstring& json);

}  // namespace qv
