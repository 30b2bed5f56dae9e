#include "addin/disabled_windows.h"

#include <utility>

#include "foundation/guard.h"

namespace qv {
namespace {

BOOL CALLBACK CollectVisible(HWND window, LPARAM list) noexcept {
  Guard(L"CollectVisible", [&] {
    if (IsWindowVisible(window)) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  });
  return TRUE;
}

}  // namespace

DisabledWindows::DisabledWindows(HWND owner, HWND dialog) {
  std::vector<HWND> windows;
  if (owner != nullptr) windows.push_back(owner);
  EnumThreadWindows(GetCurrentThreadId(), &CollectVisible, reinterpret_cast<LPARAM>(&windows));
  // Before the first is disabled: what cannot be remembered must stay enabled.
  windows_.reserve(windows.size());
  for (const HWND window : windows) {
    if (window == dialog || EnableWindow(window, FALSE)) continue;
    windows_.push_back(window);
  }
}

void DisabledWindows::Enable() {
  for (const HWND window : std::exchange(windows_, {}))
    EnableWindow(window, TRUE);
}

}  // namespace qv
