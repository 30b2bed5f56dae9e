#include "host/windows_path.h"

#include <windows.h>

#include <algorithm>

namespace qv::devhost {

std::wstring ToWindowsPath(std::wstring_view path) {
  std::wstring text = path.starts_with(L'/') ? L"Z:" + std::wstring(path) : std::wstring(path);
  std::replace(text.begin(), text.end(), L'/', L'\\');
  std::wstring full(32768, L'\0');
  const DWORD length = GetFullPathNameW(text.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  if (length == 0 || length >= full.size()) return text;
  full.resize(length);
  return full;
}

std::wstring ProgramFolder() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return FolderOf(path);
}

std::wstring FolderOf(const std::wstring& path) {
  const auto cut = path.rfind(L'\\');
  return cut == std::wstring::npos ? std::wstring(L".") : path.substr(0, cut);
}

}  // namespace qv::devhost
