#include "services/agent_requests.h"

#include "foundation/guard.h"
#include "foundation/json_text.h"
#include "foundation/patient_post.h"
#include "foundation/settings.h"
#include "foundation/worker_thread.h"
#include "services/agent_answers.h"
#include "services/agent_detection.h"
#include "services/agent_files.h"
#include "services/agent_installer.h"
#include "services/agent_launcher.h"
#include "services/agent_places.h"

namespace qv {
namespace {

constexpr wchar_t kNoMcpServer[] = L"MCP 服务未能启动";
constexpr wchar_t kNoProxy[] = L"LLM 代理未能启动";
constexpr wchar_t kInternalError[] = L"内部错误";

}  // namespace

struct AgentRequests::Row {
  std::wstring_view action;
  Work (AgentRequests::*prepare)(std::wstring_view message) const;
};

std::optional<std::wstring> AgentRequests::Handle(std::wstring_view action, std::wstring_view message) {
  static constexpr Row kRows[] = {
      {L"detectAgents", &AgentRequests::Detect},
      {L"installAgentMcp", &AgentRequests::Configure},
      {L"launchAgent", &AgentRequests::Launch},
      {L"installOpencode", &AgentRequests::Install},
  };
  for (const Row& row : kRows) {
    if (row.action != action) continue;
    const std::wstring requestId = JsonGetString(message, L"requestId");
    if (StartWork(requestId, (this->*row.prepare)(message))) return std::wstring();
    return BuildReplyScript(requestId, false, OutcomeJson(kInternalError));
  }
  return std::nullopt;
}

AgentRequests::Answer AgentRequests::Refusal(std::wstring_view error) {
  return {false, OutcomeJson(error)};
}

std::optional<ProxyAccess> AgentRequests::AccessFor(AgentKind kind) const {
  if (kind != AgentKind::kOpenCode) return ProxyAccess();
  return servers_.prepareLlmProxy ? servers_.prepareLlmProxy() : std::nullopt;
}

AgentRequests::Work AgentRequests::Detect(std::wstring_view) const {
  return [] { return Answer{true, AgentListJson(DetectAgents())}; };
}

AgentRequests::Work AgentRequests::Configure(std::wstring_view message) const {
  const auto kind = AgentKindOf(JsonGetString(message, L"id"));
  if (!kind) return [] { return Refusal(kUnknownAgentError); };
  const std::optional<ProxyAccess> access = AccessFor(*kind);
  if (!access) return [] { return Refusal(kNoProxy); };
  return [kind = *kind, access = *access] {
    const ConfigureResult result = ConfigureAgent(kind, access);
    return Answer{result.success, ConfigureJson(result)};
  };
}

AgentRequests::Work AgentRequests::Install(std::wstring_view message) const {
  // The settings belong to this thread.
  return [location = PackageLocation(JsonGetString(message, L"location"), ReadSettingsText(),
                                     DefaultPackageLocation())] {
    const InstallResult result = InstallOpencode(location, OpenCodeDirectory());
    return Answer{result.success, InstallJson(result)};
  };
}

AgentRequests::Work AgentRequests::Launch(std::wstring_view message) const {
  const auto kind = AgentKindOf(JsonGetString(message, L"id"));
  if (!kind) return [] { return Refusal(kUnknownAgentError); };
  if (!servers_.prepareMcpServer || !servers_.prepareMcpServer()) return [] { return Refusal(kNoMcpServer); };
  const std::optional<ProxyAccess> access = AccessFor(*kind);
  if (!access) return [] { return Refusal(kNoProxy); };
  return [kind = *kind, access = *access] {
    const std::wstring error = LaunchAgent(kind, access);
    return Answer{error.empty(), OutcomeJson(error)};
  };
}

bool AgentRequests::StartWork(const std::wstring& requestId, Work work) const {
  return StartDetachedWorker(L"AgentRequests", [pane = pane_, page = &output_, requestId, work] {
    Answer answer = Refusal(kInternalError);
    Guard(L"AgentRequests", [&] { answer = work(); });
    const auto post = [page, script = BuildReplyScript(requestId, answer.ok, answer.data)] {
      page->RunPanelScript(script);
    };
    // Refused when the pane has closed: nobody waits for the answer any more.
    static_cast<void>(PostPatiently(*pane, post));
  });
}

}  // namespace qv
