#include "foundation/ui_timer.h"

#include <map>
#include <utility>

#include "foundation/guard.h"

namespace qv {
namespace {

/// Running timers by the id that the system knows. A message of a stopped timer may still arrive, and must
/// not be taken for a pointer. UI thread.
std::map<UINT_PTR, UiTimer*>& Running() {
  static std::map<UINT_PTR, UiTimer*> timers;
  return timers;
}

}  // namespace

bool UiTimer::Start(HWND window, UINT delayMs, std::function<void()> body) {
  Stop();
  id_ = SetTimer(window, reinterpret_cast<UINT_PTR>(this), delayMs, &UiTimer::OnTimer);
  if (id_ == 0) return false;
  // With a window the system keeps the id that was wished for.
  if (window != nullptr) id_ = reinterpret_cast<UINT_PTR>(this);
  window_ = window;
  body_ = std::move(body);
  Running().insert_or_assign(id_, this);
  return true;
}

void UiTimer::Stop() {
  if (id_ == 0) return;
  KillTimer(window_, id_);
  Running().erase(id_);
  id_ = 0;
  body_ = nullptr;
}

void CALLBACK UiTimer::OnTimer(HWND, UINT, UINT_PTR id, DWORD) noexcept {
  Guard(L"UiTimer", [id] {
    const auto entry = Running().find(id);
    if (entry == Running().end()) return;
    // The body may start or destroy the timer.
    UiTimer& timer = *entry->second;
    const std::function<void()> body = std::move(timer.body_);
    timer.Stop();
    body();
  });
}

}  // namespace qv
