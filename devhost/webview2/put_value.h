#pragma once

#include <windows.h>

namespace qv::devhost {

/// Fills an out parameter, or says E_POINTER.
template <typename Value>
[[nodiscard]] HRESULT PutValue(Value* target, Value value) noexcept {
  if (target == nullptr) return E_POINTER;
  *target = value;
  return S_OK;
}

}  // namespace qv::devhost
