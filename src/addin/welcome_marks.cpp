#include "addin/welcome_marks.h"

#include <windows.h>

#include "addin/welcome_values.h"
#include "foundation/unique_handle.h"

namespace qv {
namespace {

constexpr wchar_t kKey[] = L"Software\\Quorvantis";
constexpr DWORD kShown = 1;

void SetShown(const UniqueRegistryKey& key, const wchar_t* value) {
  static_cast<void>(
      RegSetValueExW(key.Get(), value, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&kShown), sizeof(kShown)));
}

}  // namespace

bool IsWelcomeDue() {
  UniqueRegistryKey key;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_QUERY_VALUE, key.Put()) != ERROR_SUCCESS) return true;
  DWORD type = REG_NONE;
  DWORD shown = 0;
  DWORD size = sizeof(shown);
  const LSTATUS status =
      RegQueryValueExW(key.Get(), kWelcomeShownValue, nullptr, &type, reinterpret_cast<BYTE*>(&shown), &size);
  return status != ERROR_SUCCESS || type != REG_DWORD || shown != kShown;
}

void MarkWelcomeShown(std::wstring_view host) {
  UniqueRegistryKey key;
  if (RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_SET_VALUE, nullptr, key.Put(), nullptr) !=
      ERROR_SUCCESS)
    return;
  SetShown(key, WelcomeValueOfHost(host));
  SetShown(key, kWelcomeShownValue);
}

}  // namespace qv
