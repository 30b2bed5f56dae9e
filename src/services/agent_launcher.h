#pragma once

#include <string>

#include "services/agent_kinds.h"
#include "services/opencode_config.h"

namespace qv {

/// Starts an agent in a console of its own, in the agent workspace or, where that cannot be, in the user's
/// profile folder. OpenCode finds its configuration there and in its environment, with `access`. A host that
/// runs elevated starts it with the desktop's rights where it can. The text of what went wrong, or empty.
/// Worker thread.
[[nodiscard]] std::wstring LaunchAgent(AgentKind kind, const ProxyAccess& access);

}  // namespace qv
