#pragma once

#include <vector>

#include "services/agent_answers.h"

namespace qv {

/// What is known of every agent on this machine now, in the order of `AgentKinds`. Runs each one that is
/// there, all at once, for at most 5 s. Worker thread.
[[nodiscard]] std::vector<AgentInfo> DetectAgents();

}  // namespace qv
