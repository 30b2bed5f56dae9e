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
};

/// Answers what a page asks about coding agents. All of it touches files and programs, so it is done by
/// workers, and the answer comes later; a pane that has closed by then hears nothing. Host UI thread.
class AgentRequests {
 public:
  /// `output` is there whenever a task of the pane runs.
  AgentRequests(std::shared_ptr<PaneContext> pane, PanelOutput& output, AgentServers servers)
      : pane_(std::move(pane)), output_(output), servers_(std::move(servers)) {}

  /// The reply script, empty when it comes later; nothing when the action is none of these: "detectAgents",
  /// "installAgentMcp", "launchAgent", "installOpencode".
  [[nodiscard]] std::optional<std::wstring> Handle(std::wstring_view action, std::wstring_view message);

 private:
  struct Row;
  struct Answer {
    bool ok = false;
    std::wstring data;
  };
  using Work = std::function<Answer()>;

  [[nodiscard]] static Answer Refusal(std::wstring_view error);
  /// Only OpenCode needs the proxy; for the others what is given says nothing.
  [[nodiscard]] std::optional<ProxyAccess> AccessFor(AgentKind kind) const;
  [[nodiscard]] Work Detect(std::wstring_view message) const;
  [[nodiscard]] Work Configure(std::wstring_view message) const;
  [[nodiscard]] Work Install(std::wstring_view message) const;
  [[nodiscard]] Work Launch(std::wstring_view message) const;
  [[nodiscard]] bool StartWork(const std::wstring& requestId, Work work) const;

  std::shared_ptr<PaneContext> pane_;
  PanelOutput& output_;
  AgentServers servers_;
};

}  // namespace qv
