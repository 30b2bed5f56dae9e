#include "panel/ole_control.h"

#include <olectl.h>

#include "foundation/guard.h"
#include "panel/pane_background.h"

namespace qv {
namespace {

/// RECOMPOSEONRESIZE, CANTLINKINSIDE, INSIDEOUT, ACTIVATEWHENVISIBLE, SETCLIENTSITEFIRST; the registration
/// says the same.
constexpr DWORD kMiscStatus = 131473;

template <typename Value>
HRESULT Put(Value* out, const Value& value) {
  if (out == nullptr) return E_POINTER;
  *out = value;
  return S_OK;
}

}  // namespace

HRESULT OleControl::GetTypeInfoCount(UINT* count) noexcept {
  return typeInfo_.GetTypeInfoCount(count);
}

HRESULT OleControl::GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept {
  return GuardHr(L"GetTypeInfo", [&] { return typeInfo_.GetTypeInfo(index, info); });
}

HRESULT OleControl::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept {
  return GuardHr(L"GetIDsOfNames", [&] { return typeInfo_.GetIDsOfNames(names, count, ids); });
}

HRESULT OleControl::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) noexcept {
  return DISP_E_MEMBERNOTFOUND;
}

HRESULT OleControl::SetHostNames(LPCOLESTR, LPCOLESTR) noexcept {
  return S_OK;
}
HRESULT OleControl::SetMoniker(DWORD, IMoniker*) noexcept {
  return E_NOTIMPL;
}
HRESULT OleControl::GetMoniker(DWORD, DWORD, IMoniker** moniker) noexcept {
  if (moniker != nullptr) *moniker = nullptr;
  return E_NOTIMPL;
}
HRESULT OleControl::InitFromData(IDataObject*, BOOL, DWORD) noexcept {
  return E_NOTIMPL;
}
HRESULT OleControl::GetClipboardData(DWORD, IDataObject** data) noexcept {
  if (data != nullptr) *data = nullptr;
  return E_NOTIMPL;
}

HRESULT OleControl::EnumVerbs(IEnumOLEVERB** verbs) noexcept {
  return verbs != nullptr ? OleRegEnumVerbs(kExcelPaneClassId, verbs) : E_POINTER;
}
HRESULT OleControl::Update() noexcept {
  return S_OK;
}
HRESULT OleControl::IsUpToDate() noexcept {
  return S_OK;
}
HRESULT OleControl::GetUserClassID(CLSID* classId) noexcept {
  return Put(classId, kExcelPaneClassId);
}
HRESULT OleControl::GetUserType(DWORD form, LPOLESTR* text) noexcept {
  return text != nullptr ? OleRegGetUserType(kExcelPaneClassId, form, text) : E_POINTER;
}

HRESULT OleControl::SetExtent(DWORD aspect, SIZEL* size) noexcept {
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  if (size == nullptr) return E_POINTER;
  extent_ = *size;
  return S_OK;
}

HRESULT OleControl::GetExtent(DWORD aspect, SIZEL* size) noexcept {
  return aspect == DVASPECT_CONTENT ? Put(size, extent_) : DV_E_DVASPECT;
}

HRESULT OleControl::Advise(IAdviseSink* sink, DWORD* connection) noexcept {
  if (connection == nullptr) return E_POINTER;
  if (adviseHolder_ == nullptr) {
    if (const HRESULT hr = CreateOleAdviseHolder(&adviseHolder_); FAILED(hr)) return hr;
  }
  return adviseHolder_->Advise(sink, connection);
}

HRESULT OleControl::Unadvise(DWORD connection) noexcept {
  return adviseHolder_ != nullptr ? adviseHolder_->Unadvise(connection) : OLE_E_NOCONNECTION;
}

HRESULT OleControl::EnumAdvise(IEnumSTATDATA** advices) noexcept {
  if (advices == nullptr) return E_POINTER;
  *advices = nullptr;
  return adviseHolder_ != nullptr ? adviseHolder_->EnumAdvise(advices) : S_OK;
}

