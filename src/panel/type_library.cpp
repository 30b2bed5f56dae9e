#include "panel/type_library.h"

#include "foundation/module.h"

namespace qv {

HRESULT InterfaceTypeInfo::Load() {
  if (info_ != nullptr) return S_OK;
  ComPtr<ITypeLib> library;
  const HRESULT hr = LoadTypeLibEx(ThisModulePath().c_str(), REGKIND_NONE, &library);
  return SUCCEEDED(hr) ? library->GetTypeInfoOfGuid(interfaceId_, &info_) : hr;
}

HRESULT InterfaceTypeInfo::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT InterfaceTypeInfo::GetTypeInfo(UINT index, ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  const HRESULT hr = Load();
  return SUCCEEDED(hr) ? info_.CopyTo(info) : hr;
}

HRESULT InterfaceTypeInfo::GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* ids) {
  const HRESULT hr = Load();
  return SUCCEEDED(hr) ? DispGetIDsOfNames(info_.Get(), names, count, ids) : hr;
}

}  // namespace qv
