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

namespace qv {

/// How long a call from another thread waits for the host's UI thread, in milliseconds.
inline constexpr DWORD kDispatchLimitMs = 30000;

/// Runs one tool: action and argument text in, result text out. Host UI thread.
using ToolRunner = std::function<std::wstring(std::wstring_view action, const std::wstring& json)>;

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
      : pane_(std::move(pane)), run_(std::move(run)) {}
  ToolDispatcher(const ToolDispatcher&) = delete;
  ToolDispatcher& operator=(const ToolDispatcher&) = delete;

  /// Whether the pane has an Application; without one calls are answered at once. UI thread.
  void SetConnected(bool connected) { connected_ = connected; }

  /// Runs a tool on the UI thread and waits for its result, for `limitMs` at most. Any thread but the UI
  /// thread, which would wait for itself. A tool that takes longer still does its work; its result is lost.
  [[nodiscard]] std::wstring DispatchSync(const std::wstring& action, const std::wstring& json,
                                          DWORD limitMs = kDispatchLimitMs);

  /// Ends the wait of every caller at once, as if its time were over; ahead of anything on the UI thread that
  /// waits for such a caller. UI thread.
  void WakeWaiters();

  /// `WakeWaiters`, and no call waits from now on. UI thread.
  void Close();

 private:
  /// The state of one call while its caller waits.
  class Waiting;

  [[nodiscard]] bool PostCall(const std::shared_ptr<DispatchState>& state, const std::wstring& action,
                              const std::wstring& json);

  std::shared_ptr<PaneContext> pane_;
  ToolRunner run_;
  std::atomic<bool> connected_{false};
  std::mutex mutex_;
  std::unordered_set<DispatchState*> waiting_;
  bool closed_ = false;
};

}  // namespace qv
