#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "panel/panel_actions.h"
#include "services/mcp_server.h"
#include "tools/tool_dispatcher.h"

namespace qv {

/// What one pane offers to coding agents on this machine, and the page's questions about it. Host UI thread.
class AgentServices {
 public:
  /// `tools` carries the calls of agents to this pane's workbook.
  explicit AgentServices(std::shared_ptr<ToolDispatcher> tools) : tools_(std::move(tools)) {}

  /// The script that replies to a message of the page; empty when the reply comes later.
  [[nodiscard]] std::wstring Handle(const PanelMessage& message);

  /// Whether this pane's tool server runs, started if need be: an agent is about to ask for it. May take half
  /// a minute when another program has the port.
  [[nodiscard]] bool PrepareMcpServer();

  /// Stops what runs; nothing starts any more.
  void Close();

 private:
  struct Reply {
    bool ok;
    std::wstring data;
  };
  struct ActionRow;
  static const ActionRow kRows[];

  [[nodiscard]] Reply GetMcpServerStatus(const PanelMessage& message);
  [[nodiscard]] Reply EnsureMcpServer(const PanelMessage& message);
  [[nodiscard]] Reply StopMcpServer(const PanelMessage& message);
  [[nodiscard]] bool IsMcpServerRunning() const { return mcpServer_ && mcpServer_->IsRunning(); }

  const std::shared_ptr<ToolDispatcher> tools_;
  /// Made by the first start.
  std::optional<McpServer> mcpServer_;
  bool closed_ = false;
};

}  // namespace qv
