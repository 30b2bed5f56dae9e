#include "foundation/logging.h"

#include <windows.h>

#include <shlobj.h>

#include <atomic>

#include "foundation/log_files.h"
#include "foundation/log_text.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"

namespace qv {
namespace {

constexpr const wchar_t* kLineEnd = L"\r\n";

/// Tick of the last maintenance pass of either log; 0 means never.
std::atomic<std::uint64_t> lastMaintenanceTick{0};

void SayToDebugger(const std::wstring& line) {
  OutputDebugStringW(line.c_str());
}

/// Logging is called from everywhere, so not even a lack of memory may leave it.
template <typename Body>
void Swallowing(Body&& body) noexcept {
  try {
    body();
  } catch (...) {
    // There is no place left to report to.
  }
}

void MaintainWhenDue(const std::wstring& path) {
  const std::uint64_t now = GetTickCount64();
  if (!IsMaintenanceDue(lastMaintenanceTick, now)) return;
  lastMaintenanceTick = now;
  RotateLogFile(path, CurrentLocalTime());
  PruneOldLogs(GetLogDirectory());
  CapLogFolderSize(GetLogDirectory());
}

/// One open-write-close step: other processes and viewers use the same file.
void AppendBytes(const std::wstring& path, const void* bytes, std::size_t count) {
  if (count == 0) return;
  const UniqueFile file(CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  if (file) WriteFile(file.Get(), bytes, static_cast<DWORD>(count), &written, nullptr);
}

void AppendUnits(const std::wstring& path, std::wstring_view text) {
  AppendBytes(path, text.data(), text.size() * sizeof(wchar_t));
}

std::wstring_view OrNullWord(std::wstring_view text) {
  return text.data() == nullptr ? std::wstring_view(L"(null)") : text;
}

std::uint64_t ValueOf(const void* handle) {
  return reinterpret_cast<std::uintptr_t>(handle);
}

}  // namespace

const std::wstring& GetLogDirectory() {
  static const std::wstring directory =
      ChooseLogDirectory({ShellFolder(CSIDL_LOCAL_APPDATA), GetModuleDirectory(), SayToDebugger});
  return directory;
}

std::wstring GetPaneTraceLogPath() {
  const std::wstring& directory = GetLogDirectory();
  // The name is the same in every host, so that support looks in one place.
  return directory.empty() ? std::wstring() : directory + L"\\QuorvantisPane_excel_trace.log";
}

void PaneLog(std::wstring_view text) {
  Swallowing([&] {
    const std::wstring line(OrNullWord(text));
    SayToDebugger(line);
    SayToDebugger(kLineEnd);
    if (const std::wstring path = GetPaneTraceLogPath(); !path.empty())
      AppendToLogFile(path, PaneLinePrefix(CurrentLocalTime(), GetCurrentThreadId()), line);
  });
}

void LogPaneDiagnostic(const PaneLogIdentity& pane, std::wstring_view message, long hr) {
  Swallowing([&] {
    const std::wstring line =
        PaneDiagnosticLine(GetCurrentThreadId(), OrNullWord(message), static_cast<std::uint32_t>(hr),
                           ValueOf(pane.window), ValueOf(pane.parent), pane.localPort);
    SayToDebugger(line);
    if (const std::wstring path = GetPaneTraceLogPath(); !path.empty())
      AppendToLogFile(path, PaneDiagnosticPrefix(CurrentLocalTime()), line);
  });
}

void TraceTranslateEvent(std::string_view event, std::wstring_view detail) {
  Swallowing([&] {
    const std::string record = TranslateTraceRecord(CurrentLocalTime(), event, ToUtf8(detail));
    if (GetLogDirectory().empty()) return;
    const std::wstring path = GetLogDirectory() + L"\\Quorvantis_translate_trace.log";
    MaintainWhenDue(path);
    AppendBytes(path, record.data(), record.size());
  });
}

void AppendToLogFile(const std::wstring& path, std::wstring_view prefix, std::wstring_view text) {
  if (path.empty() || text.data() == nullptr) return;
  Swallowing([&] {
    if (!GetLogDirectory().empty()) MaintainWhenDue(path);
    AppendUnits(path, prefix);
    AppendUnits(path, text);
    AppendUnits(path, kLineEnd);
  });
}

bool ProbeDirectoryWritable(const std::wstring& directory) {
  if (directory.empty()) return false;
  CreateDirectoryW(directory.c_str(), nullptr);
  const std::wstring probe = directory + L"\\.qv-write-probe";
  UniqueFile file(CreateFileW(probe.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY, nullptr));
  if (!file) return false;
  file.Reset();
  DeleteFileW(probe.c_str());
  return true;
}

}  // namespace qv
