#include "foundation/ui_task.h"

#include "foundation/guard.h"

namespace qv {

void UiTaskQueue::Open(HWND window) {
  const std::lock_guard lock(mutex_);
  window_ = window;
}

void UiTaskQueue::Close() {
  std::unordered_set<UiTask*> dropped;
  {
    const std::lock_guard lock(mutex_);
    window_ = nullptr;
    dropped.swap(pending_);
  }
  // Outside the lock: what a task owns may post once more while it goes away, and is refused.
  for (UiTask* task : dropped)
    delete task;
}

bool UiTaskQueue::Post(std::unique_ptr<UiTask> task) {
  // Destroyed, when refused, only after the lock is gone.
  std::unique_ptr<UiTask> kept = std::move(task);
  const std::lock_guard lock(mutex_);
  if (window_ == nullptr || !kept) return false;
  // In the set first: the window's thread may receive the message before this call returns.
  pending_.insert(kept.get());
  if (!PostMessageW(window_, kUiTaskMessage, 0, reinterpret_cast<LPARAM>(kept.get()))) {
    pending_.erase(kept.get());
    return false;
  }
  static_cast<void>(kept.release());
  return true;
}

void UiTaskQueue::OnMessage(LPARAM task) noexcept {
  Guard(L"UiTask", [&] {
    std::unique_ptr<UiTask> owned;
    {
      const std::lock_guard lock(mutex_);
      const auto found = pending_.find(reinterpret_cast<UiTask*>(task));
      if (found == pending_.end()) return;
      owned.reset(*found);
      pending_.erase(found);
    }
    owned->Run();
  });
}

}  // namespace qv
