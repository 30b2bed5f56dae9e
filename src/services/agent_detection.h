#pragma once

#include <vector>

#include "services/agent_answers.h"

namespace qv {

/// What is known of every agent on this machine now, in the order of `AgentKinds`. Runs each one that is
/// there, all at once, for at most 5 s; while the add-in's own copy is being replaced that is waited for, for
/// at most 6 s, and its version stays unknown. Worker thread.
[[nodiscard]] std::vector<AgentInfo> DetectAgents();

}  // namespace qv
