#include "panel/agent_services.h"

#include "foundation/json_text.h"
#include "foundation/panel_output.h"
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
  Reply (AgentServices::*handle)(const PanelMessage&);
};

constexpr AgentServices::ActionRow AgentServices::kRows[] = {
    {L"getMcpServerStatus", &AgentServices::GetMcpServerStatus},
    {L"ensureMcpServer", &AgentServices::EnsureMcpServer},
    {L"stopMcpServer", &AgentServices::StopMcpServer},
};

std::wstring AgentServices::Handle(const PanelMessage& message) {
  Reply reply{false, kUnknownActionData};
  for (const ActionRow& row : kRows) {
    if (row.name == message.action) reply = (this->*row.handle)(message);
  }
  return BuildReplyScript(JsonGetString(message.text, L"requestId"), reply.ok, reply.data);
}

AgentServices::Reply AgentServices::GetMcpServerStatus(const PanelMessage&) {
  return {true, McpStatusAnswer(IsMcpServerRunning() ? McpOwner::kSelf : OwnerOfFreeOrForeignPort())};
}

AgentServices::Reply AgentServices::EnsureMcpServer(const PanelMessage&) {
  const bool running = PrepareMcpServer();
  return {running, McpStartAnswer(running ? McpOwner::kSelf : OwnerOfFreeOrForeignPort())};
}

AgentServices::Reply AgentServices::StopMcpServer(const PanelMessage&) {
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

void AgentServices::Close() {
  closed_ = true;
  if (mcpServer_) mcpServer_->Stop();
}

}  // namespace qv
