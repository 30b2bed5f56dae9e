#pragma once

#include <string>

#include "tools/tool_context.h"

namespace qv {

// The tools that change how cells look. Host UI thread.

/// "excelFormatRange": font, fill, alignment, wrapping, number format and borders of a range.
[[nodiscard]] std::wstring FormatRange(const ToolContext& context, const std::wstring& json);

/// "excelSetSize": widths of columns and heights of rows.
[[nodiscard]] std::wstring SetSize(const ToolContext& context, const std::wstring& json);

}  // namespace qv
