#include "host/grid_picture.h"

#include <algorithm>
#include <numeric>

namespace qv::devhost {
namespace {

constexpr int kLastRow = 1048576;
constexpr int kLastColumn = 16384;
/// Columns read beyond the left edge: their texts may run into view, those of frozen columns too.
constexpr int kLead = 8;
/// Points of a low row and of a narrow column: more of them than fit are rarely needed.
constexpr double kLowRow = 13;
constexpr double kNarrowColumn = 45;

int Extent(const std::vector<double>& lengths, int dpi) {
  return std::accumulate(lengths.begin(), lengths.end(), 0,
                         [dpi](int sum, double points) { return sum + PixelsOf(points, dpi); });
}

/// A snapshot that begins at the cell (with the lead) and fills the room unless the sheet ends.
GridSnapshot ReadFilling(Engine& engine, int window, int row, int column, int lead, SIZE room, int dpi) {
  GridArea area{row, column - lead, room.cy / PixelsOf(kLowRow, dpi) + 2,
                room.cx / PixelsOf(kNarrowColumn, dpi) + 2 + lead};
  while (true) {
    GridSnapshot grid = engine.Grid(window, area);
    const std::vector<double> shown(grid.columnWidths.begin() + lead, grid.columnWidths.end());
    const bool highEnough = Extent(grid.rowHeights, dpi) >= room.cy || row + area.rows > kLastRow;
    const bool wideEnough = Extent(shown, dpi) >= room.cx || area.firstColumn + area.columns > kLastColumn;
    if (highEnough && wideEnough) return grid;
    // Many lines are hidden.
    if (!highEnough) area.rows *= 2;
    if (!wideEnough) area.columns *= 2;
  }
}

/// The main pane's snapshot, read again when the window turns out to be scrolled elsewhere.
GridSnapshot ReadMain(Engine& engine, int window, SIZE room, int dpi, int& row, int& column) {
  int lead = std::min(kLead, column - 1);
  GridSnapshot grid = ReadFilling(engine, window, row, column, lead, room, dpi);
  const int wantedRow = std::max(grid.scrollRow, grid.frozenRows + 1);
  const int wantedColumn = std::max(grid.scrollColumn, grid.frozenColumns + 1);
  if (wantedRow == row && wantedColumn == column) return grid;
  row = wantedRow;
  column = wantedColumn;
  lead = std::min(kLead, column - 1);
  return ReadFilling(engine, window, row, column, lead, room, dpi);
}

}  // namespace

const GridPane* GridPicture::PaneAt(POINT point) const {
  const auto found =
      std::ranges::find_if(panes, [&](const GridPane& pane) { return PtInRect(&pane.clip, point) != FALSE; });
  return found == panes.end() ? nullptr : &*found;
}

int GridPicture::FirstRow() const {
  return Main().RowAt(Main().clip.top).value_or(Main().grid.area.firstRow);
}

int GridPicture::FirstColumn() const {
  return Main().ColumnAt(Main().clip.left).value_or(Main().grid.area.firstColumn);
}

GridArea GridPicture::FullyVisible() const {
  return {FirstRow(), FirstColumn(), std::max(1, Main().LastFullRow() - FirstRow() + 1),
          std::max(1, Main().LastFullColumn() - FirstColumn() + 1)};
}

GridPicture ReadPicture(Engine& engine, int window, SIZE size, int dpi, const GridArea& hint) {
  int row = hint.firstRow;
  int column = hint.firstColumn;
  GridPicture picture;
  GridPane main;
  main.grid = ReadMain(engine, window, size, dpi, row, column);
  picture.headers = HeaderSizesFor(row + size.cy / PixelsOf(kLowRow, dpi), dpi);
  const int left = picture.headers.rowHeaderWidth;
  const int top = picture.headers.columnHeaderHeight;
  const GridArea& area = main.grid.area;
  const int frozenRows = main.grid.frozenRows;
  const int frozenColumns = main.grid.frozenColumns;
  const auto add = [&](const GridArea& cells) -> GridPane& {
    picture.panes.emplace_back().grid = engine.Grid(window, cells);
    return picture.panes.back();
  };
  int innerLeft = left;
  int innerTop = top;
  if (frozenRows > 0) {
    const GridPane& above = add({1, area.firstColumn, frozenRows, area.columns});
    innerTop += Extent(above.grid.rowHeights, dpi);
  }
  if (frozenColumns > 0) {
    const GridPane& beside = add({area.firstRow, 1, area.rows, frozenColumns});
    innerLeft += Extent(beside.grid.columnWidths, dpi);
  }
  if (frozenRows > 0) picture.panes.front().clip = {innerLeft, top, size.cx, innerTop};
  if (frozenColumns > 0) picture.panes.back().clip = {left, innerTop, innerLeft, size.cy};
  if (frozenRows > 0 && frozenColumns > 0) {
    add({1, 1, frozenRows, frozenColumns}).clip = {left, top, innerLeft, innerTop};
  }
  main.clip = {innerLeft, innerTop, size.cx, size.cy};
  picture.panes.push_back(std::move(main));
  for (GridPane& pane : picture.panes) {
    pane.Place(pane.clip.top < innerTop ? 1 : row, pane.clip.left < innerLeft ? 1 : column, dpi);
  }
  return picture;
}

}  // namespace qv::devhost