HRESULT OleControl::GetMiscStatus(DWORD aspect, DWORD* status) noexcept {
  if (status == nullptr) return E_POINTER;
  *status = 0;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  *status = kMiscStatus;
  return S_OK;
}

HRESULT OleControl::SetColorScheme(LOGPALETTE*) noexcept {
  return E_NOTIMPL;
}
HRESULT OleControl::ContextSensitiveHelp(BOOL) noexcept {
  return E_NOTIMPL;
}
HRESULT OleControl::ReactivateAndUndo() noexcept {
  return E_NOTIMPL;
}

HRESULT OleControl::TranslateAccelerator(LPMSG) noexcept {
  return S_FALSE;
}
HRESULT OleControl::OnFrameWindowActivate(BOOL) noexcept {
  return S_OK;
}
HRESULT OleControl::OnDocWindowActivate(BOOL) noexcept {
  return S_OK;
}
HRESULT OleControl::ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) noexcept {
  return S_OK;
}
HRESULT OleControl::EnableModeless(BOOL) noexcept {
  return S_OK;
}

HRESULT OleControl::GetControlInfo(CONTROLINFO* info) noexcept {
  return Put(info, CONTROLINFO{.cb = sizeof(CONTROLINFO), .hAccel = nullptr, .cAccel = 0, .dwFlags = 0});
}
HRESULT OleControl::OnMnemonic(MSG*) noexcept {
  return S_OK;
}
HRESULT OleControl::OnAmbientPropertyChange(DISPID) noexcept {
  return S_OK;
}
HRESULT OleControl::FreezeEvents(BOOL) noexcept {
  return S_OK;
}

HRESULT OleControl::Draw(DWORD aspect, LONG, void*, DVTARGETDEVICE*, HDC, HDC dc, LPCRECTL bounds, LPCRECTL,
                         BOOL(CALLBACK*)(ULONG_PTR), ULONG_PTR) noexcept {
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  if (bounds == nullptr) return E_POINTER;
  // The page lives in the browser's window; a drawing of the control elsewhere is its empty ground.
  const RECT area = {bounds->left, bounds->top, bounds->right, bounds->bottom};
  FillRect(dc, &area, PaneBackgroundBrush());
  return S_OK;
}
HRESULT OleControl::GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC, LOGPALETTE** palette) noexcept {
  if (palette != nullptr) *palette = nullptr;
  return S_FALSE;
}
HRESULT OleControl::Freeze(DWORD, LONG, void*, DWORD*) noexcept {
  return E_NOTIMPL;
}
HRESULT OleControl::Unfreeze(DWORD) noexcept {
  return E_NOTIMPL;
}

HRESULT OleControl::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) noexcept {
  viewAspects_ = aspects;
  viewFlags_ = flags;
  viewSink_ = sink;
  return S_OK;
}

HRESULT OleControl::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) noexcept {
  if (aspects != nullptr) *aspects = viewAspects_;
  if (flags != nullptr) *flags = viewFlags_;
  return sink != nullptr ? viewSink_.CopyTo(sink) : S_OK;
}

HRESULT OleControl::GetExtent(DWORD aspect, LONG, DVTARGETDEVICE*, SIZEL* size) noexcept {
  return GetExtent(aspect, size);
}

// The control keeps nothing in the document.
HRESULT OleControl::GetClassID(CLSID* classId) noexcept {
  return Put(classId, kExcelPaneClassId);
}
HRESULT OleControl::IsDirty() noexcept {
  return S_FALSE;
}
HRESULT OleControl::Load(IStream*) noexcept {
  return S_OK;
}
HRESULT OleControl::Save(IStream*, BOOL) noexcept {
  return S_OK;
}
HRESULT OleControl::GetSizeMax(ULARGE_INTEGER* size) noexcept {
  return Put(size, ULARGE_INTEGER{});
}
HRESULT OleControl::InitNew() noexcept {
  return S_OK;
}

}  // namespace qv
