#include "webview2/controller.h"

#include "engines/common/com_guard.h"
#include "webview2/put_value.h"

namespace qv::devhost {

Controller::Controller(std::shared_ptr<CompletionQueue> queue, HWND parent,
                       std::unique_ptr<ViewWindow> window, const BindPage& bind, std::wstring userDataFolder)
    : queue_(std::move(queue)), parent_(parent), window_(std::move(window)) {
  view_ = MakeCom<CoreWebView>(queue_, parent, std::move(userDataFolder));
  view_->Bind(bind, *window_);
}

Controller::~Controller() {
  view_->Close();
}

template <typename Body>
HRESULT Controller::WhileOpen(Body&& body) noexcept {
  if (!queue_->IsOwnThread()) return RPC_E_WRONG_THREAD;
  if (view_->IsClosed()) return HRESULT_FROM_WIN32(ERROR_INVALID_STATE);
  return GuardCom(std::forward<Body>(body));
}

HRESULT Controller::get_IsVisible(BOOL* value) noexcept {
  return WhileOpen([&] { return PutValue(value, view_->Look().visible ? TRUE : FALSE); });
}

HRESULT Controller::put_IsVisible(BOOL value) noexcept {
  return WhileOpen([&] {
    view_->Look().visible = value != FALSE;
    window_->SetVisible(value != FALSE);
    view_->Backend()->SetVisible(value != FALSE);
    return S_OK;
  });
}

HRESULT Controller::get_Bounds(RECT* bounds) noexcept {
  return WhileOpen([&] { return PutValue(bounds, view_->Look().bounds); });
}

HRESULT Controller::put_Bounds(RECT bounds) noexcept {
  return WhileOpen([&] {
    view_->Look().bounds = bounds;
    window_->SetBounds(bounds);
    view_->Backend()->SetBounds(bounds);
    return S_OK;
  });
}

HRESULT Controller::get_ZoomFactor(double* value) noexcept {
  return WhileOpen([&] { return PutValue(value, zoomFactor_); });
}

HRESULT Controller::put_ZoomFactor(double value) noexcept {
  return WhileOpen([&]() -> HRESULT {
    if (value <= 0) return E_INVALIDARG;
    zoomFactor_ = value;
    return S_OK;
  });
}

HRESULT Controller::SetBoundsAndZoomFactor(RECT bounds, double zoomFactor) noexcept {
  const HRESULT hr = put_ZoomFactor(zoomFactor);
  return FAILED(hr) ? hr : put_Bounds(bounds);
}

HRESULT Controller::MoveFocus(COREWEBVIEW2_MOVE_FOCUS_REASON) noexcept {
  return WhileOpen([&] {
    if (window_->Handle() != nullptr) SetFocus(window_->Handle());
    return S_OK;
  });
}

HRESULT Controller::get_ParentWindow(HWND* value) noexcept {
  return WhileOpen([&] { return PutValue(value, parent_); });
}

HRESULT Controller::put_ParentWindow(HWND value) noexcept {
  return WhileOpen([&]() -> HRESULT {
    if (!IsWindow(value)) return HRESULT_FROM_WIN32(ERROR_INVALID_WINDOW_HANDLE);
    parent_ = value;
    window_->SetParent(value);
    view_->SetParent(value);
    return S_OK;
  });
}

HRESULT Controller::NotifyParentWindowPositionChanged() noexcept {
  return WhileOpen([] { return S_OK; });
}

HRESULT Controller::Close() noexcept {
  if (!queue_->IsOwnThread()) return RPC_E_WRONG_THREAD;
  return GuardCom([&] {
    view_->Close();
    window_.reset();
    return S_OK;
  });
}

HRESULT Controller::get_CoreWebView2(ICoreWebView2** value) noexcept {
  return WhileOpen([&]() -> HRESULT {
    if (value == nullptr) return E_POINTER;
    *value = ComPtr<CoreWebView>(view_).Detach();
    return S_OK;
  });
}

HRESULT Controller::get_DefaultBackgroundColor(COREWEBVIEW2_COLOR* value) noexcept {
  return WhileOpen([&] { return PutValue(value, view_->Look().background); });
}

HRESULT Controller::put_DefaultBackgroundColor(COREWEBVIEW2_COLOR value) noexcept {
  return WhileOpen([&]() -> HRESULT {
    if (value.A != 0 && value.A != 255) return E_INVALIDARG;
    view_->Look().background = value;
    window_->SetBackground(value);
    view_->Backend()->SetBackground(value);
    return S_OK;
  });
}

}  // namespace qv::devhost
