#include "webview2/view_window.h"

#include <utility>

#include "engines/common/com_guard.h"
#include "webview2/this_library.h"

namespace qv::devhost {
namespace {

constexpr wchar_t kClassName[] = L"QvWebView";

}  // namespace

std::unique_ptr<ViewWindow> ViewWindow::Create(HWND parent) {
  WNDCLASSW windowClass{};
  windowClass.style = CS_DBLCLKS;
  windowClass.lpfnWndProc = Procedure;
  windowClass.hInstance = ThisLibrary();
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.lpszClassName = kClassName;
  RegisterClassW(&windowClass);
  std::unique_ptr<ViewWindow> view(new ViewWindow());
  view->window_ = CreateWindowExW(0, kClassName, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, 0, 0, 0, 0,
                                  parent, nullptr, windowClass.hInstance, nullptr);
  if (view->window_ == nullptr) return nullptr;
  SetWindowLongPtrW(view->window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(view.get()));
  return view;
}

ViewWindow::~ViewWindow() {
  onDestroyed_ = nullptr;
  if (window_ == nullptr) return;
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(window_);
}

void ViewWindow::SetParent(HWND parent) {
  if (window_ != nullptr) ::SetParent(window_, parent);
}

void ViewWindow::SetBounds(const RECT& bounds) {
  if (window_ == nullptr) return;
  MoveWindow(window_, bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top, TRUE);
}

void ViewWindow::SetVisible(bool visible) {
  if (window_ != nullptr) ShowWindow(window_, visible ? SW_SHOWNA : SW_HIDE);
}

void ViewWindow::SetBackground(COREWEBVIEW2_COLOR color) {
  background_ = RGB(color.R, color.G, color.B);
  if (window_ != nullptr) InvalidateRect(window_, nullptr, TRUE);
}

void ViewWindow::SetContent(std::weak_ptr<ViewContent> content) {
  content_ = std::move(content);
  if (window_ != nullptr) InvalidateRect(window_, nullptr, TRUE);
}

LRESULT CALLBACK ViewWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  auto* view = reinterpret_cast<ViewWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (view == nullptr) return DefWindowProcW(window, message, wParam, lParam);
  LRESULT result = 0;
  static_cast<void>(GuardCom([&] {
    result = view->Handle(message, wParam, lParam);
    return S_OK;
  }));
  return result;
}

LRESULT ViewWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = window_;
  if (const auto content = content_.lock()) {
    const auto result = content->OnMessage(window, message, wParam, lParam);
    if (result) return *result;
  }
  switch (message) {
    case WM_ERASEBKGND: {
      RECT client{};
      GetClientRect(window, &client);
      const HBRUSH brush = CreateSolidBrush(background_);
      FillRect(reinterpret_cast<HDC>(wParam), &client, brush);
      DeleteObject(brush);
      return 1;
    }
    case WM_DESTROY: {
      SetWindowLongPtrW(window, GWLP_USERDATA, 0);
      window_ = nullptr;
      const auto action = std::exchange(onDestroyed_, nullptr);
      if (action) action();
      return 0;
    }
    default:
      return DefWindowProcW(window, message, wParam, lParam);
  }
}

}  // namespace qv::devhost
