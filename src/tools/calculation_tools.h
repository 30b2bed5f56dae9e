#pragma once

#include <string>

#include "tools/tool_context.h"

namespace qv {

// The tools around the host's calculation. Host UI thread.

/// "excelCalcSetMode"
[[nodiscard]] std::wstring CalcSetMode(const ToolContext& context, const std::wstring& json);
/// "excelCalculateNow"
[[nodiscard]] std::wstring CalculateNow(const ToolContext& context, const std::wstring& json);
/// "excelCalcGetMode"
[[nodiscard]] std::wstring CalcGetMode(const ToolContext& context, const std::wstring& json);

}  // namespace qv
