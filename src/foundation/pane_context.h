#pragma once

#include <windows.h>

#include <atomic>

#include "foundation/logging.h"
#include "foundation/ui_task.h"

namespace qv {

/// Identity of one pane and the way to its UI thread. Lives as long as the pane control; workers that may
/// outlive it hold it by shared_ptr.
class PaneContext {
 public:
  explicit PaneContext(int number) : number_(number) {}

  /// 1-based, unique within the process.
  [[nodiscard]] int Number() const { return number_; }

  /// The pane's own child window; null before creation and after destruction. UI thread.
  [[nodiscard]] HWND Window() const { return window_; }
  void SetWindows(HWND window, HWND parent) {
    window_ = window;
    parent_ = parent;
  }

  /// Set first when the pane goes away: late page messages and posted tasks are dropped from then on.
  [[nodiscard]] bool IsClosing() const { return closing_; }
  void MarkClosing() { closing_ = true; }

  [[nodiscard]] UiTaskQueue& Tasks() { return tasks_; }

  /// What diagnostic lines print.
  [[nodiscard]] PaneLogIdentity LogIdentity() const { return {window_, parent_, 0}; }

 private:
  int number_;
  HWND window_ = nullptr;
  HWND parent_ = nullptr;
  std::atomic<bool> closing_{false};
  UiTaskQueue tasks_;
};

}  // namespace qv
