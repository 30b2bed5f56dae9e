#include "foundation/window_dpi.h"

namespace qv {

int WindowDpi(HWND window) {
  using GetDpiForWindowFunction = UINT(WINAPI*)(HWND);
  static const auto getDpiForWindow = reinterpret_cast<GetDpiForWindowFunction>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
  if (window == nullptr || getDpiForWindow == nullptr) return kDefaultDpi;
  const int dpi = static_cast<int>(getDpiForWindow(window));
  return dpi < 1 ? kDefaultDpi : dpi;
}

}  // namespace qv
