#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <memory>

namespace qv::devhost {

/// Delivers completions and events later, in order, on the thread that made the queue, through a message-only
/// window: never from within the call that asked for them, and also while somebody else's modal loop runs, as
/// the real web view does. Use it on its own thread only, and destroy it there.
class CompletionQueue {
 public:
  using Task = std::function<void()>;

  /// The queue of the calling thread; made when there is none alive. Throws std::runtime_error without a
  /// window.
  [[nodiscard]] static std::shared_ptr<CompletionQueue> ForThisThread();

  CompletionQueue(const CompletionQueue&) = delete;
  CompletionQueue& operator=(const CompletionQueue&) = delete;
  ~CompletionQueue();

  [[nodiscard]] bool IsOwnThread() const { return GetCurrentThreadId() == thread_; }

  /// Runs the task not before `delayMs` have passed; tasks posted later never overtake it.
  void Post(Task task, DWORD delayMs = 0);

 private:
  struct Entry {
    Task task;
    ULONGLONG due;
  };

  CompletionQueue();
  static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  void Arm();
  void RunFront();

  DWORD thread_ = GetCurrentThreadId();
  HWND window_ = nullptr;
  std::deque<Entry> entries_;
  bool armed_ = false;
};

}  // namespace qv::devhost
