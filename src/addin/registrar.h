#pragma once

#include <windows.h>

#include <span>

#include "addin/registrar_script.h"

namespace qv {

/// What a failure means for the changes after it.
enum class OnFailure { kStop, kGoOn };

/// Carries out the changes in order for the current user; the first failure, else S_OK.
[[nodiscard]] HRESULT ApplyRegistryChanges(std::span<const RegistryChange> changes, OnFailure onFailure);

/// Writes a text into an open key; `name` null or empty means the default value.
[[nodiscard]] LSTATUS SetRegistryText(HKEY key, const wchar_t* name, const std::wstring& text);

}  // namespace qv
