#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "services/agent_kinds.h"
#include "services/opencode_config.h"

namespace qv {

/// What agents need to have running. Host UI thread; a callback that is empty counts as a failure.
struct AgentServers {
  /// Whether the tool server can be reached.
  std::function<bool()> prepareMcpServer;
  /// How the proxy can be reached; nothing when it cannot.
  std::function<std::optional<ProxyAccess>()> prepareLlmProxy;
  /// How the proxy will be reached once it runs; starts nothing. Nothing when it never will.
  std::function<std::optional<ProxyAccess>()> describeLlmProxy;
};

/// What a page's question is answered with.
struct AgentReply {
  bool ok = false;
  /// A JSON text.
  std::wstring data;
};

/// Answers what a page asks about coding agents. All of it touches files and programs, so it is done by
/// workers, and the answer comes later; a pane that has closed by then hears nothing. Host UI thread.
class AgentRequests {
 public:
  /// `output` is there whenever a task of the pane runs.
  AgentRequests(std::shared_ptr<PaneContext> pane, PanelOutput& output, AgentServers servers)
      : pane_(std::move(pane)), output_(output), servers_(std::move(servers)) {}

  // Each takes the page's message, and returns the reply only when there is nothing to wait for.

  /// Which agents there are.
  [[nodiscard]] std::optional<AgentReply> Detect(std::wstring_view message) const;
  /// Enters the tool server into the configuration of the agent "id". Starts no server.
  [[nodiscard]] std::optional<AgentReply> Configure(std::wstring_view message) const;
  /// Installs the add-in's own copy of OpenCode.
  [[nodiscard]] std::optional<AgentReply> Install(std::wstring_view message) const;
  /// Prepares what the agent "id" needs and starts it in a console.
  [[nodiscard]] std::optional<AgentReply> Launch(std::wstring_view message) const;

 private:
  using Work = std::function<AgentReply()>;

  /// Has a worker do the work and the page hear of it; a reply only when there is no worker to be had.
  [[nodiscard]] std::optional<AgentReply> Answer(std::wstring_view message, Work work) const;

  std::shared_ptr<PaneContext> pane_;
  PanelOutput& output_;
  AgentServers servers_;
};

}  // namespace qv
