#pragma once

#include <windows.h>

#include <span>

#include "addin/registrar_script.h"

namespace qv {

/// Carries out the changes in order for the current user and stops at the first failure, which it returns.
[[nodiscard]] HRESULT ApplyRegistryChanges(std::span<const RegistryChange> changes);

/// Writes a text into an open key; `name` null or empty means the default value.
[[nodiscard]] LSTATUS SetRegistryText(HKEY key, const wchar_t* name, const std::wstring& text);

}  // namespace qv
