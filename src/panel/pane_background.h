#pragma once

#include <windows.h>

namespace qv {

/// Ground of the pane until its page has painted.
inline constexpr COLORREF kPaneBackground = RGB(255, 255, 255);

/// A brush of that colour; it belongs to the system.
[[nodiscard]] inline HBRUSH PaneBackgroundBrush() {
  return static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
}

}  // namespace qv
