#pragma once

#include <oaidl.h>

#include <cwchar>
#include <span>

#include "foundation/com_object.h"

namespace qv::devhost {

/// Name of a member and its dispatch id.
struct DispatchName {
  const wchar_t* name;
  DISPID id;
};

/// Base of the host's own automation objects: names from a table, no type information.
template <typename... Interfaces>
class HostDispatch : public ComObject<Interfaces...> {
 public:
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) noexcept override {
    if (names == nullptr || ids == nullptr) return E_POINTER;
    for (UINT i = 0; i < count; ++i)
      ids[i] = DISPID_UNKNOWN;
    for (const auto& entry : Names()) {
      if (count != 0 && _wcsicmp(entry.name, names[0]) == 0) ids[0] = entry.id;
    }
    return count == 1 && ids[0] != DISPID_UNKNOWN ? S_OK : DISP_E_UNKNOWNNAME;
  }

 protected:
  [[nodiscard]] virtual std::span<const DispatchName> Names() const noexcept { return {}; }
};

}  // namespace qv::devhost
