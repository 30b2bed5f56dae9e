#include "foundation/file_replacement.h"

#include <windows.h>

#include <aclapi.h>

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

/// The attributes that a new file takes over from the one it replaces.
DWORD KeptAttributes(const std::wstring& path) {
  constexpr DWORD kKept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                          FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_ATTRIBUTE_ENCRYPTED;
  const DWORD attributes = GetFileAttributesW(path.c_str());
  const DWORD kept = attributes == INVALID_FILE_ATTRIBUTES ? 0 : attributes & kKept;
  return kept == 0 ? FILE_ATTRIBUTE_NORMAL : kept;
}

bool IsWriteProtected(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

/// Gives one file the access list of another, if there is any, entry for entry: handing the folder's down
/// anew could let others in. Without it the file has its folder's rights, and is still whole.
void CopyRights(const std::wstring& from, const std::wstring& to) {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (GetNamedSecurityInfoW(from.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                            nullptr, nullptr, &descriptor) != ERROR_SUCCESS) {
    return;
  }
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  DWORD revision = 0;
  if (GetSecurityDescriptorControl(descriptor, &control, &revision) && (control & SE_DACL_PRESENT) != 0) {
    // What came from the folder goes on following it only where that is asked for.
    if ((control & SE_DACL_AUTO_INHERITED) != 0)
      SetSecurityDescriptorControl(descriptor, SE_DACL_AUTO_INHERIT_REQ, SE_DACL_AUTO_INHERIT_REQ);
    SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, descriptor);
  }
  LocalFree(descriptor);
}

}  // namespace

FileReplacement::FileReplacement(const std::wstring& path, Durability durability)
    : target_(ResolveLink(path)), beside_(NameBeside(target_)), durability_(durability) {}

FileReplacement::~FileReplacement() {
  if (!isBeside_) return;
  // The caller wants to know why it failed, not how the tidying went.
  const DWORD error = GetLastError();
  DeleteFileW(beside_.c_str());
  SetLastError(error);
}

bool FileReplacement::Write(std::string_view bytes) {
  if (IsWriteProtected(target_)) {
    SetLastError(ERROR_ACCESS_DENIED);
    return false;
  }
  const UniqueFile file(
      CreateFileW(beside_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, KeptAttributes(target_), nullptr));
  isBeside_ = static_cast<bool>(file);
  if (!file) return false;
  // Ahead of the contents, which may be for the file's readers only.
  CopyRights(target_, beside_);
  return WritePieces(file.Get(), bytes) &&
         (durability_ == Durability::kPlain || FlushFileBuffers(file.Get()));
}

bool FileReplacement::Replace() {
  return Move(MOVEFILE_REPLACE_EXISTING);
}

bool FileReplacement::Make() {
  return Move(0);
}

bool FileReplacement::Move(unsigned long flags) {
  const DWORD through = durability_ == Durability::kOnDisk ? MOVEFILE_WRITE_THROUGH : 0;
  const bool moved = MoveFileExW(beside_.c_str(), target_.c_str(), flags | through) != FALSE;
  if (moved) isBeside_ = false;
  return moved;
}

bool WriteFileAtomically(const std::wstring& path, std::string_view bytes, Durability durability) {
  FileReplacement replacement(path, durability);
  return replacement.Write(bytes) && replacement.Replace();
}

}  // namespace qv
