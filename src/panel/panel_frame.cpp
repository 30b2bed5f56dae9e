#include "panel/panel_frame.h"

#include <algorithm>

#include "foundation/guard.h"
#include "foundation/module.h"
#include "foundation/window_class.h"
#include "foundation/window_dpi.h"
#include "panel/pane_background.h"

namespace qv {
namespace {

constexpr wchar_t kClassName[] = L"QuorvantisExcelPanelFrame";

constexpr UINT_PTR kTimer = 1;

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
  // When the window is on its way out already, its last messages come after this object is gone.
  if (handle_ != nullptr) ForgetWindowOwner(handle_);
}

bool PanelFrame::Create(const std::wstring& title, SIZE size, HWND beside) {
  if (IsOpen()) return true;
  static const WindowClass registered(kClassName, &PanelFrame::Procedure, PaneBackgroundBrush());
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

void PanelFrame::StartTimer(UINT milliseconds) {
  if (handle_ != nullptr) SetTimer(handle_, kTimer, milliseconds, nullptr);
}

void PanelFrame::StopTimer() {
  if (handle_ != nullptr) KillTimer(handle_, kTimer);
}

void PanelFrame::Fill(const RECT& place) {
  SetWindowPos(handle_, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void PanelFrame::Raise() {
  if (handle_ == nullptr) return;
  ShowWindow(handle_, IsIconic(handle_) ? SW_RESTORE : SW_SHOW);
  SetForegroundWindow(handle_);
}

LRESULT CALLBACK PanelFrame::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  auto* const self = WindowOwner<PanelFrame>(window, message, lparam);
  if (message == WM_NCCREATE) self->handle_ = window;
  bool handled = false;
  if (self != nullptr) {
    Guard(L"PanelFrame", [&] { handled = self->OnMessage(message, lparam); });
  }
  return handled ? 0 : DefWindowProcW(window, message, wparam, lparam);
}

bool PanelFrame::OnMessage(UINT message, LPARAM lparam) {
  switch (message) {
    case WM_SIZE:
      events_.OnFrameResized();
      return true;
    case WM_MOVE:
      events_.OnFrameMoved();
      return true;
    case WM_DPICHANGED:
      Fill(*reinterpret_cast<const RECT*>(lparam));
      return true;
    case WM_SETFOCUS:
      events_.OnFrameFocused();
      return true;
    case WM_TIMER:
      events_.OnFrameTimer();
      return true;
    case WM_CLOSE:
      events_.OnFrameClosing();
      return true;
    case WM_DESTROY:
      events_.OnFrameDestroyed();
      return true;
    case WM_NCDESTROY:
      ForgetWindowOwner(handle_);
      handle_ = nullptr;
      return false;
    default:
      return false;
  }
}

}  // namespace qv
