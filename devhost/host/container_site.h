#pragma once

#include <ole2.h>
#include <windows.h>

#include "foundation/com_object.h"
#include "host/call_log.h"

template <>
struct qv::ComBaseOf<IOleInPlaceSite> {
  using Type = IOleWindow;
};
template <>
struct qv::ComBaseOf<IOleInPlaceFrame> {
  using Type = IOleInPlaceUIWindow;
};

namespace qv::devhost {

/// The site that one hosted control talks to: client site, in-place site and frame of one window. Like Office
/// it gives no in-place document window. Calls of the control are written to the log, which must outlive the
/// site's last reference or be taken away by `Detach`.
class ContainerSite final : public ComObject<IOleClientSite, IOleInPlaceSite, IOleInPlaceFrame> {
 public:
  ContainerSite(HWND window, CallLog& log) : window_(window), log_(&log) {}

  /// The window is gone; whoever still holds the site gets failures.
  void Detach() {
    window_ = nullptr;
    log_ = nullptr;
  }

  HRESULT STDMETHODCALLTYPE SaveObject() noexcept override;
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) noexcept override;
  HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** container) noexcept override;
  HRESULT STDMETHODCALLTYPE ShowObject() noexcept override;
  HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL show) noexcept override;
  HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() noexcept override;

  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) noexcept override;
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL enter) noexcept override;
  HRESULT STDMETHODCALLTYPE CanInPlaceActivate() noexcept override;
  HRESULT STDMETHODCALLTYPE OnInPlaceActivate() noexcept override;
  HRESULT STDMETHODCALLTYPE OnUIActivate() noexcept override;
  HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                             LPRECT position, LPRECT clip,
                                             LPOLEINPLACEFRAMEINFO info) noexcept override;
  HRESULT STDMETHODCALLTYPE Scroll(SIZE extent) noexcept override;
  HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL undoable) noexcept override;
  HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() noexcept override;
  HRESULT STDMETHODCALLTYPE DiscardUndoState() noexcept override;
  HRESULT STDMETHODCALLTYPE DeactivateAndUndo() noexcept override;
  HRESULT STDMETHODCALLTYPE OnPosRectChange(LPCRECT position) noexcept override;

  HRESULT STDMETHODCALLTYPE GetBorder(LPRECT border) noexcept override;
  HRESULT STDMETHODCALLTYPE RequestBorderSpace(LPCBORDERWIDTHS widths) noexcept override;
  HRESULT STDMETHODCALLTYPE SetBorderSpace(LPCBORDERWIDTHS widths) noexcept override;
  HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject* object,
                                            LPCOLESTR name) noexcept override;
  HRESULT STDMETHODCALLTYPE InsertMenus(HMENU shared, LPOLEMENUGROUPWIDTHS widths) noexcept override;
  HRESULT STDMETHODCALLTYPE SetMenu(HMENU shared, HOLEMENU menu, HWND activeObject) noexcept override;
  HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU shared) noexcept override;
  HRESULT STDMETHODCALLTYPE SetStatusText(LPCOLESTR text) noexcept override;
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL enable) noexcept override;
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG message, WORD id) noexcept override;

 private:
  /// Logs the call and gives the result back.
  HRESULT Answer(const char* call, HRESULT result) noexcept;

  HWND window_;
  CallLog* log_;
};

}  // namespace qv::devhost
