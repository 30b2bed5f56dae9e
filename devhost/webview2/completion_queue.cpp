#include "webview2/completion_queue.h"

#include <map>
#include <mutex>
#include <stdexcept>

#include "engines/common/com_guard.h"

namespace qv::devhost {
namespace {

constexpr wchar_t kClassName[] = L"QvWebViewCompletions";
constexpr UINT kWakeMessage = WM_APP + 1;
constexpr UINT_PTR kDueTimer = 1;

HINSTANCE ThisModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&kClassName), &module);
  return module;
}

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
  windowClass.hInstance = ThisModule();
  windowClass.lpszClassName = kClassName;
  RegisterClassW(&windowClass);
  window_ =
      CreateWindowExW(0, kClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, windowClass.hInstance, this);
  if (window_ == nullptr) throw std::runtime_error("no message-only window for web view completions");
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

CompletionQueue::~CompletionQueue() {
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(window_);
}

void CompletionQueue::Post(Task task, DWORD delayMs) {
  entries_.push_back({std::move(task), GetTickCount64() + delayMs});
  Arm();
}

void CompletionQueue::Arm() {
  if (armed_ || entries_.empty()) return;
  armed_ = true;
  const ULONGLONG now = GetTickCount64();
  if (entries_.front().due <= now) {
    PostMessageW(window_, kWakeMessage, 0, 0);
  } else {
    SetTimer(window_, kDueTimer, static_cast<UINT>(entries_.front().due - now), nullptr);
  }
}

void CompletionQueue::RunFront() {
  armed_ = false;
  if (!entries_.empty() && entries_.front().due <= GetTickCount64()) {
    const Task task = std::move(entries_.front().task);
    entries_.pop_front();
    // Armed before the task runs: it may open a modal loop that further completions must reach.
    Arm();
    task();
  } else {
    Arm();
  }
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
