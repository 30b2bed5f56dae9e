#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <utility>

#include "foundation/pane_context.h"

namespace qv {

/// Lets the tool calls of one pane run one after the other. The host may handle messages inside any call on
/// its objects, and with them the task of another tool: that one waits until the one that runs has ended.
/// Host UI thread.
class ToolTurns {
 public:
  using Call = std::function<void()>;

  explicit ToolTurns(std::shared_ptr<PaneContext> pane) : pane_(std::move(pane)) {}
  ToolTurns(const ToolTurns&) = delete;
  ToolTurns& operator=(const ToolTurns&) = delete;

  /// Runs the call now, or behind those that came before it.
  void Run(Call call);

  /// Drops the calls that wait, and every later one.
  void Close();

 private:
  /// Runs the oldest call unless one runs; posts a task for the next.
  void RunNext();
  void RunOldest();

  std::shared_ptr<PaneContext> pane_;
  std::deque<Call> waiting_;
  bool running_ = false;
  bool closed_ = false;
};

}  // namespace qv
