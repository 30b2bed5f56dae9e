#include "panel/pane_window.h"

#include "foundation/guard.h"
#include "foundation/module.h"
#include "foundation/ui_task.h"
#include "foundation/window_class.h"
#include "panel/pane_background.h"

namespace qv {
namespace {

constexpr wchar_t kClassName[] = L"QuorvantisExcelPaneWnd";

}  // namespace

PaneWindow::~PaneWindow() {
  Destroy();
  // When the window is on its way out already, its last messages come after this object is gone.
  if (handle_ != nullptr) ForgetWindowOwner(handle_);
}

bool PaneWindow::Create(HWND parent, const RECT& position) {
  if (handle_ != nullptr) return true;
  static const WindowClass registered(kClassName, &PaneWindow::Procedure, PaneBackgroundBrush());
  if (!IsWindow(parent)) return false;
  return CreateWindowExW(0, kClassName, L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                         position.left, position.top, position.right - position.left,
                         position.bottom - position.top, parent, nullptr, ThisModule(), this) != nullptr;
}

void PaneWindow::Destroy() {
  if (handle_ != nullptr) DestroyWindow(handle_);
}

void PaneWindow::Place(HWND parent, const RECT& position) {
  if (handle_ == nullptr) return;
  if (parent != nullptr && GetParent(handle_) != parent) SetParent(handle_, parent);
  SetWindowPos(handle_, nullptr, position.left, position.top, position.right - position.left,
               position.bottom - position.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void PaneWindow::Show() {
  if (handle_ != nullptr) ShowWindow(handle_, SW_SHOWNA);
}

void PaneWindow::Hide() {
  if (handle_ != nullptr) ShowWindow(handle_, SW_HIDE);
}

LRESULT CALLBACK PaneWindow::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  auto* const self = WindowOwner<PaneWindow>(window, message, lparam);
  if (message == WM_NCCREATE) self->handle_ = window;
  bool handled = false;
  if (self != nullptr) {
    Guard(L"PaneWindow", [&] { handled = self->OnMessage(message, wparam, lparam); });
  }
  if (handled) return 0;
  return DefWindowProcW(window, message, wparam, lparam);
}

bool PaneWindow::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CREATE:
      events_.OnWindowCreated(handle_, reinterpret_cast<const CREATESTRUCTW*>(lparam)->hwndParent);
      return true;
    case WM_SIZE:
      events_.OnWindowResized();
      return true;
    case WM_SETFOCUS:
      events_.OnWindowFocused();
      return true;
    case WM_TIMER:
      events_.OnWindowTimer(wparam);
      return true;
    case kUiTaskMessage:
      events_.OnWindowTask(lparam);
      return true;
    case WM_DESTROY:
      events_.OnWindowDestroyed();
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
