#include "host/document_layout.h"

#include <algorithm>

namespace qv::devhost {
namespace {

// At 96 DPI.
constexpr int kSplitter = 5;
constexpr int kCaption = 30;
constexpr int kClose = 22;
constexpr int kCloseMargin = 6;
/// What panes always leave of the grid.
constexpr int kSmallestGrid = 160;
constexpr int kSmallestPane = 60;

int Width(const RECT& area) {
  return area.right - area.left;
}
int Height(const RECT& area) {
  return area.bottom - area.top;
}

/// Cuts the pane's place off the grid.
RECT Dock(RECT& grid, const PaneWish& wish, SIZE client, int dpi) {
  const int smallest = Scaled(kSmallestPane, dpi);
  const int wide = std::clamp(wish.width, smallest, std::max(smallest, static_cast<int>(client.cx / 2))) +
                   Scaled(kSplitter, dpi);
  const int high = std::clamp(wish.height, smallest, std::max(smallest, static_cast<int>(client.cy / 2))) +
                   Scaled(kCaption, dpi);
  const int width = std::clamp(Width(grid) - Scaled(kSmallestGrid, dpi), 0, wide);
  const int height = std::clamp(Height(grid) - Scaled(kSmallestGrid, dpi), 0, high);
  RECT place = grid;
  switch (wish.dock) {
    case PaneDock::kLeft:
      place.right = grid.left = grid.left + width;
      break;
    case PaneDock::kRight:
      place.left = grid.right = grid.right - width;
      break;
    case PaneDock::kTop:
      place.bottom = grid.top = grid.top + height;
      break;
    case PaneDock::kBottom:
      place.top = grid.bottom = grid.bottom - height;
      break;
    case PaneDock::kFloating:
      // Over the grid, away from its edges.
      InflateRect(&place, -Scaled(kCaption, dpi), -Scaled(kCaption, dpi));
      place.left = std::max(place.left, place.right - wide);
      place.bottom = std::min(place.bottom, place.top + high);
      break;
  }
  return place;
}

}  // namespace

DocumentLayout LayOutDocument(SIZE client, int ribbonHeight, int dpi, std::span<const PaneWish> panes) {
  DocumentLayout layout;
  const LONG top = std::min<LONG>(ribbonHeight, client.cy);
  layout.ribbon = {0, 0, client.cx, top};
  layout.grid = {0, top, client.cx, client.cy};
  for (const PaneWish& wish : panes) {
    RECT rest = layout.grid;
    layout.panes.push_back(Dock(wish.isVisible ? layout.grid : rest, wish, client, dpi));
  }
  return layout;
}

PaneLayout LayOutPane(SIZE outer, PaneDock dock, int dpi) {
  RECT inner{0, 0, outer.cx, outer.cy};
  RECT splitter{};
  if (HasOwnWidth(dock)) {
    splitter = inner;
    const int width = std::min<int>(Scaled(kSplitter, dpi), outer.cx);
    if (dock == PaneDock::kRight) {
      inner.left = splitter.right = width;
    } else {
      inner.right = splitter.left = outer.cx - width;
    }
  }
  RECT content = inner;
  RECT caption = inner;
  caption.bottom = content.top = std::min<LONG>(Scaled(kCaption, dpi), outer.cy);
  const int size = Scaled(kClose, dpi);
  const LONG top = (caption.bottom - size) / 2;
  const LONG right = caption.right - Scaled(kCloseMargin, dpi);
  return {caption, {right - size, top, right, top + size}, content, splitter};
}

}  // namespace qv::devhost
