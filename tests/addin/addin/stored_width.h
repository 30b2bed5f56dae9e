#pragma once

#include <filesystem>
#include <optional>

namespace qv {

/// Puts the pane width of the user's settings file to this value, or away, and puts it away at the end.
class StoredWidth {
 public:
  StoredWidth() { Set(std::nullopt); }
  StoredWidth(const StoredWidth&) = delete;
  StoredWidth& operator=(const StoredWidth&) = delete;
  ~StoredWidth() { Set(std::nullopt); }

  [[nodiscard]] static std::filesystem::path SettingsFile();
  static void Set(std::optional<int> points);
  [[nodiscard]] static std::optional<int> Get();
};

}  // namespace qv
