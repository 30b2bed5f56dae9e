#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "services/agent_kinds.h"

namespace qv {

/// The bytes of Claude Code's or Codex's configuration file with an entry for the tool server. A byte order
/// mark stays. Nothing when the file is to be left alone: it is not UTF-8, or see `WithCodexEntry` and
/// `WithClaudeEntry`.
[[nodiscard]] std::optional<std::string> WithMcpEntry(AgentKind kind, std::string_view bytes);

/// Whether the bytes of an agent's configuration file point it at the tool server.
[[nodiscard]] bool PointsAtMcpServer(AgentKind kind, std::string_view bytes);

}  // namespace qv
