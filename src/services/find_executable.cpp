#include "services/find_executable.h"

#include <windows.h>

#include <array>

#include "foundation/text.h"

namespace qv {
namespace {

std::wstring SearchFor(const std::wstring& path, const std::wstring& name, const wchar_t* extension) {
  std::array<wchar_t, MAX_PATH> found{};
  const DWORD length = SearchPathW(path.c_str(), name.c_str(), extension, static_cast<DWORD>(found.size()),
                                   found.data(), nullptr);
  if (length == 0 || length >= found.size()) return {};
  std::wstring file(found.data(), length);
  return IsExistingFile(file) ? file : std::wstring();
}

}  // namespace

std::wstring FindExecutable(const std::wstring& name) {
  // Given by name, the path leaves out the current folder and the host's own: a program that came with a
  // workbook must not be taken for an installed one.
  const std::wstring path = EnvironmentValue(L"PATH");
  if (path.empty() || name.empty()) return {};
  if (FileNameOf(name).find(L'.') != std::wstring::npos) return SearchFor(path, name, nullptr);
  for (const wchar_t* const extension : {L".exe", L".cmd", L".bat", L".ps1"}) {
    std::wstring found = SearchFor(path, name, extension);
    if (!found.empty()) return found;
  }
  return {};
}

bool IsExistingFile(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::wstring EnvironmentValue(const wchar_t* name) {
  std::wstring value(32'767, L'\0');
  const DWORD length = GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size()));
  value.resize(length < value.size() ? length : 0);
  return value;
}

}  // namespace qv
