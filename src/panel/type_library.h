#pragma once

#include <oaidl.h>
#include <windows.h>

#include "foundation/variant.h"

namespace qv {

/// Identity of the type library in the DLL's resources; version 1.0.
inline constexpr GUID kTypeLibraryId = {
    0xE1F2A3B4, 0xC5D6, 0x7890, {0x12, 0x34, 0x56, 0x78, 0x90, 0xAB, 0xCD, 0xEF}};
inline constexpr WORD kTypeLibraryMajor = 1;
inline constexpr WORD kTypeLibraryMinor = 0;

/// Description of one of the add-in's interfaces, read on first use from the module itself: the registered
/// copy may belong to another installation. Host UI thread.
class InterfaceTypeInfo {
 public:
  explicit InterfaceTypeInfo(const GUID& interfaceId) : interfaceId_(interfaceId) {}

  // The three parts of IDispatch that need nothing but the description.
  [[nodiscard]] HRESULT GetTypeInfoCount(UINT* count);
  [[nodiscard]] HRESULT GetTypeInfo(UINT index, ITypeInfo** info);
  [[nodiscard]] HRESULT GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* ids);

 private:
  [[nodiscard]] HRESULT Load();

  GUID interfaceId_;
  ComPtr<ITypeInfo> info_;
};

}  // namespace qv
