// Activation of the control: how it enters its container's window and leaves it.

#include "foundation/guard.h"
#include "panel/ole_control.h"

namespace qv {

HRESULT OleControl::DoVerb(LONG verb, LPMSG, IOleClientSite*, LONG, HWND parent, LPCRECT position) noexcept {
  return GuardHr(L"DoVerb", [&] {
    OnVerb(verb, parent);
    switch (verb) {
      case OLEIVERB_PRIMARY:
      case OLEIVERB_SHOW:
      case OLEIVERB_INPLACEACTIVATE:
      case OLEIVERB_UIACTIVATE:
        return Activate(verb, parent, position);
      case OLEIVERB_HIDE:
        HideControlWindow();
        return S_OK;
      default:
        return verb > 0 ? OLEOBJ_S_INVALIDVERB : E_NOTIMPL;
    }
  });
}

HRESULT OleControl::Activate(LONG verb, HWND parent, LPCRECT position) {
  RECT place = position != nullptr ? *position : RECT{};
  if (inPlaceActive_ && ControlWindow() != nullptr) {
    // The site has said where the window belongs; what comes with a later verb may be any window of the host.
    place = {};
  } else if (const HRESULT hr = ActivateInSite(parent, place); FAILED(hr)) {
    return hr;
  }
  if (!ShowControlWindow(L"DoVerb", parent, place)) return E_FAIL;
  // Whether the container wants to know is its own business.
  if (clientSite_ != nullptr) static_cast<void>(clientSite_->ShowObject());
  if (verb == OLEIVERB_PRIMARY || verb == OLEIVERB_UIACTIVATE) ActivateUi();
  return S_OK;
}

HRESULT OleControl::ActivateInSite(HWND& parent, RECT& position) {
  if (inPlaceActive_) return S_OK;
  // A container without an in-place site still gets its window, in the parent that it named.
  if (clientSite_ == nullptr || FAILED(clientSite_.As(&inPlaceSite_))) return S_OK;
  if (const HRESULT hr = inPlaceSite_->CanInPlaceActivate(); hr != S_OK) return FAILED(hr) ? hr : E_FAIL;
  if (const HRESULT hr = inPlaceSite_->OnInPlaceActivate(); FAILED(hr)) return hr;
  inPlaceActive_ = true;

  if (HWND window = nullptr; SUCCEEDED(inPlaceSite_->GetWindow(&window)) && window != nullptr)
    parent = window;
  // Office hands out no document window, some containers no frame either.
  ComPtr<IOleInPlaceUIWindow> document;
  RECT place{};
  RECT clip{};
  OLEINPLACEFRAMEINFO frameInfo{};
  frameInfo.cb = sizeof(frameInfo);
  if (SUCCEEDED(inPlaceSite_->GetWindowContext(&frame_, &document, &place, &clip, &frameInfo)) &&
      !IsRectEmpty(&place)) {
    position = place;
  }
  return S_OK;
}

void OleControl::ActivateUi() {
  if (uiActive_ || inPlaceSite_ == nullptr) return;
  uiActive_ = SUCCEEDED(inPlaceSite_->OnUIActivate());
  SetFocus(ControlWindow());
  if (frame_ == nullptr) return;
  // A frame without menus and tool bars refuses both, which is as good.
  static_cast<void>(frame_->SetActiveObject(this, nullptr));
  static_cast<void>(frame_->SetBorderSpace(nullptr));
}

HRESULT OleControl::UIDeactivate() noexcept {
  return GuardHr(L"UIDeactivate", [&] {
    if (!uiActive_) return S_OK;
    uiActive_ = false;
    if (frame_ != nullptr) static_cast<void>(frame_->SetActiveObject(nullptr, nullptr));
    if (inPlaceSite_ != nullptr) static_cast<void>(inPlaceSite_->OnUIDeactivate(FALSE));
    return S_OK;
  });
}

HRESULT OleControl::InPlaceDeactivate() noexcept {
  return GuardHr(L"InPlaceDeactivate", [&] {
    if (!inPlaceActive_) return S_OK;
    static_cast<void>(UIDeactivate());
    // Hidden, not destroyed: a pane that is shown again goes on with the page as it was.
    HideControlWindow();
    LeaveSite();
    return S_OK;
  });
}

void OleControl::LeaveSite() {
  inPlaceActive_ = false;
  frame_.Reset();
  if (const ComPtr<IOleInPlaceSite> site = std::move(inPlaceSite_))
    static_cast<void>(site->OnInPlaceDeactivate());
}

HRESULT OleControl::SetObjectRects(LPCRECT position, LPCRECT) noexcept {
  return GuardHr(L"SetObjectRects", [&] {
    if (position == nullptr) return E_POINTER;
    HWND parent = nullptr;
    if (inPlaceSite_ != nullptr) {
      if (FAILED(inPlaceSite_->GetWindow(&parent))) parent = nullptr;
    } else if (ComPtr<IOleInPlaceSite> site; clientSite_ != nullptr && SUCCEEDED(clientSite_.As(&site))) {
      if (FAILED(site->GetWindow(&parent))) parent = nullptr;
    }
    if (ControlWindow() == nullptr)
      return ShowControlWindow(L"SetObjectRects", parent, *position) ? S_OK : E_FAIL;
    PlaceControlWindow(parent, *position);
    return S_OK;
  });
}

HRESULT OleControl::Close(DWORD) noexcept {
  return GuardHr(L"Close", [&] {
    // The container may let go of the last reference while it is told.
    const ComPtr<IOleObject> keptAlive(this);
    static_cast<void>(InPlaceDeactivate());
    OnClose();
    if (adviseHolder_ != nullptr) static_cast<void>(adviseHolder_->SendOnClose());
    return S_OK;
  });
}

HRESULT OleControl::SetClientSite(IOleClientSite* site) noexcept {
  return GuardHr(L"SetClientSite", [&] {
    if (site == nullptr) {
      frame_.Reset();
      inPlaceSite_.Reset();
      inPlaceActive_ = uiActive_ = false;
    }
    clientSite_ = site;
    return S_OK;
  });
}

HRESULT OleControl::GetClientSite(IOleClientSite** site) noexcept {
  return site != nullptr ? clientSite_.CopyTo(site) : E_POINTER;
}

HRESULT OleControl::GetWindow(HWND* window) noexcept {
  if (window == nullptr) return E_POINTER;
  *window = ControlWindow();
  return *window != nullptr ? S_OK : E_FAIL;
}

}  // namespace qv
