#include "engines/memory/dispatch_object.h"

#include <algorithm>
#include <cwctype>
#include <new>

#include "engines/common/com_guard.h"
#include "foundation/text.h"

namespace qv::devhost::memory {
namespace {

/// Answered by the model's own objects only, with the DispatchObject itself.
constexpr IID kNativeIid = {0x6c0a53f1, 0x7b2e, 0x4d0c, {0x9a, 0x35, 0x51, 0xe0, 0x2d, 0x88, 0x7e, 0x14}};

Variant Converted(const VARIANT& value, VARTYPE type) {
  Variant converted;
  if (FAILED(VariantChangeTypeEx(converted.Put(), const_cast<VARIANT*>(&value), LOCALE_INVARIANT,
                                 VARIANT_ALPHABOOL, type))) {
    throw HostError{DISP_E_TYPEMISMATCH};
  }
  return converted;
}

const VARIANT* Target(const VARIANT* value) {
  while (value != nullptr && value->vt == (VT_BYREF | VT_VARIANT))
    value = value->pvarVal;
  return value;
}

void FillException(EXCEPINFO* exception, SCODE code) {
  if (exception == nullptr) return;
  *exception = EXCEPINFO{};
  exception->scode = code;
  exception->bstrSource = SysAllocString(L"Microsoft Excel");
  exception->bstrDescription = SysAllocString(L"The object model refused the call.");
}

std::vector<std::string>& MutableCounterNames() {
  static std::vector<std::string> names;
  return names;
}

}  // namespace

Call::Call(WORD flags, const DISPPARAMS& params) {
  UINT named = params.cNamedArgs;
  UINT positional = params.cArgs;
  const bool isPut = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  UINT first = 0;
  if (isPut) {
    if (params.cArgs == 0 || named == 0 || params.rgdispidNamedArgs[0] != DISPID_PROPERTYPUT) {
      throw HostError{DISP_E_PARAMNOTOPTIONAL};
    }
    put_ = Target(&params.rgvarg[0]);
    first = 1;
  }
  if (positional - first > kMaxArguments) throw HostError{DISP_E_BADPARAMCOUNT};
  for (UINT i = first; i < named; ++i) {
    const auto number = static_cast<size_t>(params.rgdispidNamedArgs[i]);
    if (number >= kMaxArguments) throw HostError{DISP_E_PARAMNOTFOUND};
    args_[number] = Target(&params.rgvarg[i]);
    count_ = std::max(count_, number + 1);
  }
  for (UINT i = named; i < positional; ++i) {
    const size_t number = positional - 1 - i;
    args_[number] = Target(&params.rgvarg[i]);
    count_ = std::max(count_, number + 1);
  }
}

const VARIANT* Call::Arg(size_t index) const {
  if (index >= count_ || args_[index] == nullptr) return nullptr;
  const VARIANT& value = *args_[index];
  return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND ? nullptr : &value;
}

long Call::Long(size_t index, long fallback) const {
  const VARIANT* value = Arg(index);
  return value == nullptr ? fallback : ToLong(*value);
}

double Call::Double(size_t index, double fallback) const {
  const VARIANT* value = Arg(index);
  return value == nullptr ? fallback : ToDouble(*value);
}

bool Call::Bool(size_t index, bool fallback) const {
  const VARIANT* value = Arg(index);
  return value == nullptr ? fallback : ToBool(*value);
}

long ToLong(const VARIANT& value) {
  return value.vt == VT_I4 ? value.lVal : Converted(value, VT_I4)->lVal;
}

double ToDouble(const VARIANT& value) {
  return value.vt == VT_R8 ? value.dblVal : Converted(value, VT_R8)->dblVal;
}

bool ToBool(const VARIANT& value) {
  return Converted(value, VT_BOOL)->boolVal != VARIANT_FALSE;
}

std::wstring ToText(const VARIANT& value) {
  return Converted(value, VT_BSTR).Text();
}

ClassInfo::ClassInfo(std::string name, std::initializer_list<Member> members, std::wstring_view defaultMember,
                     bool isCollection)
    : name_(std::move(name)), isCollection_(isCollection) {
  for (const Member& member : members) {
    const size_t number = MutableCounterNames().size();
    const std::string memberName = ToUtf8(member.name);
    MutableCounterNames().push_back(name_ + "." + memberName);
    entries_.emplace(InternName(member.name), Entry{member, memberName, number});
  }
  if (defaultMember.empty()) return;
  const auto found = entries_.find(FindNameId(defaultMember));
  if (found != entries_.end()) entries_.emplace(DISPID_VALUE, found->second);
}

const ClassInfo::Entry* ClassInfo::Find(DISPID id) const {
  const auto found = entries_.find(id);
  return found == entries_.end() ? nullptr : &found->second;
}

const std::vector<std::string>& ClassInfo::CounterNames() {
  return MutableCounterNames();
}

DispatchObject::DispatchObject(std::shared_ptr<Host> host, bool counted)
    : host_(std::move(host)), counted_(counted) {
  if (counted_) ++host_->liveObjects;
}

DispatchObject::~DispatchObject() {
  if (counted_) --host_->liveObjects;
}

HRESULT DispatchObject::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch)) {
    *object = static_cast<IDispatch*>(this);
  } else if (IsEqualIID(iid, kNativeIid)) {
    *object = this;
  } else {
    *object = OtherInterface(iid);
  }
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG DispatchObject::Release() {
  if (GetCurrentThreadId() != host_->threadId) ++host_->wrongThread;
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT DispatchObject::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT DispatchObject::GetTypeInfo(UINT, LCID, ITypeInfo**) {
  return E_NOTIMPL;
}

HRESULT DispatchObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  return GuardCom([&]() -> HRESULT {
    if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
    std::fill_n(ids, count, DISPID_UNKNOWN);
    if (GetCurrentThreadId() != host_->threadId) {
      ++host_->wrongThread;
      return RPC_E_WRONG_THREAD;
    }
    // The class first: its names have numbers from its first use on.
    const ClassInfo& members = Class();
    const DISPID id = FindNameId(names[0]);
    const ClassInfo::Entry* entry = id == DISPID_UNKNOWN ? nullptr : members.Find(id);
    if (entry == nullptr || Lacks(entry->name)) return DISP_E_UNKNOWNNAME;
    if (host_->faults.Any()) {
      const bool hidden = host_->faults.IsHidden(Class().Name(), entry->name);
      const bool itemHidden = Class().IsCollection() && entry->name == "Item" &&
                              host_->faults.ItemFormOf(Class().Name()) == ItemForm::kDefaultOnly;
      if (hidden || itemHidden) return DISP_E_UNKNOWNNAME;
      if (const auto error = host_->faults.Take(Class().Name(), entry->name, kOnNameLookup)) return error->hr;
    }
    ids[0] = id;
    // Parameter names are not known here; the host's callers name arguments by position.
    return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
  });
}

