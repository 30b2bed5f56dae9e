#include "host/late_bound.h"

namespace qv::devhost {
namespace {

/// Empty when it is missing or fails.
Variant GetProperty(IDispatch* object, const wchar_t* name) {
  if (object == nullptr) return {};
  auto* mutableName = const_cast<wchar_t*>(name);
  DISPID id = DISPID_UNKNOWN;
  if (FAILED(object->GetIDsOfNames(IID_NULL, &mutableName, 1, LOCALE_USER_DEFAULT, &id))) return {};
  DISPPARAMS none{};
  Variant value;
  const HRESULT hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                                    value.Put(), nullptr, nullptr);
  return SUCCEEDED(hr) ? value : Variant();
}

}  // namespace

ComPtr<IDispatch> GetObjectProperty(IDispatch* object, const wchar_t* name) {
  return GetProperty(object, name).Object();
}

std::optional<long> GetNumberProperty(IDispatch* object, const wchar_t* name) {
  Variant value = GetProperty(object, name);
  if (value.Type() == VT_EMPTY) return std::nullopt;
  if (FAILED(VariantChangeType(&value.Get(), &value.Get(), 0, VT_I4))) return std::nullopt;
  return value->lVal;
}

}  // namespace qv::devhost
