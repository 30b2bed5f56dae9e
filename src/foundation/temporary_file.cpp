#include "foundation/temporary_file.h"

#include <windows.h>

#include <array>
#include <random>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"

namespace qv {
namespace {

/// Names that are tried before the folder counts as one that cannot be written to.
constexpr int kTries = 16;

std::wstring TemporaryFolder() {
  std::array<wchar_t, MAX_PATH + 1> folder{};
  const DWORD length = GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
  return length < folder.size() ? std::wstring(folder.data(), length) : std::wstring();
}

/// Whether the file was made here, which no other program can have done before.
bool CreateNew(const std::wstring& path) {
  const UniqueHandle<FileTraits> file(
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
  return static_cast<bool>(file);
}

}  // namespace

TemporaryFile::TemporaryFile(const wchar_t* prefix, const wchar_t* extension) {
  const std::wstring folder = TemporaryFolder();
  if (folder.empty()) return;
  std::random_device random;
  for (int attempt = 0; attempt < kTries; ++attempt) {
    std::wstring path = Concat(folder, prefix, L'-', Hex8(random()), Hex8(random()), extension);
    if (!CreateNew(path)) continue;
    path_ = std::move(path);
    return;
  }
}

void TemporaryFile::Delete() {
  if (path_.empty() || DeleteFileW(path_.c_str())) return;
  const DWORD error = GetLastError();
  if (error == ERROR_FILE_NOT_FOUND) return;
  PaneLog(Concat(L"TemporaryFile: not deleted, error ", error, L"\r\n"));
}

}  // namespace qv
