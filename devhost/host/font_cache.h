#pragma once

#include <map>
#include <tuple>

#include "engines/grid_snapshot.h"
#include "host/drawing_scopes.h"

namespace qv::devhost {

/// Fonts of a view, made on first use for its DPI.
class FontCache {
 public:
  explicit FontCache(int dpi) : dpi_(dpi) {}

  [[nodiscard]] int Dpi() const { return dpi_; }
  /// Borrowed, lives as long as the cache. The font's color plays no part.
  [[nodiscard]] HFONT Get(const GridFont& font);

 private:
  using Key = std::tuple<std::wstring, double, bool, bool, bool, bool>;

  int dpi_;
  std::map<Key, UniqueFont> fonts_;
};

}  // namespace qv::devhost
