#include "foundation/temporary_file.h"

#include <windows.h>

#include <array>

namespace qv {

TemporaryFile::TemporaryFile(const wchar_t* prefix, const wchar_t* extension) {
  std::array<wchar_t, MAX_PATH> folder{};
  std::array<wchar_t, MAX_PATH> name{};
  const DWORD length = GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
  if (length == 0 || length >= folder.size()) return;
  if (GetTempFileNameW(folder.data(), prefix, 0, name.data()) == 0) return;
  placeholder_ = name.data();
  path_ = placeholder_.substr(0, placeholder_.rfind(L'.')) + extension;
}

void TemporaryFile::Delete() {
  for (const std::wstring* const path : {&path_, &placeholder_})
    if (!path->empty()) DeleteFileW(path->c_str());
}

}  // namespace qv
