#pragma once

#include "engines/engine.h"
#include "host/grid_geometry.h"
#include "host/header_paint.h"

namespace qv::devhost {

/// What a grid view shows: headers and one to four panes. The last pane is the one that scrolls; where rows
/// or columns are frozen, those above and beside it come first.
struct GridPicture {
  HeaderSizes headers{};
  std::vector<GridPane> panes;

  [[nodiscard]] const GridPane& Main() const { return panes.back(); }
  /// The pane under a point, or null for headers and beyond.
  [[nodiscard]] const GridPane* PaneAt(POINT point) const;
  /// First row and column of the main pane that are visible.
  [[nodiscard]] int FirstRow() const;
  [[nodiscard]] int FirstColumn() const;
  /// The main pane's cells that are visible in full.
  [[nodiscard]] GridArea FullyVisible() const;
};

/// Reads from the engine what has room in `size`, headers included. `hint` is where the window is probably
/// scrolled to; a wrong one costs one more call.
[[nodiscard]] GridPicture ReadPicture(Engine& engine, int window, SIZE size, int dpi, const GridArea& hint);

}  // namespace qv::devhost
