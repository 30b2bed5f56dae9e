#include "foundation/file_replacement.h"

#include <windows.h>

#include <algorithm>
#include <atomic>

#include "foundation/text.h"
#include "foundation/unique_handle.h"

namespace qv {
namespace {

constexpr std::size_t kMaxPieceBytes = 1'048'576;

bool WritePieces(HANDLE file, std::string_view bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const auto wanted = static_cast<DWORD>(std::min(bytes.size() - at, kMaxPieceBytes));
    DWORD written = 0;
    if (!WriteFile(file, bytes.data() + at, wanted, &written, nullptr) || written != wanted) return false;
    at += written;
  }
  return true;
}

/// A name that no other writer uses: the time keeps it apart from what an earlier process may have left.
std::wstring NameBeside(const std::wstring& path) {
  static std::atomic<unsigned> number{0};
  LARGE_INTEGER ticks{};
  QueryPerformanceCounter(&ticks);
  return Concat(path, L'.', GetCurrentProcessId(), L'-', ticks.QuadPart, L'-', ++number, L".tmp");
}

/// A file beside the target, gone with this object unless it has been moved away.
class NewFile {
 public:
  explicit NewFile(const std::wstring& target) : path_(NameBeside(target)) {}
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile() {
    if (!made_) return;
    // The caller wants to know why it failed, not how the tidying went.
    const DWORD error = GetLastError();
    DeleteFileW(path_.c_str());
    SetLastError(error);
  }

  [[nodiscard]] const std::wstring& Path() const { return path_; }
  [[nodiscard]] bool Write(std::string_view bytes) {
    const UniqueFile file(
        CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    made_ = static_cast<bool>(file);
    return file && WritePieces(file.Get(), bytes) && FlushFileBuffers(file.Get());
  }

 private:
  std::wstring path_;
  bool made_ = false;
};

/// What a link leads to; the path itself when it is none, or leads nowhere.
std::wstring ResolveLink(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return path;
  const UniqueFile file(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!file) return path;
  std::wstring target(32'767, L'\0');
  const DWORD length =
      GetFinalPathNameByHandleW(file.Get(), target.data(), static_cast<DWORD>(target.size()), 0);
  if (length == 0 || length >= target.size()) return path;
  target.resize(length);
  return target;
}

/// Puts `made` into the place of a file that is there, with that one's rights and attributes.
bool Replace(const std::wstring& made, const std::wstring& path) {
  // Without a name of ours for the former file, Wine leaves one of its own behind when it fails.
  const std::wstring former = made + L".former";
  const bool replaced = ReplaceFileW(path.c_str(), made.c_str(), former.c_str(),
                                     REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) != FALSE;
  // Where it failed half way the former file goes back, unless another writer's is there by now.
  const bool isBack = !replaced && MoveFileExW(former.c_str(), path.c_str(), 0);
  if (replaced || (!isBack && GetLastError() == ERROR_ALREADY_EXISTS)) DeleteFileW(former.c_str());
  return replaced;
}

/// The plain move is for places that know no such replacement, and for a file that is missing.
bool PutInPlace(const std::wstring& made, const std::wstring& path) {
  return Replace(made, path) ||
         MoveFileExW(made.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

}  // namespace

bool WriteFileAtomically(const std::wstring& path, std::string_view bytes) {
  const std::wstring target = ResolveLink(path);
  NewFile made(target);
  return made.Write(bytes) && PutInPlace(made.Path(), target);
}

bool MakeFileAtomically(const std::wstring& path, std::string_view bytes) {
  NewFile made(path);
  return made.Write(bytes) && MoveFileExW(made.Path().c_str(), path.c_str(), MOVEFILE_WRITE_THROUGH);
}

}  // namespace qv
