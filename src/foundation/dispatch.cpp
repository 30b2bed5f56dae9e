#include "foundation/dispatch.h"

#include <string>
#include <vector>

namespace qv {
namespace {

/// EXCEPINFO whose strings are freed. `Code` may fill the record in, so call it before the end.
class ExceptionInfo {
 public:
  ExceptionInfo() = default;
  ExceptionInfo(const ExceptionInfo&) = delete;
  ExceptionInfo& operator=(const ExceptionInfo&) = delete;
  ~ExceptionInfo() {
    SysFreeString(info_.bstrSource);
    SysFreeString(info_.bstrDescription);
    SysFreeString(info_.bstrHelpFile);
  }

  EXCEPINFO* Put() { return &info_; }

  SCODE Code() {
    if (info_.pfnDeferredFillIn != nullptr) static_cast<void>(info_.pfnDeferredFillIn(&info_));
    if (info_.scode != 0) return info_.scode;
    // Older servers give only a 16-bit code of their own; it belongs to the interface facility above 0x200.
    return info_.wCode != 0 ? MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, info_.wCode + 0x200) : E_FAIL;
  }

 private:
  EXCEPINFO info_{};
};

/// Borrowed copies in the reversed order that Invoke wants; the callee may not free them.
std::vector<VARIANT> Reversed(std::span<const Variant> args) {
  std::vector<VARIANT> reversed;
  reversed.reserve(args.size());
  for (auto arg = args.rbegin(); arg != args.rend(); ++arg)
    reversed.push_back(arg->Get());
  return reversed;
}

}  // namespace

HRESULT InvokeDispId(IDispatch* object, DISPID id, WORD flags, std::span<const Variant> args, Variant* result,
                     SCODE* exceptionCode) {
  if (exceptionCode != nullptr) *exceptionCode = 0;
  if (object == nullptr) return E_POINTER;
  // `args` may hold a copy of what `result` holds, so the raw copies are taken only after it is emptied.
  VARIANT* const out = result != nullptr ? result->Put() : nullptr;

  std::vector<VARIANT> reversed = Reversed(args);
  DISPID putName = DISPID_PROPERTYPUT;
  DISPPARAMS params{};
  params.rgvarg = reversed.data();
  params.cArgs = static_cast<UINT>(reversed.size());
  if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
    params.rgdispidNamedArgs = &putName;
    params.cNamedArgs = 1;
  }

  // The object must outlive a call that drops the caller's last reference to it.
  const ComPtr<IDispatch> keptAlive(object);
  ExceptionInfo exception;
  UINT badArgument = 0;
  const HRESULT hr =
      object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, out, exception.Put(), &badArgument);
  if (hr == DISP_E_EXCEPTION && exceptionCode != nullptr) *exceptionCode = exception.Code();
  return hr;
}

HRESULT InvokeMember(IDispatch* object, std::wstring_view name, WORD flags, std::span<const Variant> args,
                     Variant* result, SCODE* exceptionCode) {
  if (exceptionCode != nullptr) *exceptionCode = 0;
  if (object == nullptr) return E_POINTER;
  std::wstring terminated(name);
  LPOLESTR names = terminated.data();
  DISPID id = DISPID_UNKNOWN;
  const HRESULT hr = object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(hr)) {
    if (result != nullptr) static_cast<void>(result->Put());
    return hr;
  }
  return InvokeDispId(object, id, flags, args, result, exceptionCode);
}

}  // namespace qv
