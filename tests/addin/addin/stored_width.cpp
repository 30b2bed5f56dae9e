#include "stored_width.h"

#include <shlobj.h>
#include <windows.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

namespace qv {
namespace {

constexpr char kKey[] = "paneWidthPt";

nlohmann::ordered_json Read() {
  std::ifstream file(StoredWidth::SettingsFile(), std::ios::binary);
  auto settings = nlohmann::ordered_json::parse(file, nullptr, false);
  return settings.is_object() ? settings : nlohmann::ordered_json::object();
}

}  // namespace

std::filesystem::path StoredWidth::SettingsFile() {
  std::array<wchar_t, MAX_PATH> folder{};
  SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, 0, folder.data());
  return std::filesystem::path(folder.data()) / "Quorvantis" / "config.json";
}

void StoredWidth::Set(std::optional<int> points) {
  auto settings = Read();
  settings.erase(kKey);
  if (points) settings[kKey] = *points;
  std::ofstream(SettingsFile(), std::ios::binary) << settings.dump(2) << "\n";
}

std::optional<int> StoredWidth::Get() {
  const auto settings = Read();
  if (!settings.contains(kKey)) return std::nullopt;
  return settings[kKey].get<int>();
}

}  // namespace qv
