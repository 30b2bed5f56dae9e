#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace qv::devhost {

/// Delivers completions and events later, in order, on the thread that made the queue, through a message-only
/// window: never from within the call that asked for them, and also while somebody else's modal loop runs, as
/// the real web view does. Use it on its own thread only, and destroy it there.
class CompletionQueue {
  struct State;

 public:
  using Task = std::function<void()>;

  /// The way into the queue from other threads; may outlive it. A task that comes too late is destroyed on
  /// the posting thread, so it must not own anything that belongs to the queue's thread.
  class Entrance {
   public:
    void Post(Task task) const;

   private:
    friend class CompletionQueue;
    explicit Entrance(std::shared_ptr<State> state) : state_(std::move(state)) {}
    std::shared_ptr<State> state_;
  };

  /// The queue of the calling thread; made when there is none alive. Throws std::runtime_error without a
  /// window.
  [[nodiscard]] static std::shared_ptr<CompletionQueue> ForThisThread();

  CompletionQueue(const CompletionQueue&) = delete;
  CompletionQueue& operator=(const CompletionQueue&) = delete;
  ~CompletionQueue();

  [[nodiscard]] bool IsOwnThread() const { return GetCurrentThreadId() == thread_; }
  [[nodiscard]] Entrance ForOtherThreads() const { return Entrance(state_); }

  /// Runs the task not before `delayMs` have passed; tasks posted later never overtake it.
  void Post(Task task, DWORD delayMs = 0);

 private:
  struct Entry {
    Task task;
    ULONGLONG due;
  };

  /// What the queue shares with its entrances.
  struct State {
    std::mutex mutex;
    /// Null once the queue is gone.
    HWND window = nullptr;
    std::deque<Entry> entries;
    /// A wake message or timer is under way.
    bool armed = false;

    bool Add(Entry entry);
    void Arm();
  };

  CompletionQueue();
  static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  void RunFront();

  DWORD thread_ = GetCurrentThreadId();
  HWND window_ = nullptr;
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace qv::devhost
