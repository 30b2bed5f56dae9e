#include "panel/panel_frame.h"

#include <algorithm>

#include "foundation/guard.h"
#include "foundation/module.h"
#include "foundation/window_dpi.h"
#include "panel/pane_background.h"

namespace qv {
namespace {

constexpr wchar_t kClassName[] = L"QuorvantisExcelPanelFrame";

bool RegisterWindowClass(WNDPROC procedure) {
  WNDCLASSEXW description{};
  description.cbSize = sizeof(description);
  description.lpfnWndProc = procedure;
  description.hInstance = ThisModule();
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.hbrBackground = PaneBackgroundBrush();
  description.lpszClassName = kClassName;
  return RegisterClassExW(&description) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

/// In the middle of the work area of the screen on which `beside` is.
RECT FramePlace(SIZE size, HWND beside) {
  const int dpi = WindowDpi(beside);
  MONITORINFO screen{};
  screen.cbSize = sizeof(screen);
  GetMonitorInfoW(MonitorFromWindow(beside, MONITOR_DEFAULTTOPRIMARY), &screen);
  const RECT& area = screen.rcWork;
  const LONG width = std::min<LONG>(MulDiv(size.cx, dpi, kDefaultDpi), area.right - area.left);
  const LONG height = std::min<LONG>(MulDiv(size.cy, dpi, kDefaultDpi), area.bottom - area.top);
  const LONG left = area.left + (area.right - area.left - width) / 2;
  const LONG top = area.top + (area.bottom - area.top - height) / 2;
  return {left, top, left + width, top + height};
}

}  // namespace

PanelFrame::~PanelFrame() {
  Destroy();
  // The class would outlive the DLL; while other frames exist this fails.
  UnregisterClassW(kClassName, ThisModule());
}

bool PanelFrame::Create(const std::wstring& title, SIZE size, HWND beside) {
  if (IsOpen()) return true;
  if (!RegisterWindowClass(&PanelFrame::Procedure)) return false;
  const RECT place = FramePlace(size, beside);
  return CreateWindowExW(0, kClassName, title.c_str(), WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_CLIPCHILDREN,
                         place.left, place.top, place.right - place.left, place.bottom - place.top, nullptr,
                         nullptr, ThisModule(), this) != nullptr;
}

void PanelFrame::Destroy() {
  if (handle_ != nullptr) DestroyWindow(handle_);
}

void PanelFrame::SetTitle(const std::wstring& title) {
  if (handle_ != nullptr) SetWindowTextW(handle_, title.c_str());
}

void PanelFrame::Hide() {
  if (handle_ != nullptr) ShowWindow(handle_, SW_HIDE);
}

void PanelFrame::Raise() {
  if (handle_ == nullptr) return;
  ShowWindow(handle_, IsIconic(handle_) ? SW_RESTORE : SW_SHOW);
  SetForegroundWindow(handle_);
}

LRESULT CALLBACK PanelFrame::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  auto* self = reinterpret_cast<PanelFrame*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message == WM_NCCREATE) {
    self = static_cast<PanelFrame*>(reinterpret_cast<const CREATESTRUCTW*>(lparam)->lpCreateParams);
    self->handle_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  bool handled = false;
  if (self != nullptr) {
    Guard(L"PanelFrame", [&] { handled = self->OnMessage(message); });
  }
  return handled ? 0 : DefWindowProcW(window, message, wparam, lparam);
}

bool PanelFrame::OnMessage(UINT message) {
  switch (message) {
    case WM_SIZE:
      events_.OnFrameResized();
      return true;
    case WM_SETFOCUS:
      events_.OnFrameFocused();
      return true;
    case WM_CLOSE:
      events_.OnFrameClosing();
      return true;
    case WM_NCDESTROY:
      SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
      handle_ = nullptr;
      return false;
    default:
      return false;
  }
}

}  // namespace qv
