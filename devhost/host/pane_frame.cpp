#include "host/pane_frame.h"

#include <stdexcept>

#include "engines/common/com_guard.h"

namespace qv::devhost {
namespace {

constexpr wchar_t kClassName[] = L"QvDevhostPane";
constexpr SIZE kInitialSize{400, 700};

}  // namespace

PaneFrame::PaneFrame(const std::wstring& progId, const std::wstring& title, bool visible, CallLog& log)
    : title_(title) {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = Procedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = kClassName;
  RegisterClassW(&windowClass);
  window_ =
      CreateWindowExW(0, kClassName, title.c_str(), WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT, 0,
                      kInitialSize.cx, kInitialSize.cy, nullptr, nullptr, windowClass.hInstance, nullptr);
  if (window_ == nullptr) throw std::runtime_error("the task-pane window cannot be created");
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  if (visible) ShowWindow(window_, SW_SHOWNOACTIVATE);
  try {
    container_ = std::make_unique<ControlContainer>(progId, window_, log);
  } catch (...) {
    Close();
    throw;
  }
}

PaneFrame::~PaneFrame() {
  Close();
}

bool PaneFrame::IsVisible() const {
  return window_ != nullptr && IsWindowVisible(window_);
}

void PaneFrame::SetVisible(bool visible) {
  if (window_ != nullptr) ShowWindow(window_, visible ? SW_SHOWNOACTIVATE : SW_HIDE);
}

SIZE PaneFrame::ClientSize() const {
  RECT area{};
  if (window_ != nullptr) GetClientRect(window_, &area);
  return {area.right, area.bottom};
}

void PaneFrame::SetClientSize(SIZE size) {
  if (window_ == nullptr) return;
  RECT outer{0, 0, size.cx, size.cy};
  AdjustWindowRectEx(&outer, static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_STYLE)), FALSE, 0);
  SetWindowPos(window_, nullptr, 0, 0, outer.right - outer.left, outer.bottom - outer.top,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void PaneFrame::Close() {
  // Taken first: closing dispatches messages, and another close may come with them.
  if (const auto container = std::move(container_)) leaks_ = container->Close();
  if (window_ == nullptr) return;
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(std::exchange(window_, nullptr));
}

LRESULT CALLBACK PaneFrame::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  auto* frame = reinterpret_cast<PaneFrame*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (frame != nullptr && message == WM_SIZE && frame->container_) {
    static_cast<void>(GuardCom([&] { return frame->container_->Resize(), S_OK; }));
    return 0;
  }
  if (frame != nullptr && message == WM_CLOSE) {
    static_cast<void>(GuardCom([&] { return frame->Close(), S_OK; }));
    return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace qv::devhost
