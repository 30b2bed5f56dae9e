#include "host/container_site.h"

#include "engines/common/com_guard.h"

namespace qv::devhost {

HRESULT ContainerSite::Answer(const char* call, HRESULT result) noexcept {
  return GuardCom([&] {
    if (log_ != nullptr) log_->Add(std::string("control: ") + call, result);
    return result;
  });
}

HRESULT ContainerSite::SaveObject() noexcept {
  return Answer("SaveObject", S_OK);
}
HRESULT ContainerSite::GetMoniker(DWORD, DWORD, IMoniker**) noexcept {
  return Answer("GetMoniker", E_NOTIMPL);
}
HRESULT ContainerSite::GetContainer(IOleContainer** container) noexcept {
  if (container == nullptr) return E_POINTER;
  *container = nullptr;
  return Answer("GetContainer", E_NOINTERFACE);
}
HRESULT ContainerSite::ShowObject() noexcept {
  return Answer("ShowObject", S_OK);
}
HRESULT ContainerSite::OnShowWindow(BOOL) noexcept {
  return Answer("OnShowWindow", S_OK);
}
HRESULT ContainerSite::RequestNewObjectLayout() noexcept {
  return Answer("RequestNewObjectLayout", E_NOTIMPL);
}

HRESULT ContainerSite::GetWindow(HWND* window) noexcept {
  if (window == nullptr) return E_POINTER;
  *window = window_;
  return Answer("GetWindow", window_ ? S_OK : E_FAIL);
}
HRESULT ContainerSite::ContextSensitiveHelp(BOOL) noexcept {
  return E_NOTIMPL;
}
HRESULT ContainerSite::CanInPlaceActivate() noexcept {
  return Answer("CanInPlaceActivate", window_ ? S_OK : S_FALSE);
}
HRESULT ContainerSite::OnInPlaceActivate() noexcept {
  return Answer("OnInPlaceActivate", S_OK);
}
HRESULT ContainerSite::OnUIActivate() noexcept {
  return Answer("OnUIActivate", S_OK);
}

HRESULT ContainerSite::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                        LPRECT position, LPRECT clip, LPOLEINPLACEFRAMEINFO info) noexcept {
  if (!frame || !document || !position || !clip || !info) return E_POINTER;
  *frame = nullptr;
  *document = nullptr;
  if (window_ == nullptr) return Answer("GetWindowContext", E_FAIL);
  *frame = this;
  AddRef();
  GetClientRect(window_, position);
  *clip = *position;
  info->fMDIApp = FALSE;
  info->hwndFrame = window_;
  info->haccel = nullptr;
  info->cAccelEntries = 0;
  return Answer("GetWindowContext", S_OK);
}

HRESULT ContainerSite::Scroll(SIZE) noexcept {
  return E_NOTIMPL;
}
HRESULT ContainerSite::OnUIDeactivate(BOOL) noexcept {
  return Answer("OnUIDeactivate", S_OK);
}
HRESULT ContainerSite::OnInPlaceDeactivate() noexcept {
  return Answer("OnInPlaceDeactivate", S_OK);
}
HRESULT ContainerSite::DiscardUndoState() noexcept {
  return E_NOTIMPL;
}
HRESULT ContainerSite::DeactivateAndUndo() noexcept {
  return E_NOTIMPL;
}
HRESULT ContainerSite::OnPosRectChange(LPCRECT) noexcept {
  return Answer("OnPosRectChange", S_OK);
}

HRESULT ContainerSite::GetBorder(LPRECT) noexcept {
  return INPLACE_E_NOTOOLSPACE;
}
HRESULT ContainerSite::RequestBorderSpace(LPCBORDERWIDTHS) noexcept {
  return INPLACE_E_NOTOOLSPACE;
}
HRESULT ContainerSite::SetBorderSpace(LPCBORDERWIDTHS widths) noexcept {
  return Answer("SetBorderSpace", widths ? INPLACE_E_NOTOOLSPACE : S_OK);
}
HRESULT ContainerSite::SetActiveObject(IOleInPlaceActiveObject*, LPCOLESTR) noexcept {
  return Answer("SetActiveObject", S_OK);
}
HRESULT ContainerSite::InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) noexcept {
  return E_NOTIMPL;
}
HRESULT ContainerSite::SetMenu(HMENU, HOLEMENU, HWND) noexcept {
  return E_NOTIMPL;
}
HRESULT ContainerSite::RemoveMenus(HMENU) noexcept {
  return E_NOTIMPL;
}
HRESULT ContainerSite::SetStatusText(LPCOLESTR) noexcept {
  return S_OK;
}
HRESULT ContainerSite::EnableModeless(BOOL) noexcept {
  return S_OK;
}
HRESULT ContainerSite::TranslateAccelerator(LPMSG, WORD) noexcept {
  return S_FALSE;
}

}  // namespace qv::devhost
