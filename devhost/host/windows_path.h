#pragma once

#include <string>
#include <string_view>

namespace qv::devhost {

/// Full Windows path of a path given by a person or a script on either side of Wine: one that begins with "/"
/// lies on drive Z:, a relative one in the current directory.
[[nodiscard]] std::wstring ToWindowsPath(std::wstring_view path);

/// Folder of the running program, without a trailing backslash.
[[nodiscard]] std::wstring ProgramFolder();

/// What precedes the last backslash.
[[nodiscard]] std::wstring FolderOf(const std::wstring& path);

}  // namespace qv::devhost
