#include "services/agent_detection.h"

#include <future>
#include <optional>
#include <string>

#include "services/agent_files.h"
#include "services/agent_places.h"
#include "services/named_lock.h"

namespace qv {
namespace {

AgentInfo Detect(const AgentKindRow& row) {
  std::optional<NamedLock> ownCopy;
  if (row.kind == AgentKind::kOpenCode) ownCopy.emplace(kOwnCopyLock, kOwnCopyPatience);
  AgentInfo agent;
  agent.id = row.id;
  agent.name = row.name;
  agent.command = row.command;
  agent.path = AgentExecutable(row.kind);
  agent.installed = !agent.path.empty();
  agent.bundled = agent.installed && agent.path.starts_with(OpenCodeDirectory() + L'\\');
  agent.installable = row.installable;
  if (!agent.bundled) ownCopy.reset();
  // A copy that is just being replaced says nothing of itself, and is not to be held in use.
  const bool isBeingReplaced = ownCopy && !*ownCopy;
  if (agent.installed && !isBeingReplaced) agent.version = GetAgentVersion(agent.path);
  agent.mcpConfigured = IsAgentConfigured(row.kind);
  agent.configPath = AgentConfigPath(row.kind);
  return agent;
}

}  // namespace

std::vector<AgentInfo> DetectAgents() {
  std::vector<std::future<AgentInfo>> running;
  for (const AgentKindRow& row : AgentKinds())
    running.push_back(std::async(std::launch::async, &Detect, row));
  std::vector<AgentInfo> agents;
  for (std::future<AgentInfo>& one : running)
    agents.push_back(one.get());
  return agents;
}

}  // namespace qv
