#include "host/document_frame.h"

#include <stdexcept>

#include "engines/common/com_guard.h"
#include "host/drawing.h"
#include "host/host_window_class.h"

namespace qv::devhost {
namespace {

constexpr wchar_t kClassName[] = L"QvDevhostFrame";
/// Without a document's name, as that host has it.
constexpr wchar_t kCaption[] = L"WPS Office \u2013 Quorvantis Development Host";
constexpr SIZE kInitialSize{1280, 800};

void FillWithChildren(HWND window) {
  RECT area{};
  GetClientRect(window, &area);
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
    MoveWindow(child, 0, 0, area.right, area.bottom, TRUE);
}

}  // namespace

DocumentFrame::DocumentFrame(bool isShown, std::function<void()> onClose) : onClose_(std::move(onClose)) {
  const HINSTANCE module = RegisterHostClass(kClassName, Procedure);
  window_ = CreateWindowExW(0, kClassName, kCaption, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT, 0,
                            kInitialSize.cx, kInitialSize.cy, nullptr, nullptr, module, nullptr);
  if (window_ == nullptr) throw std::runtime_error("the frame window cannot be created");
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  if (isShown) ShowWindow(window_, SW_SHOW);
}

DocumentFrame::~DocumentFrame() {
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(window_);
}

LRESULT CALLBACK DocumentFrame::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  auto* frame = reinterpret_cast<DocumentFrame*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (frame != nullptr && message == WM_SIZE && wParam != SIZE_MINIMIZED) return FillWithChildren(window), 0;
  if (frame != nullptr && message == WM_CLOSE) {
    static_cast<void>(GuardCom([&] { return frame->onClose_(), S_OK; }));
    return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace qv::devhost
