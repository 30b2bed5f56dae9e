#include "host/settings_file.h"

#include <shlobj.h>
#include <windows.h>

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "foundation/unique_handle.h"
#include "services/named_lock.h"

namespace qv::devhost {
namespace {

using Json = nlohmann::ordered_json;

std::wstring SettingsPath() {
  std::wstring folder(MAX_PATH, L'\0');
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE, nullptr, 0, folder.data()))) {
    throw std::runtime_error("the local application-data folder is not known");
  }
  folder.resize(folder.find(L'\0'));
  folder += L"\\Quorvantis";
  CreateDirectoryW(folder.c_str(), nullptr);
  return folder + L"\\config.json";
}

std::string ReadAll(const std::wstring& path) {
  const UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return {};
  std::string text(65536, '\0');
  DWORD read = 0;
  if (!ReadFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &read, nullptr)) return {};
  text.resize(read);
  return text;
}

}  // namespace

void WriteServiceAddress(const ServiceAddress& service) {
  // Another host may start at this moment. An add-in that reads is not disturbed when nothing changes.
  const NamedLock turn(L"Local\\QuorvantisDevhostSettings", std::chrono::seconds(10));
  const std::wstring path = SettingsPath();
  const std::string before = ReadAll(path);
  Json settings = Json::parse(before, nullptr, false);
  if (!settings.is_object()) settings = Json::object();
  settings["serviceHost"] = service.host;
  settings["servicePort"] = service.port;
  settings["serviceScheme"] = service.scheme;
  const std::string text = settings.dump(2) + "\n";
  if (text == before) return;

  const UniqueFile file(
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  if (!file || !WriteFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr) ||
      written != text.size()) {
    throw std::runtime_error("the settings file cannot be written");
  }
}

}  // namespace qv::devhost
