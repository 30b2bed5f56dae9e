#pragma once

#include <optional>
#include <string>

#include "services/agent_answers.h"
#include "services/agent_kinds.h"
#include "services/opencode_config.h"

namespace qv {

// The configuration files of other programs, which are the user's property: copied before they are changed,
// replaced in one step, by one of the user's hosts at a time. Worker threads.

/// Writes the tool server's entry into an agent's configuration. `access` is what OpenCode's file names; its
/// file is written whole. A file that its owner is just writing is waited for, about a second. What cannot be
/// changed safely is left as it is, with the reason in the result.
[[nodiscard]] ConfigureResult ConfigureAgent(AgentKind kind, const ProxyAccess& access);

/// Writes OpenCode's file into the agent workspace for a launch, without a copy of the former one. The text
/// of what went wrong, or empty.
[[nodiscard]] std::wstring WriteOpenCodeConfig(const ProxyAccess& access);

/// Whether an agent's configuration points it at the tool server.
[[nodiscard]] bool IsAgentConfigured(AgentKind kind);

}  // namespace qv
