#pragma once

#include <string>

#include "tools/tool_context.h"

namespace qv {

/// "excelChartCreate": a chart of a range on its sheet. Nothing is left of one that cannot be finished. Host
/// UI thread.
[[nodiscard]] std::wstring ChartCreate(const ToolContext& context, const std::wstring& json);

}  // namespace qv
