#include "webview2/chromium/unix_path.h"

#include <windows.h>

#include "foundation/text.h"

namespace qv::devhost {

std::optional<std::wstring> EnvironmentText(const wchar_t* name) {
  std::wstring text(GetEnvironmentVariableW(name, nullptr, 0), L'\0');
  text.resize(GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size())));
  if (text.empty()) return std::nullopt;
  return text;
}

std::wstring WindowsPathOf(std::wstring_view unixPath) {
  return L"Z:" + ReplaceAll(unixPath, L"/", L"\\");
}

}  // namespace qv::devhost
