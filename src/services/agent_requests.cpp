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

AgentReply Refusal(std::wstring_view error) {
  return {false, OutcomeJson(error)};
}

/// Only OpenCode uses the proxy; for the others what is given says nothing.
std::optional<ProxyAccess> AccessFor(AgentKind kind,
                                     const std::function<std::optional<ProxyAccess>()>& proxy) {
  if (kind != AgentKind::kOpenCode) return ProxyAccess();
  return proxy ? proxy() : std::nullopt;
}

AgentReply ConfigureReply(const ConfigureResult& result) {
  return {result.success, ConfigureJson(result)};
}

}  // namespace

std::optional<AgentReply> AgentRequests::Detect(std::wstring_view message) const {
  return Answer(message, [] { return AgentReply{true, AgentListJson(DetectAgents())}; });
}

std::optional<AgentReply> AgentRequests::Configure(std::wstring_view message) const {
  const auto kind = AgentKindOf(JsonGetString(message, L"id"));
  if (!kind) return Refusal(kUnknownAgentError);
  const std::wstring path = AgentConfigPath(*kind);
  // Without a path there is nothing to be told to the agent; the worker's answer says why.
  const std::optional<ProxyAccess> access =
      path.empty() ? ProxyAccess() : AccessFor(*kind, servers_.describeLlmProxy);
  if (!access) return ConfigureReply({false, path, {}, kNoProxy});
  return Answer(message,
                [kind = *kind, access = *access] { return ConfigureReply(ConfigureAgent(kind, access)); });
}

std::optional<AgentReply> AgentRequests::Install(std::wstring_view message) const {
  // The settings belong to this thread.
  return Answer(message, [location = PackageLocation(JsonGetString(message, L"location"), ReadSettingsText(),
                                                     DefaultPackageLocation())] {
    const InstallResult result = InstallOpencode(location, OpenCodeDirectory());
    return AgentReply{result.success, InstallJson(result)};
  });
}

std::optional<AgentReply> AgentRequests::Launch(std::wstring_view message) const {
  const auto kind = AgentKindOf(JsonGetString(message, L"id"));
  if (!kind) return Refusal(kUnknownAgentError);
  if (!servers_.prepareMcpServer || !servers_.prepareMcpServer()) return Refusal(kNoMcpServer);
  const std::optional<ProxyAccess> access = AccessFor(*kind, servers_.prepareLlmProxy);
  if (!access) return Refusal(kNoProxy);
  return Answer(message, [kind = *kind, access = *access] {
    const std::wstring error = LaunchAgent(kind, access);
    return AgentReply{error.empty(), OutcomeJson(error)};
  });
}

std::optional<AgentReply> AgentRequests::Answer(std::wstring_view message, Work work) const {
  const auto run = [pane = pane_, page = &output_, requestId = JsonGetString(message, L"requestId"),
                    work = std::move(work)] {
    AgentReply reply = Refusal(kInternalError);
    Guard(L"AgentRequests", [&] { reply = work(); });
    const auto post = [page, script = BuildReplyScript(requestId, reply.ok, reply.data)] {
      page->RunPanelScript(script);
    };
    // Refused when the pane has closed: nobody waits for the answer any more.
    static_cast<void>(PostPatiently(*pane, post));
  };
  if (StartDetachedWorker(L"AgentRequests", run)) return std::nullopt;
  return Refusal(kInternalError);
}

}  // namespace qv
