#pragma once

#include <span>
#include <string>
#include <string_view>

#include "tools/tool_context.h"

namespace qv {

/// Takes the JSON text of the arguments and gives the JSON text of the result. Bad arguments and what the
/// host refuses are results with the single key "error", never exceptions.
using ToolHandler = std::wstring (*)(const ToolContext& context, const std::wstring& json);

/// One named action.
struct WorkbookTool {
  std::wstring_view action;
  ToolHandler run;
};

/// Every tool, in the order in which names are compared.
[[nodiscard]] std::span<const WorkbookTool> WorkbookToolTable();

/// Runs the tool whose name equals the action (case matters). An unknown action and a missing Application
/// have results of their own. Host UI thread.
[[nodiscard]] std::wstring RunWorkbookTool(const ToolContext& context, std::wstring_view action,
                                           const std::wstring& json);

}  // namespace qv
