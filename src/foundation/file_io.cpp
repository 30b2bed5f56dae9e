#include "foundation/file_io.h"

#include <windows.h>

#include <shlobj.h>

#include <algorithm>
#include <array>

#include "foundation/module.h"
#include "foundation/unique_handle.h"

namespace qv {
namespace {

constexpr std::size_t kMaxPieceBytes = 1'048'576;

bool ReadPieces(HANDLE file, std::string& bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const auto wanted = static_cast<DWORD>(std::min(bytes.size() - at, kMaxPieceBytes));
    DWORD got = 0;
    if (!ReadFile(file, bytes.data() + at, wanted, &got, nullptr)) return false;
    if (got == 0) {
      // The file became shorter since its size was asked for.
      bytes.resize(at);
      break;
    }
    at += got;
  }
  return true;
}

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

UniqueFile OpenForReading(const std::wstring& path, DWORD share) {
  return UniqueFile(
      CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

/// What the last error says of a file that could not be opened.
FileRead WhyNotOpened() {
  const DWORD error = GetLastError();
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? FileRead::kMissing
                                                                        : FileRead::kFailed;
}

}  // namespace

FileRead ReadWholeFile(const std::wstring& path, std::string& bytes, std::size_t limit) {
  bytes.clear();
  const UniqueFile file = OpenForReading(path, kShareAll);
  if (!file) return WhyNotOpened();
  LARGE_INTEGER size{};
  if (!GetFileSizeEx(file.Get(), &size) || static_cast<std::uint64_t>(size.QuadPart) > limit)
    return FileRead::kFailed;
  bytes.resize(static_cast<std::size_t>(size.QuadPart));
  if (ReadPieces(file.Get(), bytes)) return FileRead::kRead;
  bytes.clear();
  return FileRead::kFailed;
}

FileRead ReadSettledFile(const std::wstring& path, std::string& bytes) {
  bytes.clear();
  // Only opened this way, and closed at once: while it is, the file's owner cannot begin to write.
  if (!OpenForReading(path, kShareAll & ~static_cast<DWORD>(FILE_SHARE_WRITE))) return WhyNotOpened();
  return ReadWholeFile(path, bytes);
}

bool MeansInUse(unsigned long error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_USER_MAPPED_FILE;
}

unsigned long MakeFolder(const std::wstring& directory) {
  const int made = SHCreateDirectoryExW(nullptr, directory.c_str(), nullptr);
  const bool isThere = made == ERROR_SUCCESS || made == ERROR_ALREADY_EXISTS || made == ERROR_FILE_EXISTS;
  return isThere ? ERROR_SUCCESS : static_cast<unsigned long>(made);
}

std::wstring ShellFolder(int csidl) {
  std::array<wchar_t, MAX_PATH> path{};
  if (FAILED(SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, path.data()))) return {};
  return path.data();
}

std::wstring GetModuleDirectory() {
  const std::wstring path = ThisModulePath();
  const std::size_t slash = path.rfind(L'\\');
  return slash == std::wstring::npos ? std::wstring() : path.substr(0, slash);
}

}  // namespace qv
