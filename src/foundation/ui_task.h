#pragma once

#include <windows.h>

#include <memory>
#include <mutex>
#include <unordered_set>
#include <utility>

namespace qv {

/// Message that carries a pending task to the pane window: WM_APP + 0x4D, task pointer in lParam.
inline constexpr UINT kUiTaskMessage = WM_APP + 77;

/// Work that another thread (or a browser event) hands to the host UI thread. Run at most once; destroyed
/// either way.
class UiTask {
 public:
  virtual ~UiTask() = default;
  /// On the host UI thread, inside the entry guard.
  virtual void Run() = 0;
};

template <typename Body>
class UiFunctionTask final : public UiTask {
 public:
  explicit UiFunctionTask(Body body) : body_(std::move(body)) {}
  void Run() override { body_(); }

 private:
  Body body_;
};

/// The posted tasks of one window. Any thread may post; tasks run in posted order on the window's thread.
/// After `Close`, posts are refused and waiting tasks are dropped without running.
class UiTaskQueue {
 public:
  UiTaskQueue() = default;
  UiTaskQueue(const UiTaskQueue&) = delete;
  UiTaskQueue& operator=(const UiTaskQueue&) = delete;
  ~UiTaskQueue() { Close(); }

  /// Binds the window that receives the tasks. UI thread.
  void Open(HWND window);
  /// Drops everything that waits and refuses what comes. UI thread.
  void Close();

  /// False when the task was destroyed at once: no window, closed, or the window's thread has its message
  /// queue full (10 000 by default, as while the host shows a box for long). Nothing posts it again: a caller
  /// that cannot do without the task deals with false.
  [[nodiscard]] bool Post(std::unique_ptr<UiTask> task);

  template <typename Body>
  [[nodiscard]] bool PostFunction(Body body) {
    return Post(std::make_unique<UiFunctionTask<Body>>(std::move(body)));
  }

  /// Runs the task that a received `kUiTaskMessage` names. A pointer that is not a pending task is ignored,
  /// so a stray message cannot run anything. UI thread.
  void OnMessage(LPARAM task) noexcept;

 private:
  std::mutex mutex_;
  HWND window_ = nullptr;
  std::unordered_set<UiTask*> pending_;
};

}  // namespace qv
