#pragma once

#include <windows.h>

#include <optional>
#include <vector>

#include "engines/grid_snapshot.h"

namespace qv::devhost {

[[nodiscard]] int PixelsOf(double points, int dpi);

/// Edges of neighbouring rows or columns in pixels, one more than there are lengths (in points). Line
/// `anchor` (0-based) begins at `position`; those before it lie to its left.
[[nodiscard]] std::vector<int> EdgesOf(const std::vector<double>& lengths, int dpi, std::size_t anchor,
                                       int position);

/// One part of a grid view, which shows one snapshot; four of them where panes are frozen. All pixels are
/// those of the view's client area.
struct GridPane {
  GridSnapshot grid;
  /// What is visible; the snapshot may reach beyond it on every side.
  RECT clip{};
  std::vector<int> columnEdges;
  std::vector<int> rowEdges;

  /// Sets the edges so that this cell, which the area holds, stands at the clip's corner.
  void Place(int row, int column, int dpi);
  /// 1-based row and column under a point of the clip, which an area need not reach.
  [[nodiscard]] std::optional<int> RowAt(int y) const;
  [[nodiscard]] std::optional<int> ColumnAt(int x) const;
  /// The part of the cells that the area holds; empty where they lie outside of it.
  [[nodiscard]] RECT RectOf(const GridArea& cells) const;
  /// A cell with all that it is merged with.
  [[nodiscard]] RECT RectOf(const GridCell& cell, int dpi) const;
  /// The last row and column that are visible in full, the first ones when none is.
  [[nodiscard]] int LastFullRow() const;
  [[nodiscard]] int LastFullColumn() const;
};

}  // namespace qv::devhost
