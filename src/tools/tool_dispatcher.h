#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "foundation/pane_context.h"
#include "tools/tool_turns.h"

namespace qv {

/// How long a call from another thread waits for the host's UI thread, in milliseconds.
inline constexpr DWORD kDispatchLimitMs = 30000;

/// Runs one tool: action and argument text in, result text out. Host UI thread.
using ToolRunner = std::function<std::wstring(std::wstring_view action, const std::wstring& json)>;

/// Answers to a call that was never run, and to one for which there was no memory.
inline constexpr std::wstring_view kTimedOutText = L"操作超时";
inline constexpr std::wstring_view kComErrorText = L"COM 异常";

/// Runs a tool and turns an exception into its result, with a log line of the given path's ("DispatchSync",
/// "autofill").
[[nodiscard]] std::wstring RunCaught(std::wstring_view path, const ToolRunner& run, std::wstring_view action,
                                     const std::wstring& json);

class DispatchState;

/// Carries tool calls of other threads to the pane's UI thread. Shared with those threads; may outlive the
/// pane, and answers for it then.
class ToolDispatcher {
 public:
  /// `run` is called on the UI thread only, and never once the pane's tasks are closed.
  ToolDispatcher(std::shared_ptr<PaneContext> pane, ToolRunner run)
      : pane_(std::move(pane)), run_(std::move(run)), turns_(pane_) {}
  ToolDispatcher(const ToolDispatcher&) = delete;
  ToolDispatcher& operator=(const ToolDispatcher&) = delete;

  /// Whether the pane has an Application; without one calls are answered at once. UI thread.
  void SetConnected(bool connected) { connected_ = connected; }

  /// Runs a tool on the UI thread and waits for its result, for `limitMs` at most. Any thread but the UI
  /// thread, which would wait for itself. A tool that takes longer still does its work; its result is lost.
  [[nodiscard]] std::wstring DispatchSync(const std::wstring& action, const std::wstring& json,
                                          DWORD limitMs = kDispatchLimitMs);

  /// The order in which the pane's tools run, whoever asks for them. UI thread.
  [[nodiscard]] ToolTurns& Turns() { return turns_; }

  /// Ends the wait of every caller at once, as if its time were over; ahead of anything on the UI thread that
  /// waits for such a caller. UI thread.
  void WakeWaiters();

  /// `WakeWaiters`, no call waits from now on, and none that waits for its turn runs. UI thread.
  void Close();

 private:
  /// The state of one call while its caller waits.
  class Waiting;

  [[nodiscard]] bool PostCall(const std::shared_ptr<DispatchState>& state, const std::wstring& action,
                              const std::wstring& json);

  std::shared_ptr<PaneContext> pane_;
  ToolRunner run_;
  ToolTurns turns_;
  std::atomic<bool> connected_{false};
  std::mutex mutex_;
  std::unordered_set<DispatchState*> waiting_;
  bool closed_ = false;
};

}  // namespace qv
