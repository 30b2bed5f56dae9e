#pragma once

#include <windows.h>

namespace qv {

/// A window class of this DLL. It is unregistered with this object, which therefore is a static one: a class
/// that outlives its DLL leads into nothing.
class WindowClass {
 public:
  /// `name` is borrowed for good; `background` belongs to the system.
  WindowClass(const wchar_t* name, WNDPROC procedure, HBRUSH background, UINT style = 0);
  WindowClass(const WindowClass&) = delete;
  WindowClass& operator=(const WindowClass&) = delete;
  ~WindowClass();

 private:
  const wchar_t* name_;
};

/// The object that a window was created for, given as its creation parameter; null before the window's first
/// message of its own and after `ForgetWindowOwner`. For window procedures.
template <typename Owner>
[[nodiscard]] Owner* WindowOwner(HWND window, UINT message, LPARAM lparam) {
  if (message != WM_NCCREATE) return reinterpret_cast<Owner*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  auto* const owner = static_cast<Owner*>(reinterpret_cast<const CREATESTRUCTW*>(lparam)->lpCreateParams);
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(owner));
  return owner;
}

/// The window's later messages do not reach its owner any more.
inline void ForgetWindowOwner(HWND window) {
  SetWindowLongPtrW(window, GWLP_USERDATA, 0);
}

}  // namespace qv
