#include "foundation/ui_task.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

namespace qv {
namespace {

/// A message-only window whose tasks are run by the queue that it points to.
class TaskWindow {
 public:
  explicit TaskWindow(UiTaskQueue& queue) {
    WNDCLASSW type{};
    type.lpfnWndProc = Procedure;
    type.hInstance = GetModuleHandleW(nullptr);
    type.lpszClassName = L"QvUiTaskTest";
    RegisterClassW(&type);
    window_ =
        CreateWindowW(type.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, type.hInstance, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&queue));
  }
  TaskWindow(const TaskWindow&) = delete;
  TaskWindow& operator=(const TaskWindow&) = delete;
  ~TaskWindow() { DestroyWindow(window_); }

  [[nodiscard]] HWND Handle() const { return window_; }

  /// Handles everything that waits.
  static void Pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
      DispatchMessageW(&message);
  }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* const queue = reinterpret_cast<UiTaskQueue*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == kUiTaskMessage && queue != nullptr) {
      queue->OnMessage(lparam);
      return 0;
    }
    return DefWindowProcW(window, message, wparam, lparam);
  }

  HWND window_ = nullptr;
};

/// Counts how often it ran and how often it was destroyed.
class CountingTask : public UiTask {
 public:
  CountingTask(int& runs, int& ends) : runs_(runs), ends_(ends) {}
  ~CountingTask() override { ++ends_; }
  void Run() override { ++runs_; }

 private:
  int& runs_;
  int& ends_;
};

class UiTasks : public testing::Test {
 protected:
  std::unique_ptr<UiTask> Task() { return std::make_unique<CountingTask>(runs_, ends_); }
  int runs_ = 0;
  int ends_ = 0;
  UiTaskQueue queue_;
  TaskWindow window_{queue_};
};

TEST_F(UiTasks, RunInPostedOrderOnTheWindowsThread) {
  EXPECT_EQ(kUiTaskMessage, 0x804Du);
  queue_.Open(window_.Handle());
  std::vector<int> order;
  std::vector<DWORD> threads;
  std::thread([&] {
    for (int i = 0; i < 100; ++i) {
      EXPECT_TRUE(queue_.PostFunction([&, i] {
        order.push_back(i);
        threads.push_back(GetCurrentThreadId());
      }));
    }
  }).join();
  TaskWindow::Pump();
  ASSERT_EQ(order.size(), 100u);
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
    EXPECT_EQ(threads[static_cast<std::size_t>(i)], GetCurrentThreadId());
  }
}

TEST_F(UiTasks, AStrayMessageRunsNothing) {
  queue_.Open(window_.Handle());
  CountingTask foreign(runs_, ends_);
  PostMessageW(window_.Handle(), kUiTaskMessage, 0, reinterpret_cast<LPARAM>(&foreign));
  PostMessageW(window_.Handle(), kUiTaskMessage, 0, 0);
  TaskWindow::Pump();
  EXPECT_EQ(runs_, 0);

  // The same message twice runs its task once.
  auto task = Task();
  const auto address = reinterpret_cast<LPARAM>(task.get());
  EXPECT_TRUE(queue_.Post(std::move(task)));
  TaskWindow::Pump();
  queue_.OnMessage(address);
  EXPECT_EQ(runs_, 1);
  EXPECT_EQ(ends_, 1);
}

TEST_F(UiTasks, AreDestroyedUnrunWhenTheQueueIsClosed) {
  EXPECT_FALSE(queue_.Post(Task())) << "not open yet";
  queue_.Open(window_.Handle());
  EXPECT_TRUE(queue_.Post(Task()));
  EXPECT_TRUE(queue_.Post(Task()));
  queue_.Close();
  EXPECT_EQ(ends_, 3);
  EXPECT_FALSE(queue_.Post(Task()));
  TaskWindow::Pump();
  EXPECT_EQ(runs_, 0);
  EXPECT_EQ(ends_, 4);
}

TEST_F(UiTasks, AreDestroyedAtOnceWhenTheWindowIsGone) {
  {
    const TaskWindow gone(queue_);
    queue_.Open(gone.Handle());
  }
  EXPECT_FALSE(queue_.Post(Task()));
  EXPECT_EQ(ends_, 1);
}

TEST_F(UiTasks, MayCloseTheQueueOrThrow) {
  queue_.Open(window_.Handle());
  EXPECT_TRUE(queue_.PostFunction([] { throw std::runtime_error("x"); }));
  EXPECT_TRUE(queue_.PostFunction([this] { queue_.Close(); }));
  EXPECT_TRUE(queue_.Post(Task()));
  TaskWindow::Pump();
  EXPECT_EQ(runs_, 0);
  EXPECT_EQ(ends_, 1);
}

}  // namespace
}  // namespace qv
