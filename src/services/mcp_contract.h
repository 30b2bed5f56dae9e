#pragma once

#include <span>
#include <string_view>

namespace qv {

/// One tool as agents see it. The schema is the JSON text of an object; the description needs no escapes.
struct McpTool {
  std::wstring_view name;
  std::wstring_view description;
  std::wstring_view inputSchema;
};

/// The tools in the order in which they are listed.
[[nodiscard]] std::span<const McpTool> McpToolTable();

/// What an agent is told about the server as a whole.
[[nodiscard]] std::wstring_view McpInstructions();

/// The workbook action behind an agent's tool and its argument "action" (case matters); empty when there is
/// none.
[[nodiscard]] std::wstring_view WorkbookActionOf(std::wstring_view tool, std::wstring_view action);

}  // namespace qv
