#pragma once

#include <string>
#include <string_view>

namespace qv {

// Both write a file of another name beside the target, down to the disk, and then give it the target's name:
// nobody ever sees half of it. On failure nothing has changed, nothing is left behind, and the thread's last
// error says why.

/// Replaces a file, or makes it. A replaced file keeps its rights and attributes where its place knows such;
/// of a link the file that it leads to is replaced.
[[nodiscard]] bool WriteFileAtomically(const std::wstring& path, std::string_view bytes);

/// Makes a file; fails with ERROR_ALREADY_EXISTS when something has that name.
[[nodiscard]] bool MakeFileAtomically(const std::wstring& path, std::string_view bytes);

}  // namespace qv
