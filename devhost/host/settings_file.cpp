#include "host/settings_file.h"

#include <shlobj.h>
#include <windows.h>

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "foundation/file_io.h"
#include "foundation/file_replacement.h"
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

/// Empty when there is no file. One that cannot be read is not taken for empty: the user's settings are in
/// it.
std::string ReadSettings(const std::wstring& path) {
  std::string bytes;
  if (ReadWholeFile(path, bytes) == FileRead::kFailed)
    throw std::runtime_error("the settings file cannot be read");
  return bytes;
}

}  // namespace

void WriteServiceAddress(const ServiceAddress& service) {
  // Another host may start at this moment. An add-in that reads is not disturbed when nothing changes.
  const NamedLock turn(L"Local\\QuorvantisDevhostSettings", std::chrono::seconds(10));
  const std::wstring path = SettingsPath();
  const std::string before = ReadSettings(path);
  Json settings = Json::parse(before, nullptr, false);
  if (!settings.is_object()) settings = Json::object();
  settings["serviceHost"] = service.host;
  settings["servicePort"] = service.port;
  settings["serviceScheme"] = service.scheme;
  const std::string text = settings.dump(2) + "\n";
  if (text == before) return;
  if (!WriteFileAtomically(path, text)) throw std::runtime_error("the settings file cannot be written");
}

}  // namespace qv::devhost
