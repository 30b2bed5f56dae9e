#pragma once

#include <windows.h>

#include <string>

namespace qv::devhost {

/// The module that holds this code.
[[nodiscard]] HINSTANCE ThisLibrary();

/// The folder that the library was loaded from, without a trailing backslash.
[[nodiscard]] std::wstring ThisLibraryFolder();

/// Keeps the library in memory until the process ends, whoever lets go of it.
void PinThisLibrary();

}  // namespace qv::devhost
