#pragma once

#include <string>

namespace qv {

// What the page is told about the tool server; JSON texts.

/// Who has the server's port.
enum class McpOwner { kNone, kSelf, kOther };

/// Whether this pane's server runs, and else whether somebody has its port.
[[nodiscard]] std::wstring McpStatusAnswer(McpOwner owner);
/// After a start; any owner but this pane's server is a failure.
[[nodiscard]] std::wstring McpStartAnswer(McpOwner owner);
/// After a stop.
[[nodiscard]] std::wstring McpStopAnswer();

}  // namespace qv
