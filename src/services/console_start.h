#pragma once

#include <string>

namespace qv {

/// A program that is to run in a console of its own.
struct ConsoleProgram {
  /// What is started: the command interpreter, a full path or a name.
  std::wstring application;
  /// Its arguments, without its name.
  std::wstring arguments;
  /// The console's title.
  std::wstring title;
  /// An environment block; see `WithEnvironment`.
  std::wstring environment;
};

/// Starts it in `directory` with this process's rights and environment. 0, or the system's error number.
[[nodiscard]] unsigned long StartInConsole(const ConsoleProgram& program, const std::wstring& directory);

/// The same with the rights of the desktop, whatever those of this process are.
[[nodiscard]] unsigned long StartInConsoleAsDesktop(const ConsoleProgram& program,
                                                    const std::wstring& directory);

/// The same through the shell; the program gets this process's environment instead of the block.
[[nodiscard]] unsigned long StartThroughShell(const ConsoleProgram& program, const std::wstring& directory);

/// Whether this process has an administrator's full rights.
[[nodiscard]] bool IsProcessElevated();

/// This process's environment as a block.
[[nodiscard]] std::wstring CurrentEnvironment();

}  // namespace qv
