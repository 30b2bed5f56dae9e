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

bool WritePieces(HANDLE file, std::string_view bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const auto wanted = static_cast<DWORD>(std::min(bytes.size() - at, kMaxPieceBytes));
    DWORD written = 0;
    if (!WriteFile(file, bytes.data() + at, wanted, &written, nullptr) || written != wanted) return false;
    at += written;
  }
  return true;
}

bool WriteNewFile(const std::wstring& path, std::string_view bytes) {
  const UniqueFile file(
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  return file && WritePieces(file.Get(), bytes);
}

}  // namespace

FileRead ReadWholeFile(const std::wstring& path, std::string& bytes, std::size_t limit) {
  bytes.clear();
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
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

bool WriteFileAtomically(const std::wstring& path, std::string_view bytes) {
  const std::wstring temporary = path + L".tmp";
  if (WriteNewFile(temporary, bytes) &&
      MoveFileExW(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING)) {
    return true;
  }
  // The caller wants to know why it failed, not how the tidying went.
  const DWORD error = GetLastError();
  DeleteFileW(temporary.c_str());
  SetLastError(error);
  return false;
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
