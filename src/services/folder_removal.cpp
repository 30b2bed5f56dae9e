#include "services/folder_removal.h"

#include <windows.h>

#include <functional>
#include <string_view>

#include "foundation/text.h"
#include "foundation/unique_handle.h"

namespace qv {
namespace {

/// The form of a path that may be longer than 259 characters, as those of packages can be.
std::wstring LongPath(const std::wstring& path) {
  return path.starts_with(L"\\\\") ? path : L"\\\\?\\" + path;
}

bool IsRealFolder(DWORD attributes) {
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
}

struct Entry {
  std::wstring path;
  DWORD attributes;
};

/// Calls `visit` for everything below a folder, a folder after what is in it; false ends the walk and is the
/// result.
bool WalkBelow(const std::wstring& directory, const std::function<bool(const Entry&)>& visit) {
  WIN32_FIND_DATAW found{};
  const UniqueFind search(FindFirstFileW((directory + L"\\*").c_str(), &found));
  if (!search) return true;
  do {
    const std::wstring_view name = found.cFileName;
    if (name == L"." || name == L"..") continue;
    const Entry entry{Concat(directory, L'\\', name), found.dwFileAttributes};
    if (IsRealFolder(entry.attributes) && !WalkBelow(entry.path, visit)) return false;
    if (!visit(entry)) return false;
  } while (FindNextFileW(search.Get(), &found));
  return true;
}

/// Lifts a file's write protection for as long as this lives.
class WithoutProtection {
 public:
  explicit WithoutProtection(const Entry& entry) : entry_(entry) {
    if (IsProtected()) SetFileAttributesW(entry_.path.c_str(), FILE_ATTRIBUTE_NORMAL);
  }
  WithoutProtection(const WithoutProtection&) = delete;
  WithoutProtection& operator=(const WithoutProtection&) = delete;
  ~WithoutProtection() {
    if (IsProtected()) SetFileAttributesW(entry_.path.c_str(), entry_.attributes);
  }

 private:
  [[nodiscard]] bool IsProtected() const { return (entry_.attributes & FILE_ATTRIBUTE_READONLY) != 0; }

  const Entry& entry_;
};

/// A program that runs, or a library that is loaded, cannot be opened for writing.
bool IsInUse(const Entry& entry) {
  if ((entry.attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return false;
  const WithoutProtection lifted(entry);
  const UniqueFile file(
      CreateFileW(entry.path.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  return !file && GetLastError() != ERROR_FILE_NOT_FOUND;
}

bool Delete(const Entry& entry) {
  const WithoutProtection lifted(entry);
  const bool isFolder = (entry.attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const BOOL deleted = isFolder ? RemoveDirectoryW(entry.path.c_str()) : DeleteFileW(entry.path.c_str());
  return deleted || GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_PATH_NOT_FOUND;
}

std::wstring WithoutLongForm(const std::wstring& path) {
  return path.starts_with(L"\\\\?\\") ? path.substr(4) : path;
}

}  // namespace

std::wstring FileInUseBelow(const std::wstring& directory) {
  std::wstring inUse;
  static_cast<void>(WalkBelow(LongPath(directory), [&](const Entry& entry) {
    if (IsInUse(entry)) inUse = WithoutLongForm(entry.path);
    return inUse.empty();
  }));
  return inUse;
}

std::wstring DeleteFolder(const std::wstring& directory) {
  const Entry top{LongPath(directory), GetFileAttributesW(LongPath(directory).c_str())};
  if (top.attributes == INVALID_FILE_ATTRIBUTES) return {};
  std::wstring kept;
  const auto remove = [&](const Entry& entry) {
    if (!Delete(entry)) kept = WithoutLongForm(entry.path);
    return kept.empty();
  };
  if (!IsRealFolder(top.attributes) || WalkBelow(top.path, remove)) static_cast<void>(remove(top));
  return kept;
}

}  // namespace qv
