#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/font_cache.h"

namespace qv::devhost {

/// The strip of sheet tabs: two arrows that scroll it, then as many tabs as there is room for.
class SheetTabs {
 public:
  /// What lies under a point of the strip.
  struct Hit {
    /// 0-based sheet of a tab.
    std::optional<std::size_t> sheet;
    /// -1 and 1 for the arrows.
    int scroll = 0;
  };

  /// Names and the active one, in the strip's rectangle of the view. A newly active tab scrolls into view.
  void Arrange(HDC dc, FontCache& fonts, const std::vector<std::wstring>& names, std::size_t active,
               const RECT& strip);
  void Paint(HDC dc, FontCache& fonts) const;
  [[nodiscard]] Hit HitTest(POINT point) const;
  /// By one tab; whether there was anything left to scroll.
  bool Scroll(int direction);

 private:
  [[nodiscard]] RECT ArrowRect(int index) const;
  /// Left edge of the first tab.
  [[nodiscard]] int TabsLeft() const;
  [[nodiscard]] RECT TabRect(std::size_t index) const;
  [[nodiscard]] bool FitsFrom(std::size_t first, std::size_t last) const;

  std::vector<std::wstring> names_;
  std::vector<int> widths_;
  std::size_t active_ = 0;
  /// The leftmost tab that is shown.
  std::size_t first_ = 0;
  RECT strip_{};
};

}  // namespace qv::devhost
