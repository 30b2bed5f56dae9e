#pragma once

#include <string>

namespace qv {

/// Full path of a program on the search path (the PATH variable): under its name when that has an extension,
/// else with ".exe", ".cmd", ".bat" or ".ps1", the first of these that is anywhere on the path. Empty when
/// there is none, or its path is longer than 259 characters. Any thread.
[[nodiscard]] std::wstring FindExecutable(const std::wstring& name);

/// Whether a file, and no directory, has this path.
[[nodiscard]] bool IsExistingFile(const std::wstring& path);

/// The value of an environment variable; empty when it is missing or longer than 32766 characters.
[[nodiscard]] std::wstring EnvironmentValue(const wchar_t* name);

}  // namespace qv
