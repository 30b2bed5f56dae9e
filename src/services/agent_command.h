#pragma once

#include <string>
#include <string_view>

#include "services/opencode_config.h"

namespace qv {

/// What scripts are run with.
struct Interpreters {
  /// The command interpreter: what ComSpec names.
  std::wstring comSpec;
  /// Without a trailing backslash.
  std::wstring systemDirectory;
};

/// Whether CreateProcess can run the file itself, rather than through an interpreter.
[[nodiscard]] bool IsPlainProgram(std::wstring_view path);

/// The command line that runs an agent with `arguments` and without a console window: an .exe itself, .cmd
/// and .bat by the command interpreter, .ps1 by PowerShell.
[[nodiscard]] std::wstring ProgramCommandLine(const Interpreters& interpreters, std::wstring_view path,
                                              std::wstring_view arguments);

/// The arguments for the command interpreter that runs an agent in a console of its own. The console closes
/// with an agent that ends well and waits for a key after one that fails, so that its message can be read.
[[nodiscard]] std::wstring ConsoleArguments(const Interpreters& interpreters, std::wstring_view path);

/// `block` (what GetEnvironmentStrings gives: texts that end in NUL each, and one more NUL) with variables
/// set. Names are compared without regard to the case of ASCII letters.
[[nodiscard]] std::wstring WithEnvironment(std::wstring_view block, const EnvironmentVariables& variables);

/// The first line of what a program printed, without the blanks around it.
[[nodiscard]] std::wstring FirstLine(std::string_view output);

/// Where OpenCode's package comes from: what the request names, else "opencodePackage" of the settings text,
/// else `builtIn`.
[[nodiscard]] std::wstring PackageLocation(std::wstring_view requested, std::wstring_view settingsJson,
                                           std::wstring_view builtIn);

}  // namespace qv
