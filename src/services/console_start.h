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

/// The process that shows the desktop, as somebody who wants its rights finds it.
enum class DesktopShell {
  kNone,
  /// With an administrator's full rights, as where the system asks nobody before it grants them.
  kElevated,
  /// With the user's usual rights; also one whose rights cannot be read.
  kUsual,
};
[[nodiscard]] DesktopShell FindDesktopShell();

/// Whether this process has an administrator's full rights.
[[nodiscard]] bool IsProcessElevated();

/// This process's environment as a block.
[[nodiscard]] std::wstring CurrentEnvironment();

}  // namespace qv
