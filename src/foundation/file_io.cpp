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

FileRead ReadShared(const std::wstring& path, DWORD share, std::string& bytes, std::size_t limit) {
  bytes.clear();
  const UniqueFile file(
      CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) {
    const DWORD error = GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? FileRead::kMissing
                                                                          : FileRead::kFailed;
  }
  LARGE_INTEGER size{};
  if (!GetFileSizeEx(file.Get(), &size) || static_cast<std::uint64_t>(size.QuadPart) > limit)
    return FileRead::kFailed;
  bytes.resize(static_cast<std::size_t>(size.QuadPart));
  if (ReadPieces(file.Get(), bytes)) return FileRead::kRead;
  bytes.clear();
  return FileRead::kFailed;
}

}  // namespace

FileRead ReadWholeFile(const std::wstring& path, std::string& bytes, std::size_t limit) {
  return ReadShared(path, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, bytes, limit);
}

FileRead ReadSettledFile(const std::wstring& path, std::string& bytes) {
  return ReadShared(path, FILE_SHARE_READ | FILE_SHARE_DELETE, bytes, kMaxFileBytes);
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
