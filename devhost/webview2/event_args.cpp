#include "webview2/event_args.h"

#include "engines/common/com_guard.h"
#include "foundation/json_text.h"
#include "webview2/put_value.h"

namespace qv::devhost {

HRESULT NavigationStartingArgs::get_Uri(LPWSTR* value) noexcept {
  return ReturnText(uri_, value);
}
HRESULT NavigationStartingArgs::get_IsUserInitiated(BOOL* value) noexcept {
  return PutValue(value, FALSE);
}
HRESULT NavigationStartingArgs::get_IsRedirected(BOOL* value) noexcept {
  return PutValue(value, FALSE);
}
HRESULT NavigationStartingArgs::get_RequestHeaders(ICoreWebView2HttpRequestHeaders**) noexcept {
  return E_NOTIMPL;
}
HRESULT NavigationStartingArgs::get_Cancel(BOOL* value) noexcept {
  return PutValue(value, cancelled_);
}
HRESULT NavigationStartingArgs::put_Cancel(BOOL value) noexcept {
  cancelled_ = value;
  return S_OK;
}
HRESULT NavigationStartingArgs::get_NavigationId(UINT64* value) noexcept {
  return PutValue(value, navigation_);
}

HRESULT NavigationCompletedArgs::get_IsSuccess(BOOL* value) noexcept {
  return PutValue(value, success_ ? TRUE : FALSE);
}
HRESULT NavigationCompletedArgs::get_WebErrorStatus(COREWEBVIEW2_WEB_ERROR_STATUS* value) noexcept {
  return PutValue(value, status_);
}
HRESULT NavigationCompletedArgs::get_NavigationId(UINT64* value) noexcept {
  return PutValue(value, navigation_);
}

HRESULT ProcessFailedArgs::QueryInterface(REFIID iid, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = IsEqualIID(iid, __uuidof(IUnknown)) ? this : nullptr;
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}
ULONG ProcessFailedArgs::Release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}
HRESULT ProcessFailedArgs::get_ProcessFailedKind(COREWEBVIEW2_PROCESS_FAILED_KIND* value) noexcept {
  return PutValue(value, kind_);
}

HRESULT WebMessageArgs::get_Source(LPWSTR* value) noexcept {
  return ReturnText(source_, value);
}

HRESULT WebMessageArgs::get_WebMessageAsJson(LPWSTR* value) noexcept {
  return GuardCom([&] { return ReturnText(isString_ ? JsonQuote(text_) : text_, value); });
}

HRESULT WebMessageArgs::TryGetWebMessageAsString(LPWSTR* value) noexcept {
  if (!isString_) return E_INVALIDARG;
  return ReturnText(text_, value);
}

}  // namespace qv::devhost
