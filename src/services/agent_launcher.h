#pragma once

#include <string>

#include "services/agent_kinds.h"
#include "services/console_start.h"
#include "services/opencode_config.h"

namespace qv {

/// What a launch asks of the system; tests have their own.
struct LaunchSystem {
  bool (*isElevated)() = &IsProcessElevated;
  DesktopShell (*findDesktopShell)() = &FindDesktopShell;
  unsigned long (*startAsDesktop)(const ConsoleProgram& program,
                                  const std::wstring& directory) = &StartInConsoleAsDesktop;
};

/// Starts an agent in a console of its own, in the agent workspace or, where that cannot be, in the user's
/// profile folder. OpenCode finds its configuration there and in its environment, with `access`. A host that
/// runs elevated starts it with the desktop's rights or not at all; only where the desktop has no lesser ones
/// it gets the host's. The text of what went wrong, or empty. Worker thread.
[[nodiscard]] std::wstring LaunchAgent(AgentKind kind, const ProxyAccess& access,
                                       const LaunchSystem& system = {});

}  // namespace qv
