#pragma once

#include <windows.h>

#include "engines/common/com_guard.h"

namespace qv::devhost {

/// Registers a window class of the program, once however often it is called; the module to create windows of
/// it with.
inline HINSTANCE RegisterHostClass(const wchar_t* name, WNDPROC procedure) {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = procedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = name;
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  RegisterClassW(&windowClass);
  return windowClass.hInstance;
}

/// Hands a message to `LRESULT Owner::Handle(UINT, WPARAM, LPARAM)` of the object that the window's user data
/// names; windows without one get the system's handling.
template <typename Owner>
LRESULT HandleByOwner(LRESULT (Owner::*handle)(UINT, WPARAM, LPARAM), HWND window, UINT message,
                      WPARAM wParam, LPARAM lParam) noexcept {
  auto* const owner = reinterpret_cast<Owner*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (owner == nullptr) return DefWindowProcW(window, message, wParam, lParam);
  LRESULT result = 0;
  static_cast<void>(GuardCom([&] { return result = (owner->*handle)(message, wParam, lParam), S_OK; }));
  return result;
}

}  // namespace qv::devhost
