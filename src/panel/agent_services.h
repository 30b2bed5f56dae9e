#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "panel/panel_actions.h"
#include "services/agent_requests.h"
#include "services/llm_proxy.h"
#include "services/mcp_server.h"
#include "tools/tool_dispatcher.h"

namespace qv {

/// What one pane offers to coding agents on this machine, and the page's questions about it. Host UI thread.
class AgentServices {
 public:
  /// `tools` carries the calls of agents to this pane's workbook; `output` is there whenever a task of the
  /// pane runs.
  AgentServices(std::shared_ptr<PaneContext> pane, PanelOutput& output,
                std::shared_ptr<ToolDispatcher> tools);
  AgentServices(const AgentServices&) = delete;
  AgentServices& operator=(const AgentServices&) = delete;

  /// The script that replies to a message of the page; empty when the reply comes later.
  [[nodiscard]] std::wstring Handle(const PanelMessage& message);

  /// What agents' questions to the models are sent on with from now on, empty while nobody is signed in.
  /// Until this pane's page has said so it is the process-wide token.
  void SetAccessToken(std::wstring_view token);

  /// Stops what runs; nothing starts any more.
  void Close();

 private:
  struct ActionRow;
  static const ActionRow kRows[];

  [[nodiscard]] AgentReply GetMcpServerStatus() const;
  [[nodiscard]] AgentReply EnsureMcpServer();
  [[nodiscard]] AgentReply StopMcpServer();
  [[nodiscard]] bool IsMcpServerRunning() const { return mcpServer_ && mcpServer_->IsRunning(); }

  /// Whether this pane's tool server runs, started if need be: an agent is about to ask for it. May take half
  /// a minute when another program has the port.
  [[nodiscard]] bool PrepareMcpServer();
  /// How an agent reaches the proxy, started if need be; nothing when it does not run. Takes as long.
  [[nodiscard]] std::optional<ProxyAccess> PrepareLlmProxy();
  /// How an agent will reach the proxy once it runs; nothing after `Close`.
  [[nodiscard]] std::optional<ProxyAccess> DescribeLlmProxy();

  const std::shared_ptr<ToolDispatcher> tools_;
  const AgentRequests requests_;
  /// As this pane's page delivered it last, which another pane's page need not have heard of; nothing before.
  std::optional<std::wstring> accessToken_;
  /// Made by the first start.
  std::optional<McpServer> mcpServer_;
  LlmProxy llmProxy_;
  bool closed_ = false;
};

}  // namespace qv
