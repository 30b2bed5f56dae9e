#pragma once

#include <string>

#include "tools/tool_context.h"

namespace qv {

// The tools that list, show, add, delete and rename sheets. Host UI thread.

// The sheets of the workbook that is active, whichever one the pane is pinned to:

/// "excelListSheets": place, name and which one is active. Logs every step.
[[nodiscard]] std::wstring ListSheets(const ToolContext& context, const std::wstring& json);
/// "excelSetActiveSheet": shows a sheet.
[[nodiscard]] std::wstring SetActiveSheet(const ToolContext& context, const std::wstring& json);

// The sheets of the pane's own workbook:

/// "excelAddSheet": a new sheet before or after another one, else behind the last one.
[[nodiscard]] std::wstring AddSheet(const ToolContext& context, const std::wstring& json);
[[nodiscard]] std::wstring DeleteSheet(const ToolContext& context, const std::wstring& json);
[[nodiscard]] std::wstring RenameSheet(const ToolContext& context, const std::wstring& json);

}  // namespace qv
