#include "host/late_bound.h"

namespace qv::devhost {

ComPtr<IDispatch> GetObjectProperty(IDispatch* object, const wchar_t* name) {
  if (object == nullptr) return nullptr;
  auto* mutableName = const_cast<wchar_t*>(name);
  DISPID id = DISPID_UNKNOWN;
  if (FAILED(object->GetIDsOfNames(IID_NULL, &mutableName, 1, LOCALE_USER_DEFAULT, &id))) return nullptr;
  DISPPARAMS none{};
  Variant value;
  const HRESULT hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                                    value.Put(), nullptr, nullptr);
  return SUCCEEDED(hr) ? value.Object() : nullptr;
}

}  // namespace qv::devhost
