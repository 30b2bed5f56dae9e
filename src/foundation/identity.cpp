#include "foundation/identity.h"

#include <windows.h>

#include <objbase.h>

#include "foundation/file_io.h"
#include "foundation/host_session.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"

#ifndef QV_CHANNEL
#define QV_CHANNEL L"stable"
#endif
#ifndef QV_COMMIT
#define QV_COMMIT L"unknown"
#endif
#ifndef QV_BUILD_DATE
#define QV_BUILD_DATE L"unknown"
#endif

namespace qv {
namespace {

constexpr const wchar_t* kRegistryPath = L"Software\\Quorvantis";
constexpr const wchar_t* kInstallIdName = L"InstallId";

template <typename Function>
Function FindFunction(const wchar_t* module, const char* name) {
  const HMODULE loaded = GetModuleHandleW(module);
  if (loaded == nullptr) return nullptr;
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(loaded, name)));
}

/// Number of the machine's own processor architecture, as in SYSTEM_INFO.
unsigned NativeArchitecture() {
  using IsWow64Process2 = BOOL(WINAPI*)(HANDLE, USHORT*, USHORT*);
  // To an emulated process the system information describes the emulated processor; this function does not.
  if (const auto ask = FindFunction<IsWow64Process2>(L"kernel32.dll", "IsWow64Process2"); ask != nullptr) {
    USHORT process = 0;
    USHORT native = 0;
    if (ask(GetCurrentProcess(), &process, &native) && native == IMAGE_FILE_MACHINE_ARM64)
      return PROCESSOR_ARCHITECTURE_ARM64;
  }
  SYSTEM_INFO info{};
  GetNativeSystemInfo(&info);
  return info.wProcessorArchitecture;
}

bool GetVersionNumbers(OSVERSIONINFOW& version) {
  version.dwOSVersionInfoSize = sizeof(version);
  using RtlGetVersion = LONG(WINAPI*)(OSVERSIONINFOW*);
  // GetVersionEx tells a host without a fitting manifest an old version; this function tells the truth.
  const auto ask = FindFunction<RtlGetVersion>(L"ntdll.dll", "RtlGetVersion");
  return (ask != nullptr && ask(&version) == 0) || GetVersionExW(&version);
}

std::wstring ReadInstallId() {
  constexpr DWORD kAnyText = RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND;
  // In bytes, with room for a final zero that the stored value may lack.
  DWORD size = 0;
  if (RegGetValueW(HKEY_CURRENT_USER, kRegistryPath, kInstallIdName, kAnyText, nullptr, nullptr, &size) !=
      ERROR_SUCCESS) {
    return {};
  }
  std::wstring text(size / sizeof(wchar_t) + 1, L'\0');
  size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  const LSTATUS status =
      RegGetValueW(HKEY_CURRENT_USER, kRegistryPath, kInstallIdName, kAnyText, nullptr, text.data(), &size);
  return status == ERROR_SUCCESS ? std::wstring(text.c_str()) : std::wstring();
}

std::wstring NewInstallId() {
  GUID guid{};
  if (FAILED(CoCreateGuid(&guid))) return Concat(L"local-", GetTickCount64());
  std::wstring id = Concat(Hex{guid.Data1, 8}, L'-', Hex{guid.Data2, 4}, L'-', Hex{guid.Data3, 4}, L'-');
  for (std::size_t i = 0; i < 8; ++i)
    id += Concat(i == 2 ? L"-" : L"", Hex{guid.Data4[i], 2});
  return id;
}

void StoreInstallId(const std::wstring& id) {
  UniqueRegistryKey key;
  if (RegCreateKeyExW(HKEY_CURRENT_USER, kRegistryPath, 0, nullptr, 0, KEY_SET_VALUE, nullptr, key.Put(),
                      nullptr) != ERROR_SUCCESS) {
    return;
  }
  RegSetValueExW(key.Get(), kInstallIdName, 0, REG_SZ, reinterpret_cast<const BYTE*>(id.c_str()),
                 static_cast<DWORD>((id.size() + 1) * sizeof(wchar_t)));
}

}  // namespace

std::wstring GetOsString() {
  const unsigned architecture = NativeArchitecture();
  OSVERSIONINFOW version{};
  if (!GetVersionNumbers(version)) return FormatOsString(architecture);
  return FormatOsString(architecture, version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber);
}

std::wstring GetInstallId() {
  std::wstring id = ReadInstallId();
  if (!id.empty()) return id;
  id = NewInstallId();
  StoreInstallId(id);
  return id;
}

std::wstring GetClientVersion() {
  std::string bytes;
  const std::wstring directory = GetModuleDirectory();
  if (directory.empty() || ReadWholeFile(directory + L"\\version.json", bytes) != FileRead::kRead)
    return ClientVersionFrom({});
  return ClientVersionFrom(FromUtf8(bytes));
}

ClientFacts GatherClientFacts() {
  // Asked for with every request; neither changes while the process lasts.
  static const std::wstring installId = GetInstallId();
  static const std::wstring clientVersion = GetClientVersion();
  const HostSession& host = HostSession::Get();
  ClientFacts facts;
  facts.installId = installId;
  facts.channel = QV_CHANNEL;
  facts.os = GetOsString();
  facts.hostApp = HostKindText(host.Kind());
  facts.hostVersion = host.Version();
  facts.clientVersion = clientVersion;
  facts.commit = QV_COMMIT;
  facts.buildDate = QV_BUILD_DATE;
  facts.hostAppName = host.Kind() == HostKind::kWpsExcel ? L"WPS Spreadsheets" : L"Microsoft Excel";
  return facts;
}

}  // namespace qv
