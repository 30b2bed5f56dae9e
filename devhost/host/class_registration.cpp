#include "host/class_registration.h"

#include <windows.h>

#include <string>

#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "host/call_log.h"
#include "host/wine.h"

namespace qv::devhost {
namespace {

constexpr wchar_t kClasses[] = L"Software\\Classes\\";
/// A host's start takes a second or two; several may stand in line on a busy machine.
constexpr std::chrono::seconds kClassPatience{60};

constexpr const wchar_t* kOwnKeys[] = {
    L"CLSID\\{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}",
    L"CLSID\\{B2C3D4E5-F6A7-8901-BCDE-F12345678901}",
    L"ExcelAddin.Connect",
    L"ExcelAddin.Connect.1",
    L"Quorvantis.ExcelPane",
    L"Quorvantis.ExcelPane.1",
    L"TypeLib\\{E1F2A3B4-C5D6-7890-1234-567890ABCDEF}",
};

/// A key that the user's hive does not have is left alone in the machine's.
LSTATUS CopyKey(const wchar_t* key) {
  const std::wstring path = std::wstring(kClasses) + key;
  UniqueRegistryKey source;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, source.Put()) != ERROR_SUCCESS)
    return ERROR_SUCCESS;
  RegDeleteTreeW(HKEY_LOCAL_MACHINE, path.c_str());
  UniqueRegistryKey target;
  const LSTATUS status = RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                                         nullptr, target.Put(), nullptr);
  return status == ERROR_SUCCESS ? RegCopyTreeW(source.Get(), nullptr, target.Get()) : status;
}

}  // namespace

void PublishUserClasses(CallLog& log) {
  if (!IsWine()) return;
  for (const wchar_t* key : kOwnKeys) {
    log.Require("copy class key " + ToUtf8(key), HRESULT_FROM_WIN32(static_cast<DWORD>(CopyKey(key))));
  }
}

NamedLock LockClasses() {
  return {L"Local\\QuorvantisDevhostClasses", kClassPatience};
}

}  // namespace qv::devhost