HRESULT DispatchObject::CheckItemForm(const ClassInfo::Entry& entry, DISPID id, WORD flags) const {
  if (!Class().IsCollection() || entry.name != "Item") return S_OK;
  const ItemForm form = host_->faults.ItemFormOf(Class().Name());
  const bool byNumberZero = id == DISPID_VALUE;
  const bool refused = (form == ItemForm::kPropertyOnly && (byNumberZero || (flags & kGet) == 0)) ||
                       (form == ItemForm::kMethodOnly && (byNumberZero || (flags & kMethod) == 0)) ||
                       (form == ItemForm::kDefaultOnly && !byNumberZero);
  return refused ? DISP_E_MEMBERNOTFOUND : S_OK;
}

Variant DispatchObject::CallMember(const ClassInfo::Entry& entry, DISPID id, WORD flags,
                                   const DISPPARAMS& params) {
  Faults& faults = host_->faults;
  const std::string& className = Class().Name();
  unsigned kinds = entry.member.kinds;
  const bool faulty = faults.Any();
  if (faulty) {
    if (faults.IsHidden(className, entry.name)) throw HostError{DISP_E_MEMBERNOTFOUND};
    if (const HRESULT hr = CheckItemForm(entry, id, flags); FAILED(hr)) throw HostError{hr};
    if (faults.ItemFormOf(className) == ItemForm::kMethodOnly && entry.name == "Item") kinds |= kMethod;
  }
  // A caller that tries the wrong way of calling first must not use up a fault.
  if ((kinds & flags) == 0) throw HostError{DISP_E_MEMBERNOTFOUND};
  if (faulty) {
    faults.RunHooks(className, entry.name, true);
    if (const auto error = faults.Take(className, entry.name, flags)) throw HostError{*error};
  }
  RequireAlive();
  Call call(flags, params);
  if (call.IsPut() || (entry.member.kinds & kMethod) != 0) ++host_->revision;
  Variant answer = entry.member.handler(*this, call);
  if (faulty) faults.RunHooks(className, entry.name, false);
  return answer;
}

HRESULT DispatchObject::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                               EXCEPINFO* exception, UINT* badArgument) {
  return GuardCom([&]() -> HRESULT {
    if (badArgument != nullptr) *badArgument = 0;
    if (GetCurrentThreadId() != host_->threadId) {
      ++host_->wrongThread;
      return RPC_E_WRONG_THREAD;
    }
    if (params == nullptr) return E_POINTER;
    const ClassInfo::Entry* entry = Class().Find(id);
    if (entry == nullptr || Lacks(entry->name)) return DISP_E_MEMBERNOTFOUND;
    host_->CountCall(entry->number);
    try {
      Variant answer = CallMember(*entry, id, flags, *params);
      if (result != nullptr) *result = answer.Detach();
      return S_OK;
    } catch (const HostError& error) {
      if (error.exception == 0) return error.hr;
      FillException(exception, error.exception);
      return DISP_E_EXCEPTION;
    }
  });
}

Variant ApplicationOf(DispatchObject& object) {
  return Variant(object.GetHost().application);
}

DispatchObject* NativeObject(const VARIANT* argument) {
  if (argument == nullptr || argument->vt != VT_DISPATCH || argument->pdispVal == nullptr) return nullptr;
  void* native = nullptr;
  if (FAILED(argument->pdispVal->QueryInterface(kNativeIid, &native))) return nullptr;
  // The argument goes on holding the object.
  auto* object = static_cast<DispatchObject*>(native);
  object->Release();
  return object;
}

}  // namespace qv::devhost::memory
