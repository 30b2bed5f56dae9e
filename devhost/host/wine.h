#pragma once

#include <windows.h>

namespace qv::devhost {

/// Whether this runs under Wine, and not on Windows.
[[nodiscard]] inline bool IsWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace qv::devhost
