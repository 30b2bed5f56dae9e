#include "addin/registration.h"

#include <oleauto.h>

#include <string>

#include "addin/module_resource.h"
#include "addin/registrar.h"
#include "addin/registrar_script.h"
#include "addin/resources/resource.h"
#include "foundation/module.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "foundation/variant.h"
#include "panel/type_library.h"

// Exported by oleaut32 but missing from MinGW's headers.
extern "C" HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* fullPath, OLECHAR* helpFolder);
extern "C" HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID libraryId, WORD major, WORD minor, LCID locale,
                                                   SYSKIND system);

namespace qv {
namespace {

constexpr wchar_t kExcelAddInKey[] = L"SOFTWARE\\Microsoft\\Office\\Excel\\Addins\\ExcelAddin.Connect";
constexpr wchar_t kWpsAllowListKey[] = L"SOFTWARE\\Kingsoft\\Office\\ET\\AddinsWL";
constexpr wchar_t kProgId[] = L"ExcelAddin.Connect";
constexpr int kScripts[] = {IDR_CONNECT_SCRIPT, IDR_PANE_SCRIPT};

std::optional<std::wstring> LoadScript(int id) {
  const auto bytes = ModuleResource(id, L"REGISTRY");
  if (!bytes) return std::nullopt;
  return FromUtf8(*bytes);
}

template <typename Plan>
HRESULT RunScript(int id, const Plan& plan, OnFailure onFailure) {
  const auto script = LoadScript(id);
  if (!script) return HRESULT_FROM_WIN32(ERROR_RESOURCE_NAME_NOT_FOUND);
  const std::optional<std::vector<RegistryChange>> changes = plan(*script);
  if (!changes) return HRESULT_FROM_WIN32(ERROR_INVALID_DATA);
  return ApplyRegistryChanges(*changes, onFailure);
}

/// The first failure of any script.
template <typename Plan>
HRESULT RunScripts(const Plan& plan, OnFailure onFailure) {
  HRESULT first = S_OK;
  for (const int id : kScripts) {
    if (FAILED(first) && onFailure == OnFailure::kStop) break;
    const HRESULT hr = RunScript(id, plan, onFailure);
    if (SUCCEEDED(first)) first = hr;
  }
  return first;
}

HRESULT RegisterTypeLibrary(std::wstring path) {
  ComPtr<ITypeLib> library;
  const HRESULT hr = LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library);
  return SUCCEEDED(hr) ? RegisterTypeLibForUser(library.Get(), path.data(), nullptr) : hr;
}

LSTATUS SetNumber(HKEY key, const wchar_t* name, DWORD number) {
  return RegSetValueExW(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof(number));
}

LSTATUS WriteExcelKey() {
  UniqueRegistryKey key;
  LSTATUS status = RegCreateKeyExW(HKEY_CURRENT_USER, kExcelAddInKey, 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                                   key.Put(), nullptr);
  if (status == ERROR_SUCCESS) status = SetRegistryText(key.Get(), L"FriendlyName", L"Quorvantis Excel");
  if (status == ERROR_SUCCESS) {
    status = SetRegistryText(key.Get(), L"Description", L"整表或选区翻译，写回 Excel 单元格。");
  }
  // Load at start-up, and loaded now.
  if (status == ERROR_SUCCESS) status = SetNumber(key.Get(), L"LoadBehavior", 3);
  if (status == ERROR_SUCCESS) status = SetNumber(key.Get(), L"CommandLineSafe", 1);
  return status;
}

/// Without this value WPS ignores the add-in, but a machine without WPS does not need it.
void AllowInWps() {
  UniqueRegistryKey key;
  if (RegCreateKeyExW(HKEY_CURRENT_USER, kWpsAllowListKey, 0, nullptr, 0, KEY_SET_VALUE | KEY_WOW64_64KEY,
                      nullptr, key.Put(), nullptr) == ERROR_SUCCESS) {
    static_cast<void>(SetRegistryText(key.Get(), kProgId, L""));
  }
}

void DisallowInWps() {
  UniqueRegistryKey key;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kWpsAllowListKey, 0, KEY_SET_VALUE | KEY_WOW64_64KEY, key.Put()) ==
      ERROR_SUCCESS) {
    RegDeleteValueW(key.Get(), kProgId);
  }
}

}  // namespace

HRESULT RegisterAddIn() {
  const std::wstring path = ThisModulePath();
  if (path.empty()) return HRESULT_FROM_WIN32(ERROR_INSUFFICIENT_BUFFER);
  HRESULT hr = RunScripts([&](const std::wstring& script) { return PlanRegistration(script, path); },
                          OnFailure::kStop);
  if (FAILED(hr)) return hr;
  hr = RegisterTypeLibrary(path);
  if (FAILED(hr)) return hr;
  if (const LSTATUS status = WriteExcelKey(); status != ERROR_SUCCESS) return HRESULT_FROM_WIN32(status);
  AllowInWps();
  return S_OK;
}

HRESULT UnregisterAddIn() {
  const HRESULT classes =
      RunScripts([](const std::wstring& script) { return PlanUnregistration(script); }, OnFailure::kGoOn);
  // A library that is not registered (any more) gives a failure, which is as good as success.
  static_cast<void>(UnRegisterTypeLibForUser(kTypeLibraryId, kTypeLibraryMajor, kTypeLibraryMinor,
                                             LOCALE_NEUTRAL, SYS_WIN64));
  const LSTATUS status = RegDeleteTreeW(HKEY_CURRENT_USER, kExcelAddInKey);
  DisallowInWps();
  if (FAILED(classes)) return classes;
  return status == ERROR_FILE_NOT_FOUND ? S_OK : HRESULT_FROM_WIN32(status);
}

}  // namespace qv
