#pragma once

#include <windows.h>

#include <string>

namespace qv {

/// The module that holds this code: the add-in's DLL, not the host's executable.
[[nodiscard]] HINSTANCE ThisModule();

/// Full path of that module; empty when it is longer than 260 characters or unknown.
[[nodiscard]] std::wstring ThisModulePath();

}  // namespace qv
