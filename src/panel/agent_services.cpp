#include "panel/agent_services.h"

#include <utility>

#include "foundation/access_tokens.h"
#include "foundation/host_session.h"
#include "foundation/json_text.h"
#include "services/mcp_answers.h"

namespace qv {
namespace {

constexpr wchar_t kUnknownActionData[] = L"{\"error\":\"unknown_agent_action\"}";

McpOwner OwnerOfFreeOrForeignPort() {
  return IsPortTaken(kMcpPort) ? McpOwner::kOther : McpOwner::kNone;
}

}  // namespace

struct AgentServices::ActionRow {
  std::wstring_view name;
  /// Nothing when the reply comes later.
  std::optional<AgentReply> (*handle)(AgentServices& self, std::wstring_view message);
};

constexpr AgentServices::ActionRow AgentServices::kRows[] = {
    {L"detectAgents", [](auto& self, auto message) { return self.requests_.Detect(message); }},
    {L"installAgentMcp", [](auto& self, auto message) { return self.requests_.Configure(message); }},
    {L"launchAgent", [](auto& self, auto message) { return self.requests_.Launch(message); }},
    {L"installOpencode", [](auto& self, auto message) { return self.requests_.Install(message); }},
    {L"getMcpServerStatus", [](auto& self, auto) { return std::optional(self.GetMcpServerStatus()); }},
    {L"ensureMcpServer", [](auto& self, auto) { return std::optional(self.EnsureMcpServer()); }},
    {L"stopMcpServer", [](auto& self, auto) { return std::optional(self.StopMcpServer()); }},
};

AgentServices::AgentServices(std::shared_ptr<PaneContext> pane, PanelOutput& output,
                             std::shared_ptr<ToolDispatcher> tools)
    : tools_(std::move(tools)),
      requests_(std::move(pane), output,
                {[this] { return PrepareMcpServer(); }, [this] { return PrepareLlmProxy(); },
                 [this] { return DescribeLlmProxy(); }}) {}

std::wstring AgentServices::Handle(const PanelMessage& message) {
  std::optional<AgentReply> reply = AgentReply{false, kUnknownActionData};
  for (const ActionRow& row : kRows) {
    if (row.name == message.action) reply = row.handle(*this, message.text);
  }
  if (!reply) return {};
  return BuildReplyScript(JsonGetString(message.text, L"requestId"), reply->ok, reply->data);
}

void AgentServices::SetAccessToken(std::wstring_view token) {
  accessToken_ = token;
  llmProxy_.SetProxyAccessToken(token);
}

AgentReply AgentServices::GetMcpServerStatus() const {
  return {true, McpStatusAnswer(IsMcpServerRunning() ? McpOwner::kSelf : OwnerOfFreeOrForeignPort())};
}

AgentReply AgentServices::EnsureMcpServer() {
  const bool running = PrepareMcpServer();
  return {running, McpStartAnswer(running ? McpOwner::kSelf : OwnerOfFreeOrForeignPort())};
}

AgentReply AgentServices::StopMcpServer() {
  if (mcpServer_) mcpServer_->Stop();
  return {true, McpStopAnswer()};
}

bool AgentServices::PrepareMcpServer() {
  if (closed_) return false;
  if (!mcpServer_) {
    mcpServer_.emplace(
        [tools = tools_](const std::wstring& action, const std::wstring& json) {
          return tools->DispatchSync(action, json);
        },
        [tools = tools_] { tools->WakeWaiters(); });
  }
  return mcpServer_->Start();
}

std::optional<ProxyAccess> AgentServices::PrepareLlmProxy() {
  if (closed_) return std::nullopt;
  const std::wstring& token = accessToken_ ? *accessToken_ : NativeAccessToken::Get();
  if (!llmProxy_.PrepareLlmProxy(token, HostSession::Get().Endpoint())) return std::nullopt;
  return ProxyAccess{{}, llmProxy_.GetProxyToken()};
}

std::optional<ProxyAccess> AgentServices::DescribeLlmProxy() {
  if (closed_) return std::nullopt;
  return ProxyAccess{{}, llmProxy_.EnsureProxyToken()};
}

void AgentServices::Close() {
  closed_ = true;
  llmProxy_.Stop();
  if (mcpServer_) mcpServer_->Stop();
}

}  // namespace qv
