#include "services/console_start.h"

#include <windows.h>

#include <shellapi.h>

#include <optional>
#include <string_view>

#include "foundation/text.h"
#include "foundation/unique_handle.h"

namespace qv {
namespace {

constexpr DWORD kConsoleFlags = CREATE_NEW_CONSOLE | CREATE_UNICODE_ENVIRONMENT;

/// The strings that a start needs, writable where Windows asks for it.
struct StartParts {
  explicit StartParts(const ConsoleProgram& program)
      : line(Concat(L'"', program.application, L"\" ", program.arguments)),
        title(program.title),
        environment(program.environment) {
    startup.cb = sizeof(startup);
    startup.lpTitle = title.data();
  }
  StartParts(const StartParts&) = delete;
  StartParts& operator=(const StartParts&) = delete;
  ~StartParts() {
    if (made.hThread != nullptr) CloseHandle(made.hThread);
    if (made.hProcess != nullptr) CloseHandle(made.hProcess);
  }

  std::wstring line;
  std::wstring title;
  std::wstring environment;
  STARTUPINFOW startup{};
  PROCESS_INFORMATION made{};
};

unsigned long ErrorOf(BOOL succeeded) {
  return succeeded ? ERROR_SUCCESS : GetLastError();
}

/// 0 when there is no desktop.
DWORD DesktopProcess() {
  DWORD id = 0;
  GetWindowThreadProcessId(GetShellWindow(), &id);
  return id;
}

UniqueKernelHandle TokenOf(HANDLE process, DWORD access) {
  UniqueKernelHandle token;
  // On failure the handle stays none.
  static_cast<void>(OpenProcessToken(process, access, token.Put()));
  return token;
}

/// Nothing when the token does not tell.
std::optional<bool> IsElevated(HANDLE token) {
  TOKEN_ELEVATION elevation{};
  DWORD size = 0;
  if (!GetTokenInformation(token, TokenElevation, &elevation, sizeof(elevation), &size)) return std::nullopt;
  return elevation.TokenIsElevated != 0;
}

/// A token like that of the process that shows the desktop; none when there is no desktop.
UniqueKernelHandle DesktopToken() {
  UniqueKernelHandle token;
  const DWORD id = DesktopProcess();
  if (id == 0) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return token;
  }
  const UniqueKernelHandle process(OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, id));
  if (!process) return token;
  const UniqueKernelHandle own = TokenOf(process.Get(), TOKEN_DUPLICATE);
  if (!own) return token;
  constexpr DWORD kAccess =
      TOKEN_QUERY | TOKEN_ASSIGN_PRIMARY | TOKEN_DUPLICATE | TOKEN_ADJUST_DEFAULT | TOKEN_ADJUST_SESSIONID;
  // On failure the handle stays none.
  static_cast<void>(
      DuplicateTokenEx(own.Get(), kAccess, nullptr, SecurityImpersonation, TokenPrimary, token.Put()));
  return token;
}

}  // namespace

unsigned long StartInConsole(const ConsoleProgram& program, const std::wstring& directory) {
  StartParts parts(program);
  return ErrorOf(CreateProcessW(nullptr, parts.line.data(), nullptr, nullptr, FALSE, kConsoleFlags,
                                parts.environment.data(), directory.c_str(), &parts.startup, &parts.made));
}

unsigned long StartInConsoleAsDesktop(const ConsoleProgram& program, const std::wstring& directory) {
  const UniqueKernelHandle token = DesktopToken();
  if (!token) return GetLastError();
  StartParts parts(program);
  return ErrorOf(CreateProcessWithTokenW(token.Get(), 0, nullptr, parts.line.data(), kConsoleFlags,
                                         parts.environment.data(), directory.c_str(), &parts.startup,
                                         &parts.made));
}

unsigned long StartThroughShell(const ConsoleProgram& program, const std::wstring& directory) {
  SHELLEXECUTEINFOW info{};
  info.cbSize = sizeof(info);
  // Nothing is asked or shown when it fails, and it may be started from a thread that ends soon.
  info.fMask = SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
  info.lpFile = program.application.c_str();
  info.lpParameters = program.arguments.c_str();
  info.lpDirectory = directory.c_str();
  info.nShow = SW_SHOWNORMAL;
  return ErrorOf(ShellExecuteExW(&info));
}

DesktopShell FindDesktopShell() {
  const DWORD id = DesktopProcess();
  if (id == 0) return DesktopShell::kNone;
  const UniqueKernelHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
  const UniqueKernelHandle token = TokenOf(process.Get(), TOKEN_QUERY);
  return IsElevated(token.Get()) == true ? DesktopShell::kElevated : DesktopShell::kUsual;
}

bool IsProcessElevated() {
  return IsElevated(TokenOf(GetCurrentProcess(), TOKEN_QUERY).Get()) == true;
}

std::wstring CurrentEnvironment() {
  wchar_t* const block = GetEnvironmentStringsW();
  if (block == nullptr) return {};
  std::size_t size = 0;
  while (block[size] != L'\0')
    size += std::wstring_view(block + size).size() + 1;
  std::wstring copy(block, size);
  FreeEnvironmentStringsW(block);
  return copy;
}

}  // namespace qv
