#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qv {

/// How reading a file ended. A missing file is an expected outcome; one that is there but cannot be read is
/// not, and must not be taken for empty by anyone who writes it back.
enum class FileRead { kRead, kMissing, kFailed };

/// Reads a whole file, which others may write or replace meanwhile. `bytes` is emptied unless the result is
/// kRead. A file larger than `limit` bytes is not read.
[[nodiscard]] FileRead ReadWholeFile(const std::wstring& path, std::string& bytes,
                                     std::size_t limit = std::size_t{64} << 20);

/// Replaces the file through "<path>.tmp" beside it; on failure the old file stays and the temporary is
/// deleted, and the thread's last error says why.
[[nodiscard]] bool WriteFileAtomically(const std::wstring& path, std::string_view bytes);

/// A shell folder of the user (a CSIDL_… number) without a trailing backslash; empty when there is none.
[[nodiscard]] std::wstring ShellFolder(int csidl);

/// Folder of the DLL that holds this code, without a trailing backslash; empty when unknown.
[[nodiscard]] std::wstring GetModuleDirectory();

}  // namespace qv
