#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qv {

/// How reading a file ended. A missing file is an expected outcome; one that is there but cannot be read is
/// not, and must not be taken for empty by anyone who writes it back.
enum class FileRead { kRead, kMissing, kFailed };

inline constexpr std::size_t kMaxFileBytes = std::size_t{64} << 20;

/// Reads a whole file, which others may write or replace meanwhile. `bytes` is emptied unless the result is
/// kRead. A file larger than `limit` bytes is not read.
[[nodiscard]] FileRead ReadWholeFile(const std::wstring& path, std::string& bytes,
                                     std::size_t limit = kMaxFileBytes);

/// The same for a file that nobody is writing: kFailed when somebody has it open for that. Who begins to
/// write while it is read is not kept from it, so that a caller who needs a whole file looks twice.
[[nodiscard]] FileRead ReadSettledFile(const std::wstring& path, std::string& bytes);

/// Whether Windows' refusal to open or delete a file (its error number) means that somebody uses it.
[[nodiscard]] bool MeansInUse(unsigned long error);

/// Makes a folder, and those above it, where it is missing. 0, or the system's error number.
[[nodiscard]] unsigned long MakeFolder(const std::wstring& directory);

/// A shell folder of the user (a CSIDL_… number) without a trailing backslash; empty when there is none.
[[nodiscard]] std::wstring ShellFolder(int csidl);

/// Folder of the DLL that holds this code, without a trailing backslash; empty when unknown.
[[nodiscard]] std::wstring GetModuleDirectory();

}  // namespace qv
