#pragma once

#include <string>

#include "tools/tool_context.h"

namespace qv {

/// "excelRemoveDuplicates": the host's own removal of rows that repeat an earlier one. Hosts compare without
/// regard to case; where the case was to count and would make a difference, nothing is removed. Host UI
/// thread.
[[nodiscard]] std::wstring RemoveDuplicates(const ToolContext& context, const std::wstring& json);

}  // namespace qv
