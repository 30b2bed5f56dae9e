#pragma once

#include <windows.h>

#include <string>

namespace qv::devhost {

/// Copies the text for an LPWSTR* result, which the caller frees with CoTaskMemFree.
[[nodiscard]] HRESULT ReturnText(const std::wstring& text, LPWSTR* result);

}  // namespace qv::devhost
