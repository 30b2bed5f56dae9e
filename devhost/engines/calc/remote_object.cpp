#include "engines/calc/remote_object.h"

#include "engines/calc/call_arguments.h"
#include "engines/calc/remote_picture.h"
#include "engines/calc/wire_values.h"
#include "engines/common/com_guard.h"
#include "foundation/text.h"

namespace qv::devhost::calc {

using nlohmann::json;

namespace {

/// The office's first handle is the Application, which stays and is not counted.
constexpr int kApplicationHandle = 1;
/// The general failure, which Excel reports of a clipboard that it does not get.
constexpr auto kClipboardRefusal = static_cast<SCODE>(0x800A03EC);

const char* KindOf(WORD flags) {
  if ((flags & DISPATCH_PROPERTYPUT) != 0) return "put";
  const bool get = (flags & DISPATCH_PROPERTYGET) != 0;
  const bool call = (flags & DISPATCH_METHOD) != 0;
  return get && call ? "any" : get ? "get" : "call";
}

HRESULT Report(const CallFailure& failure, EXCEPINFO* exception) {
  if (failure.code == DISP_E_EXCEPTION && exception != nullptr) {
    *exception = {};
    exception->scode = failure.scode;
    exception->bstrSource = Bstr(L"Microsoft Excel").Detach();
    exception->bstrDescription = Bstr(failure.text).Detach();
  }
  return failure.code;
}

}  // namespace

RemoteObject::RemoteObject(std::shared_ptr<RemoteSession> session, int handle, std::string type)
    : session_(std::move(session)), handle_(handle), type_(std::move(type)) {
  if (handle_ != kApplicationHandle) session_->CountObject();
}

RemoteObject::~RemoteObject() {
  if (handle_ != kApplicationHandle) session_->Forget(handle_);
}

HRESULT RemoteObject::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) ||
      (type_ == "Range" && IsEqualIID(iid, kRangeDispatchIid))) {
    *object = static_cast<IDispatch*>(this);
  } else if (IsEqualIID(iid, kRemoteObjectIid)) {
    *object = this;
  } else {
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

ULONG RemoteObject::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT RemoteObject::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT RemoteObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  if (info != nullptr) *info = nullptr;
  return E_NOTIMPL;
}

HRESULT RemoteObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  return GuardCom([&]() -> HRESULT {
    if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
    if (!session_->OnOwnThread()) return RPC_E_WRONG_THREAD;
    for (UINT i = 0; i < count; ++i)
      ids[i] = DISPID_UNKNOWN;
    const std::string member = ToUtf8(names[0]);
    if (!session_->HasMember(type_, member)) return DISP_E_UNKNOWNNAME;
    ids[0] = session_->Names().IdOf(member);
    const auto error = session_->Faults().Take(type_, session_->Names().NameOf(ids[0]), kOnNameLookup);
    if (error) return error->hr;
    // Whether the member has an argument of that name shows when it is called.
    for (UINT i = 1; i < count; ++i)
      ids[i] = session_->Names().IdOf(ToUtf8(names[i]));
    return S_OK;
  });
}

HRESULT RemoteObject::Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                             EXCEPINFO* exception, UINT* badArgument) {
  if (result != nullptr) VariantInit(result);
  if (badArgument != nullptr) *badArgument = 0;
  return GuardCom([&]() -> HRESULT {
    if (params == nullptr) return E_POINTER;
    if (!session_->OnOwnThread()) return RPC_E_WRONG_THREAD;
    // No property of the model holds a reference, so there is nothing to put one into.
    if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) == DISPATCH_PROPERTYPUTREF) {
      return DISP_E_MEMBERNOTFOUND;
    }
    // The sinks of an event may let go of the last reference to this object.
    const ComPtr<IDispatch> keptAlive(this);
    const double started = BusyIntervals::Now();
    const HRESULT outcome = Perform(member, flags, *params, result, exception);
    session_->Busy().Add(started, BusyIntervals::Now());
    session_->AfterCall();
    return outcome;
  });
}

json RemoteObject::Request(const std::string& name, WORD flags, const DISPPARAMS& params) const {
  json args = json::array();
  json named = json::object();
  // Named arguments come first in the array; the positional ones follow with the first one last.
  for (UINT i = params.cArgs; i-- > params.cNamedArgs;)
    args.push_back(ToWire(params.rgvarg[i], session_.get()));
  for (UINT i = 0; i < params.cNamedArgs; ++i) {
    json value = ToWire(params.rgvarg[i], session_.get());
    if (params.rgdispidNamedArgs[i] == DISPID_PROPERTYPUT) {
      args.push_back(std::move(value));
    } else {
      named[session_->Names().NameOf(params.rgdispidNamedArgs[i])] = std::move(value);
    }
  }
  FitForOffice(type_, name, args, named);
  return {{"op", "invoke"}, {"object", handle_},       {"kind", KindOf(flags)},
          {"member", name}, {"args", std::move(args)}, {"named", std::move(named)}};
}

HRESULT RemoteObject::Perform(DISPID member, WORD flags, const DISPPARAMS& params, VARIANT* result,
                              EXCEPINFO* exception) {
  const std::string name = session_->Names().NameOf(member);
  if (name.empty() || !session_->HasMember(type_, name)) return DISP_E_MEMBERNOTFOUND;
  session_->CountCall(type_, name);
  if (const auto error = session_->Faults().Take(type_, name, flags))
    return Report({error->hr, error->exception, {}}, exception);
  json request;
  try {
    request = Request(name, flags, params);
  } catch (const std::invalid_argument&) {
    return DISP_E_TYPEMISMATCH;
  }
  const CallAnswer answer = session_->Call(std::move(request));
  if (answer.failure.code != S_OK) return Report(answer.failure, exception);
  if (IsPicture(answer.value)) {
    if (!PutOnClipboard(answer.value)) return Report({DISP_E_EXCEPTION, kClipboardRefusal, L""}, exception);
    if (result != nullptr) *result = Variant(true).Detach();
    return S_OK;
  }
  // Made also when the caller does not want it, so that the office's handle is given back.
  Variant value = FromWire(answer.value, session_);
  if (result != nullptr) *result = value.Detach();
  return S_OK;
}

}  // namespace qv::devhost::calc
