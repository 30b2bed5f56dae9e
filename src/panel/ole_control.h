#pragma once

#include <windows.h>

#include "foundation/com_object.h"
#include "foundation/variant.h"
#include "panel/excel_pane_interface.h"
#include "panel/type_library.h"

namespace qv {

/// The ActiveX side of the pane control: activation in the container's window, extents, advice, and the many
/// answers that a control without data of its own gives. What the control shows is the derived class's
/// business. Host UI thread. https://learn.microsoft.com/windows/win32/com/activex-controls
class OleControl : public ComObject<IQuorvantisExcelPane, IOleObject, IOleInPlaceObject,
                                    IOleInPlaceActiveObject, IOleControl, IViewObject2, IPersistStreamInit> {
 public:
  // IDispatch
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) noexcept override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) noexcept override;

  // IOleObject
  HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* site) noexcept override;
  HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite** site) noexcept override;
  HRESULT STDMETHODCALLTYPE SetHostNames(LPCOLESTR application, LPCOLESTR document) noexcept override;
  HRESULT STDMETHODCALLTYPE Close(DWORD saveOption) noexcept override;
  HRESULT STDMETHODCALLTYPE SetMoniker(DWORD which, IMoniker* moniker) noexcept override;
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) noexcept override;
  HRESULT STDMETHODCALLTYPE InitFromData(IDataObject* data, BOOL creation, DWORD reserved) noexcept override;
  HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD reserved, IDataObject** data) noexcept override;
  HRESULT STDMETHODCALLTYPE DoVerb(LONG verb, LPMSG message, IOleClientSite* activeSite, LONG index,
                                   HWND parent, LPCRECT position) noexcept override;
  HRESULT STDMETHODCALLTYPE EnumVerbs(IEnumOLEVERB** verbs) noexcept override;
  HRESULT STDMETHODCALLTYPE Update() noexcept override;
  HRESULT STDMETHODCALLTYPE IsUpToDate() noexcept override;
  HRESULT STDMETHODCALLTYPE GetUserClassID(CLSID* classId) noexcept override;
  HRESULT STDMETHODCALLTYPE GetUserType(DWORD form, LPOLESTR* text) noexcept override;
  HRESULT STDMETHODCALLTYPE SetExtent(DWORD aspect, SIZEL* size) noexcept override;
  HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, SIZEL* size) noexcept override;
  HRESULT STDMETHODCALLTYPE Advise(IAdviseSink* sink, DWORD* connection) noexcept override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD connection) noexcept override;
  HRESULT STDMETHODCALLTYPE EnumAdvise(IEnumSTATDATA** advices) noexcept override;
  HRESULT STDMETHODCALLTYPE GetMiscStatus(DWORD aspect, DWORD* status) noexcept override;
  HRESULT STDMETHODCALLTYPE SetColorScheme(LOGPALETTE* palette) noexcept override;

  // IOleWindow
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) noexcept override;
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL enter) noexcept override;

  // IOleInPlaceObject
  HRESULT STDMETHODCALLTYPE InPlaceDeactivate() noexcept override;
  HRESULT STDMETHODCALLTYPE UIDeactivate() noexcept override;
  HRESULT STDMETHODCALLTYPE SetObjectRects(LPCRECT position, LPCRECT clip) noexcept override;
  HRESULT STDMETHODCALLTYPE ReactivateAndUndo() noexcept override;

  // IOleInPlaceActiveObject
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG message) noexcept override;
  HRESULT STDMETHODCALLTYPE OnFrameWindowActivate(BOOL activate) noexcept override;
  HRESULT STDMETHODCALLTYPE OnDocWindowActivate(BOOL activate) noexcept override;
  HRESULT STDMETHODCALLTYPE ResizeBorder(LPCRECT border, IOleInPlaceUIWindow* window,
                                         BOOL frame) noexcept override;
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL enable) noexcept override;

  // IOleControl
  HRESULT STDMETHODCALLTYPE GetControlInfo(CONTROLINFO* info) noexcept override;
  HRESULT STDMETHODCALLTYPE OnMnemonic(MSG* message) noexcept override;
  HRESULT STDMETHODCALLTYPE OnAmbientPropertyChange(DISPID id) noexcept override;
  HRESULT STDMETHODCALLTYPE FreezeEvents(BOOL freeze) noexcept override;

  // IViewObject2
  HRESULT STDMETHODCALLTYPE Draw(DWORD aspect, LONG index, void* aspectInfo, DVTARGETDEVICE* device,
                                 HDC deviceDc, HDC dc, LPCRECTL bounds, LPCRECTL windowBounds,
                                 BOOL(CALLBACK* goOn)(ULONG_PTR), ULONG_PTR goOnArgument) noexcept override;
  HRESULT STDMETHODCALLTYPE GetColorSet(DWORD aspect, LONG index, void* aspectInfo, DVTARGETDEVICE* device,
                                        HDC deviceDc, LOGPALETTE** palette) noexcept override;
  HRESULT STDMETHODCALLTYPE Freeze(DWORD aspect, LONG index, void* aspectInfo, DWORD* key) noexcept override;
  HRESULT STDMETHODCALLTYPE Unfreeze(DWORD key) noexcept override;
  HRESULT STDMETHODCALLTYPE SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) noexcept override;
  HRESULT STDMETHODCALLTYPE GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) noexcept override;
  HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* device,
                                      SIZEL* size) noexcept override;

  // IPersistStreamInit
  HRESULT STDMETHODCALLTYPE GetClassID(CLSID* classId) noexcept override;
  HRESULT STDMETHODCALLTYPE IsDirty() noexcept override;
  HRESULT STDMETHODCALLTYPE Load(IStream* stream) noexcept override;
  HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clearDirty) noexcept override;
  HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* size) noexcept override;
  HRESULT STDMETHODCALLTYPE InitNew() noexcept override;

 protected:
  /// The control's window; null before activation and after closing.
  [[nodiscard]] virtual HWND ControlWindow() const = 0;
  /// `DoVerb` begins; `verb` and `parent` as the container gave them.
  virtual void OnVerb(LONG verb, HWND parent) = 0;
  /// Shows the window at `position` in `parent`, creating it when missing; `operation` names the caller for
  /// the log. An existing window stays where it is when `position` is empty. False when there is no window
  /// afterwards.
  [[nodiscard]] virtual bool ShowControlWindow(const wchar_t* operation, HWND parent,
                                               const RECT& position) = 0;
  /// Moves the existing window, shown or hidden as it is.
  virtual void PlaceControlWindow(HWND parent, const RECT& position) = 0;
  virtual void HideControlWindow() = 0;
  /// The container closes the control for good; may come more than once.
  virtual void OnClose() = 0;

 private:
  [[nodiscard]] HRESULT Activate(LONG verb, HWND parent, LPCRECT position);
  [[nodiscard]] HRESULT ActivateInSite(HWND& parent, RECT& position);
  void ActivateUi();
  void LeaveSite();

  InterfaceTypeInfo typeInfo_{__uuidof(IQuorvantisExcelPane)};
  ComPtr<IOleClientSite> clientSite_;
  ComPtr<IOleInPlaceSite> inPlaceSite_;
  ComPtr<IOleInPlaceFrame> frame_;
  ComPtr<IOleAdviseHolder> adviseHolder_;
  ComPtr<IAdviseSink> viewSink_;
  DWORD viewAspects_ = 0;
  DWORD viewFlags_ = 0;
  /// HIMETRIC (2540 per inch); about 320 × 640 pixels until the container says otherwise.
  SIZEL extent_{8467, 16933};
  bool inPlaceActive_ = false;
  bool uiActive_ = false;
};

}  // namespace qv
