#include "services/agent_answers.h"

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

std::wstring AgentJson(const AgentInfo& agent) {
  return Concat(L"{\"id\":", JsonQuote(agent.id), L",\"name\":", JsonQuote(agent.name), L",\"command\":",
                JsonQuote(agent.command), L",\"path\":", JsonQuote(agent.path), L",\"version\":",
                JsonQuote(agent.version), L",\"installed\":", BoolWord(agent.installed), L",\"bundled\":",
                BoolWord(agent.bundled), L",\"installable\":", BoolWord(agent.installable),
                L",\"mcpConfigured\":", BoolWord(agent.mcpConfigured), L",\"configPath\":",
                JsonQuote(agent.configPath), L"}");
}

/// The member with a comma ahead, or nothing for an empty value.
std::wstring OptionalMember(std::wstring_view name, std::wstring_view value) {
  return value.empty() ? std::wstring() : Concat(L",", JsonQuote(name), L":", JsonQuote(value));
}

}  // namespace

std::wstring AgentListJson(const std::vector<AgentInfo>& agents) {
  std::wstring list;
  for (const AgentInfo& agent : agents)
    list += (list.empty() ? L"" : L",") + AgentJson(agent);
  return Concat(L"{\"agents\":[", list, L"]}");
}

std::wstring ConfigureJson(const ConfigureResult& result) {
  return Concat(L"{\"success\":", BoolWord(result.success), L",\"configPath\":", JsonQuote(result.configPath),
                OptionalMember(L"backupPath", result.backupPath),
                result.success ? std::wstring() : OptionalMember(L"error", result.error), L"}");
}

std::wstring InstallJson(const InstallResult& result) {
  return Concat(L"{\"success\":", BoolWord(result.success), L",\"exePath\":", JsonQuote(result.exePath),
                OptionalMember(L"version", result.version),
                result.success ? std::wstring() : OptionalMember(L"error", result.error), L"}");
}

std::wstring OutcomeJson(std::wstring_view error) {
  return Concat(L"{\"success\":", BoolWord(error.empty()), OptionalMember(L"error", error), L"}");
}

}  // namespace qv
