#include <ole2.h>
#include <shellapi.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "host/command_line.h"
#include "host/command_loop.h"
#include "host/command_runner.h"
#include "host/development_host.h"
#include "host/engine_choice.h"
#include "host/picture.h"
#include "host/settings_file.h"
#include "host/trusted_authority.h"
#include "host/windows_path.h"

namespace qv::devhost {
namespace {

constexpr UINT kCrashExitCode = 0xC5;
constexpr int kUsageExitCode = 2;
constexpr DWORD kPageTimeoutMs = 10'000;

/// Wine's exit code of a crash is not reliable, and its crash dialog would wait for somebody.
LONG WINAPI OnCrash(EXCEPTION_POINTERS* crash) {
  std::fprintf(stderr, "devhost: crashed with 0x%08lX at %p\n", crash->ExceptionRecord->ExceptionCode,
               crash->ExceptionRecord->ExceptionAddress);
  TerminateProcess(GetCurrentProcess(), kCrashExitCode);
  return EXCEPTION_EXECUTE_HANDLER;
}

/// OLE for as long as anything of the host lives.
class OleApartment {
 public:
  OleApartment() : result_(OleInitialize(nullptr)) {
    if (FAILED(result_)) throw std::runtime_error("OleInitialize failed with " + HresultText(result_));
  }
  OleApartment(const OleApartment&) = delete;
  OleApartment& operator=(const OleApartment&) = delete;
  ~OleApartment() { OleUninitialize(); }

 private:
  HRESULT result_;
};

std::vector<std::wstring> Arguments() {
  int count = 0;
  LPWSTR* const all = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::wstring> arguments(all + 1, all + count);
  LocalFree(all);
  return arguments;
}

/// Past the C library, whose text mode would write "\r\n" and keep the line in a buffer.
void WriteAnswer(const Json& answer) {
  const std::string line = ToLine(answer) + "\n";
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

/// A terminal or nothing at all as input must not take away the windows that somebody works in; a program
/// that has driven the host and is gone must.
CommandLoop::InputEnd MeaningOfInputEnd(const Options& options) {
  const DWORD type = GetFileType(GetStdHandle(STD_INPUT_HANDLE));
  const bool isProgram = type == FILE_TYPE_PIPE || type == FILE_TYPE_DISK;
  return options.window && !isProgram ? CommandLoop::InputEnd::kIsIgnored : CommandLoop::InputEnd::kQuits;
}

/// The web view stand-in reads it when the add-in creates its first environment. What the caller's own
/// environment says holds unless an option says otherwise.
void ChooseBrowser(const Options& options) {
  if (!options.browser && !options.window) return;
  const auto browser = options.browser.value_or(BrowserKind::kChromium);
  SetEnvironmentVariableW(L"QV_DEVHOST_BROWSER",
                          browser == BrowserKind::kChromium ? L"chromium" : L"recorder");
}

bool RunHost(const Options& options) {
  const OleApartment apartment;
  const PictureLibrary pictures;
  WriteServiceAddress(options.service);
  if (!options.authority.empty()) TrustAuthority(ToWindowsPath(options.authority));
  ChooseBrowser(options);
  const auto engine = MakeEngine(options);
  CallLog log(std::getenv("QV_DEVHOST_TRACE") != nullptr);
  const std::wstring addin =
      options.addin.empty() ? ProgramFolder() + L"\\QuorvantisExcel.dll" : ToWindowsPath(options.addin);
  DevelopmentHost host(addin, *engine, log, {}, {options.host, options.window});
  if (!options.window && !options.noPane && !host.WaitForPage(host.OpenPane(), kPageTimeoutMs))
    std::fprintf(stderr, "devhost: the pane's page has not loaded\n");
  CommandRunner runner(host, WriteAnswer);
  CommandLoop(host, runner, GetStdHandle(STD_INPUT_HANDLE), MeaningOfInputEnd(options)).Run();
  return host.End().Clean();
}

int Main() {
  SetUnhandledExceptionFilter(OnCrash);
  // As the hosts do, so that windows know their monitor's resolution.
  SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
  std::string error;
  const auto options = ParseCommandLine(Arguments(), error);
  if (!options) {
    std::fprintf(stderr, "devhost: %s\n", error.c_str());
    return kUsageExitCode;
  }
  try {
    return RunHost(*options) ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "devhost: %s\n", failure.what());
    return EXIT_FAILURE;
  }
}

}  // namespace
}  // namespace qv::devhost

int main() {
  return qv::devhost::Main();
}
