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

/// Nothing when there is nothing.
std::optional<Entry> EntryAt(const std::wstring& path) {
  const std::wstring longPath = LongPath(path);
  const DWORD attributes = GetFileAttributesW(longPath.c_str());
  return attributes == INVALID_FILE_ATTRIBUTES ? std::nullopt : std::optional(Entry{longPath, attributes});
}

/// Calls `visit` for everything below `top`, and at last for that itself, until it says false.
void VisitAll(const Entry& top, const std::function<bool(const Entry&)>& visit) {
  if (!IsRealFolder(top.attributes) || WalkBelow(top.path, visit)) static_cast<void>(visit(top));
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

/// Opens what is to be deleted, as an attempt: 0, or the system's error number. A program that runs, or a
/// library that is loaded, cannot be opened for writing; a folder must be open to a look into it, and may be
/// open elsewhere.
DWORD TryOpen(const Entry& entry) {
  const WithoutProtection lifted(entry);
  const bool isFolder = (entry.attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const DWORD access = DELETE | (isFolder ? FILE_LIST_DIRECTORY : GENERIC_WRITE);
  const DWORD share = isFolder ? FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE : 0;
  // Of a link the link itself.
  constexpr DWORD kFlags = FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT;
  const UniqueFile file(
      CreateFileW(entry.path.c_str(), access, share, nullptr, OPEN_EXISTING, kFlags, nullptr));
  return file ? ERROR_SUCCESS : GetLastError();
}

bool IsGone(DWORD error) {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

/// 0, or the system's error number.
DWORD Delete(const Entry& entry) {
  const WithoutProtection lifted(entry);
  const bool isFolder = (entry.attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const BOOL deleted = isFolder ? RemoveDirectoryW(entry.path.c_str()) : DeleteFileW(entry.path.c_str());
  const DWORD error = deleted ? ERROR_SUCCESS : GetLastError();
  return IsGone(error) ? ERROR_SUCCESS : error;
}

std::wstring WithoutLongForm(const std::wstring& path) {
  return path.starts_with(L"\\\\?\\") ? path.substr(4) : path;
}

}  // namespace

bool MeansNoRights(unsigned long error) {
  return error == ERROR_ACCESS_DENIED || error == ERROR_PRIVILEGE_NOT_HELD || error == ERROR_WRITE_PROTECT;
}

std::optional<RemovalObstacle> FindRemovalObstacle(const std::wstring& directory) {
  const std::optional<Entry> top = EntryAt(directory);
  if (!top) return std::nullopt;
  std::optional<RemovalObstacle> obstacle;
  VisitAll(*top, [&](const Entry& entry) {
    const DWORD error = TryOpen(entry);
    if (error != ERROR_SUCCESS && !IsGone(error))
      obstacle = RemovalObstacle{WithoutLongForm(entry.path), error};
    return !obstacle;
  });
  return obstacle;
}

std::optional<RemovalObstacle> EmptyFolder(const std::wstring& directory) {
  const std::optional<Entry> top = EntryAt(directory);
  if (!top) return std::nullopt;
  std::optional<RemovalObstacle> kept;
  const auto remove = [&](const Entry& entry) {
    if (const DWORD error = Delete(entry)) kept = RemovalObstacle{WithoutLongForm(entry.path), error};
    return !kept;
  };
  static_cast<void>(IsRealFolder(top->attributes) ? WalkBelow(top->path, remove) : remove(*top));
  return kept;
}

}  // namespace qv
