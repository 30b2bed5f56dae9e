#include "webview2/completion_queue.h"

#include <map>
#include <mutex>
#include <stdexcept>

#include "engines/common/com_guard.h"
#include "webview2/this_library.h"

namespace qv::devhost {
namespace {

constexpr wchar_t kClassName[] = L"QvWebViewCompletions";
constexpr UINT kWakeMessage = WM_APP + 1;
constexpr UINT_PTR kDueTimer = 1;

std::mutex queuesMutex;
std::map<DWORD, std::weak_ptr<CompletionQueue>> queues;

}  // namespace

std::shared_ptr<CompletionQueue> CompletionQueue::ForThisThread() {
  const std::scoped_lock lock(queuesMutex);
  auto& slot = queues[GetCurrentThreadId()];
  auto queue = slot.lock();
  if (!queue) {
    queue.reset(new CompletionQueue());
    slot = queue;
  }
  return queue;
}

CompletionQueue::CompletionQueue() {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = WindowProcedure;
  windowClass.hInstance = ThisLibrary();
  windowClass.lpszClassName = kClassName;
  RegisterClassW(&windowClass);
  window_ =
      CreateWindowExW(0, kClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, windowClass.hInstance, this);
  if (window_ == nullptr) throw std::runtime_error("no message-only window for web view completions");
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  state_->window = window_;
}

CompletionQueue::~CompletionQueue() {
  std::deque<Entry> dropped;
  {
    const std::scoped_lock lock(state_->mutex);
    state_->window = nullptr;
    dropped.swap(state_->entries);
  }
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(window_);
}

bool CompletionQueue::State::Add(Entry entry) {
  const std::scoped_lock lock(mutex);
  if (window == nullptr) return false;
  entries.push_back(std::move(entry));
  Arm();
  return true;
}

void CompletionQueue::State::Arm() {
  if (armed || entries.empty()) return;
  armed = true;
  const ULONGLONG now = GetTickCount64();
  // A timer belongs to the window's thread; whoever else comes wakes that thread to set it.
  const bool isForeign = GetWindowThreadProcessId(window, nullptr) != GetCurrentThreadId();
  if (entries.front().due <= now || isForeign) {
    PostMessageW(window, kWakeMessage, 0, 0);
  } else {
    SetTimer(window, kDueTimer, static_cast<UINT>(entries.front().due - now), nullptr);
  }
}

void CompletionQueue::Entrance::Post(Task task) const {
  static_cast<void>(state_->Add({std::move(task), 0}));
}

void CompletionQueue::Post(Task task, DWORD delayMs) {
  static_cast<void>(state_->Add({std::move(task), GetTickCount64() + delayMs}));
}

void CompletionQueue::RunFront() {
  Task task;
  {
    const std::scoped_lock lock(state_->mutex);
    state_->armed = false;
    if (!state_->entries.empty() && state_->entries.front().due <= GetTickCount64()) {
      task = std::move(state_->entries.front().task);
      state_->entries.pop_front();
    }
    // Armed before the task runs: it may open a modal loop that further completions must reach.
    state_->Arm();
  }
  if (task) task();
}

LRESULT CALLBACK CompletionQueue::WindowProcedure(HWND window, UINT message, WPARAM wParam,
                                                  LPARAM lParam) noexcept {
  auto* queue = reinterpret_cast<CompletionQueue*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  const bool isWake = message == kWakeMessage || (message == WM_TIMER && wParam == kDueTimer);
  if (queue == nullptr || !isWake) return DefWindowProcW(window, message, wParam, lParam);
  if (message == WM_TIMER) KillTimer(window, kDueTimer);
  static_cast<void>(GuardCom([queue] {
    // The task may release the last object that keeps the queue.
    const auto alive = ForThisThread();
    queue->RunFront();
    return S_OK;
  }));
  return 0;
}

}  // namespace qv::devhost
