#include "foundation/log_files.h"

#include <windows.h>

#include <vector>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"

namespace qv {
namespace {

std::uint64_t Join(DWORD high, DWORD low) {
  return std::uint64_t{high} << 32 | low;
}

std::uint64_t TicksOf(const FILETIME& time) {
  return Join(time.dwHighDateTime, time.dwLowDateTime);
}

std::vector<LogFile> ListLogs(const std::wstring& directory) {
  std::vector<LogFile> files;
  WIN32_FIND_DATAW found{};
  const UniqueFind search(FindFirstFileW((directory + L"\\Quorvantis*.log*").c_str(), &found));
  if (!search) return files;
  do {
    const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    // The pattern also meets short 8.3 names, so the name is looked at again.
    if (isFolder || !IsManagedLogName(found.cFileName)) continue;
    files.push_back({Concat(directory, L'\\', found.cFileName), Join(found.nFileSizeHigh, found.nFileSizeLow),
                     TicksOf(found.ftLastWriteTime)});
  } while (FindNextFileW(search.Get(), &found));
  return files;
}

bool Remove(const std::wstring& path) {
  return DeleteFileW(path.c_str()) != FALSE;
}

bool IsSamePath(const std::wstring& left, const std::wstring& right) {
  return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_EQUAL;
}

std::wstring FolderInUserData(const LogFolderPlaces& places) {
  if (places.localAppData.empty()) {
    places.say(L"[Quorvantis] log dir: SHGetFolderPath LOCALAPPDATA failed\r\n");
    return {};
  }
  const std::wstring parent = places.localAppData + L"\\Quorvantis";
  CreateDirectoryW(parent.c_str(), nullptr);
  const std::wstring directory = parent + L"\\log";
  if (!ProbeDirectoryWritable(directory)) {
    places.say(L"[Quorvantis] log dir: LOCALAPPDATA not writable, trying install dir\r\n");
    return {};
  }
  places.say(Concat(L"[Quorvantis] log dir: ", directory, L"\r\n"));
  return directory;
}

}  // namespace

std::wstring ChooseLogDirectory(const LogFolderPlaces& places) {
  const std::wstring besideModule =
      places.moduleDirectory.empty() ? std::wstring() : places.moduleDirectory + L"\\log";
  if (std::wstring directory = FolderInUserData(places); !directory.empty()) {
    if (!besideModule.empty() && !IsSamePath(besideModule, directory)) {
      PruneOldLogs(besideModule);
      CapLogFolderSize(besideModule);
    }
    return directory;
  }
  if (ProbeDirectoryWritable(besideModule)) {
    places.say(Concat(L"[Quorvantis] log dir fallback install: ", besideModule, L"\r\n"));
    return besideModule;
  }
  places.say(L"[Quorvantis] log dir: no writable directory\r\n");
  return {};
}

LocalTime CurrentLocalTime() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds};
}

void RotateLogFile(const std::wstring& path, const LocalTime& time) {
  WIN32_FILE_ATTRIBUTE_DATA facts{};
  if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &facts)) return;
  if (!NeedsRotation(Join(facts.nFileSizeHigh, facts.nFileSizeLow))) return;
  MoveFileExW(path.c_str(), RotatedLogPath(path, time).c_str(), MOVEFILE_REPLACE_EXISTING);
}

void PruneOldLogs(const std::wstring& directory) {
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  for (const LogFile& file : ListLogs(directory)) {
    if (IsTooOld(file.lastWrite, TicksOf(now))) Remove(file.path);
  }
}

void CapLogFolderSize(const std::wstring& directory) {
  CapLogFiles(ListLogs(directory), Remove);
}

}  // namespace qv
