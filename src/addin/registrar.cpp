#include "addin/registrar.h"

#include "foundation/unique_handle.h"

namespace qv {
namespace {

constexpr wchar_t kUserClasses[] = L"Software\\Classes\\";

std::wstring FullPath(const RegistryChange& change) {
  return change.root == RegistryRoot::kClasses ? kUserClasses + change.path : change.path;
}

LSTATUS MissingIsFine(LSTATUS status) {
  return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

LSTATUS SetValue(const std::wstring& path, const RegistryChange& change) {
  UniqueRegistryKey key;
  const LSTATUS status = RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_SET_VALUE,
                                         nullptr, key.Put(), nullptr);
  if (status != ERROR_SUCCESS) return status;
  if (!change.isNumber) return SetRegistryText(key.Get(), change.name.c_str(), change.text);
  return RegSetValueExW(key.Get(), change.name.c_str(), 0, REG_DWORD,
                        reinterpret_cast<const BYTE*>(&change.number), sizeof(change.number));
}

LSTATUS DeleteKeyIfEmpty(const std::wstring& path) {
  UniqueRegistryKey key;
  const LSTATUS status = RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_QUERY_VALUE, key.Put());
  if (status != ERROR_SUCCESS) return status;
  DWORD keys = 0;
  RegQueryInfoKeyW(key.Get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, nullptr, nullptr, nullptr,
                   nullptr, nullptr);
  if (keys != 0) return ERROR_SUCCESS;
  key.Reset();
  return RegDeleteKeyW(HKEY_CURRENT_USER, path.c_str());
}

LSTATUS Apply(const RegistryChange& change) {
  const std::wstring path = FullPath(change);
  switch (change.step) {
    case RegistryStep::kCreateKey: {
      UniqueRegistryKey key;
      return RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                             key.Put(), nullptr);
    }
    case RegistryStep::kDeleteTree:
      return MissingIsFine(RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str()));
    case RegistryStep::kDeleteKeyIfEmpty:
      return MissingIsFine(DeleteKeyIfEmpty(path));
    case RegistryStep::kSetValue:
      return SetValue(path, change);
    case RegistryStep::kDeleteValue:
      return MissingIsFine(RegDeleteKeyValueW(HKEY_CURRENT_USER, path.c_str(), change.name.c_str()));
  }
  return ERROR_INVALID_FUNCTION;
}

}  // namespace

LSTATUS SetRegistryText(HKEY key, const wchar_t* name, const std::wstring& text) {
  return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

HRESULT ApplyRegistryChanges(std::span<const RegistryChange> changes, OnFailure onFailure) {
  HRESULT first = S_OK;
  for (const RegistryChange& change : changes) {
    if (FAILED(first) && onFailure == OnFailure::kStop) break;
    const LSTATUS status = Apply(change);
    if (status != ERROR_SUCCESS && SUCCEEDED(first)) first = HRESULT_FROM_WIN32(status);
  }
  return first;
}

}  // namespace qv
