#pragma once

#include <windows.h>

#include <string>

namespace qv::devhost {

/// The module that holds this code.
[[nodiscard]] HINSTANCE ThisLibrary();

/// The folder that the library was loaded from, without a trailing backslash.
[[nodiscard]] std::wstring ThisLibraryFolder();

}  // namespace qv::devhost
