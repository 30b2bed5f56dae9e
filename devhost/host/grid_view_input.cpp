#include <algorithm>
#include <array>

#include "host/grid_view.h"

namespace qv::devhost {
namespace {

constexpr int kLastRow = 1048576;
constexpr int kLastColumn = 16384;
constexpr int kRowsPerNotch = 3;

bool IsDown(int key) {
  return GetKeyState(key) < 0;
}

/// The smallest rectangle around both.
GridArea Around(const GridArea& one, const GridArea& other) {
  const int row = std::min(one.firstRow, other.firstRow);
  const int column = std::min(one.firstColumn, other.firstColumn);
  return {row, column, std::max(one.firstRow + one.rows, other.firstRow + other.rows) - row,
          std::max(one.firstColumn + one.columns, other.firstColumn + other.columns) - column};
}

bool Overlap(const GridArea& one, const GridCell& other) {
  return one.firstRow < other.row + other.rows && other.row < one.firstRow + one.rows &&
         one.firstColumn < other.column + other.columns && other.column < one.firstColumn + one.columns;
}

/// The area with every merge that it touches.
GridArea WithMerges(const GridPicture& picture, GridArea area) {
  for (bool grown = true; std::exchange(grown, false);) {
    for (const GridPane& pane : picture.panes) {
      for (const GridCell& cell : pane.grid.cells) {
        if (cell.rows * cell.columns == 1 || !Overlap(area, cell)) continue;
        const GridArea wider = Around(area, {cell.row, cell.column, cell.rows, cell.columns});
        grown = grown || wider != area;
        area = wider;
      }
    }
  }
  return area;
}

struct Move {
  UINT key;
  int rows;
  int columns;
};
constexpr std::array kMoves = {Move{VK_UP, -1, 0},   Move{VK_DOWN, 1, 0}, Move{VK_LEFT, 0, -1},
                               Move{VK_RIGHT, 0, 1}, Move{VK_TAB, 0, 1},  Move{VK_RETURN, 1, 0}};

}  // namespace

void GridView::ScrollTo(int row, int column) {
  if (!picture_) return;
  const GridSnapshot& grid = picture_->Main().grid;
  toldVisible_.firstRow = std::clamp(row, grid.frozenRows + 1, kLastRow);
  toldVisible_.firstColumn = std::clamp(column, grid.frozenColumns + 1, kLastColumn);
  engine_.ShowArea(windowId_, toldVisible_);
  Show();
}

void GridView::ScrollBy(int rows, int columns) {
  if (!picture_) return;
  const GridSnapshot& grid = picture_->Main().grid;
  const GridArea& seen = toldVisible_;
  // Not beyond what the last used cell needs to be seen.
  if (rows > 0 && seen.firstRow + seen.rows > grid.usedRows) rows = 0;
  if (columns > 0 && seen.firstColumn + seen.columns > grid.usedColumns) columns = 0;
  const int row = std::max(grid.frozenRows + 1, seen.firstRow + rows);
  const int column = std::max(grid.frozenColumns + 1, seen.firstColumn + columns);
  if (row != seen.firstRow || column != seen.firstColumn) ScrollTo(row, column);
}

void GridView::OnScrollBar(bool vertical, int action) {
  SCROLLINFO info{sizeof(info), SIF_ALL, 0, 0, 0, 0, 0};
  GetScrollInfo(vertical ? verticalBar_ : horizontalBar_, SB_CTL, &info);
  const int page = std::max(1, static_cast<int>(info.nPage));
  int steps = 0;
  switch (action) {
    case SB_LINEUP:
      steps = -1;
      break;
    case SB_LINEDOWN:
      steps = 1;
      break;
    case SB_PAGEUP:
      steps = -page;
      break;
    case SB_PAGEDOWN:
      steps = page;
      break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      steps = info.nTrackPos - info.nPos;
      break;
    default:
      return;
  }
  ScrollBy(vertical ? steps : 0, vertical ? 0 : steps);
}

void GridView::OnWheel(int delta, bool sideways) {
  wheelRest_ += delta;
  const int notches = wheelRest_ / WHEEL_DELTA;
  wheelRest_ -= notches * WHEEL_DELTA;
  if (notches == 0) return;
  ScrollBy(sideways ? 0 : -notches * kRowsPerNotch, sideways ? -notches : 0);
}

std::optional<GridArea> GridView::CellsAt(POINT point) const {
  const HeaderSizes& headers = picture_->headers;
  const bool inRows = point.x < headers.rowHeaderWidth;
  const bool inColumns = point.y < headers.columnHeaderHeight;
  if (inRows && inColumns) return GridArea{1, 1, kLastRow, kLastColumn};
  // A header stands for the line that begins beside it.
  const RECT& main = picture_->Main().clip;
  if (inRows) point.x = main.left;
  if (inColumns) point.y = main.top;
  const GridPane* pane = picture_->PaneAt(point);
  if (pane == nullptr) return std::nullopt;
  const auto row = pane->RowAt(point.y);
  const auto column = pane->ColumnAt(point.x);
  if (!row || !column) return std::nullopt;
  if (inRows) return GridArea{*row, 1, 1, kLastColumn};
  if (inColumns) return GridArea{1, *column, kLastRow, 1};
  return GridArea{*row, *column, 1, 1};
}

GridArea GridView::Selection() const {
  const GridArea area = Around(anchor_, target_);
  const bool isLines = area.rows == kLastRow || area.columns == kLastColumn;
  return picture_ && !isLines ? WithMerges(*picture_, area) : area;
}

void GridView::Preview() {
  for (GridPane& pane : picture_->panes)
    pane.grid.selection = {Selection()};
  InvalidateRect(window_, nullptr, FALSE);
}

void GridView::Select() {
  engine_.SelectCells(windowId_, Selection());
  Show();
}

void GridView::OnPress(POINT point, bool extends) {
  SetFocus(window_);
  if (!picture_) return;
  const RECT strip = TabStrip();
  if (PtInRect(&strip, point)) {
    OnTabStrip(point);
    return;
  }
  const auto cells = CellsAt(point);
  if (!cells) return;
  if (!extends) anchor_ = *cells;
  target_ = *cells;
  dragging_ = true;
  SetCapture(window_);
  Preview();
}

void GridView::OnDrag(POINT point) {
  if (!dragging_ || !picture_) return;
  const auto cells = CellsAt(point);
  if (!cells || *cells == target_) return;
  target_ = *cells;
  Preview();
}

void GridView::OnRelease() {
  if (!std::exchange(dragging_, false)) return;
  ReleaseCapture();
  Select();
}

void GridView::OnTabStrip(POINT point) {
  const SheetTabs::Hit hit = tabs_.HitTest(point);
  if (hit.scroll != 0 && tabs_.Scroll(hit.scroll)) InvalidateRect(window_, nullptr, FALSE);
  if (!hit.sheet) return;
  engine_.ActivateSheet(windowId_, picture_->Main().grid.sheets.at(*hit.sheet));
  Show();
}

void GridView::SwitchSheet(int direction) {
  const GridSnapshot& grid = picture_->Main().grid;
  const std::size_t next = grid.activeSheet + static_cast<std::size_t>(direction);
  if (next >= grid.sheets.size()) return;
  engine_.ActivateSheet(windowId_, grid.sheets[next]);
  Show();
}

void GridView::OnKey(UINT key) {
  if (!picture_ || dragging_) return;
  const bool shift = IsDown(VK_SHIFT);
  const bool control = IsDown(VK_CONTROL);
  const GridSnapshot& grid = picture_->Main().grid;
  const int page = std::max(1, toldVisible_.rows - 1);
  for (const Move& move : kMoves) {
    if (move.key != key) continue;
    const bool goesBack = shift && (key == VK_TAB || key == VK_RETURN);
    const bool extends = shift && !goesBack;
    MoveSelection(goesBack ? -move.rows : move.rows, goesBack ? -move.columns : move.columns, extends);
    return;
  }
  if (control && (key == VK_PRIOR || key == VK_NEXT)) {
    SwitchSheet(key == VK_PRIOR ? -1 : 1);
  } else if (key == VK_PRIOR || key == VK_NEXT) {
    MoveSelection(key == VK_PRIOR ? -page : page, 0, shift);
  } else if (key == VK_HOME) {
    MoveSelection(control ? -kLastRow : 0, -kLastColumn, shift);
  } else if (key == VK_END && control) {
    MoveSelection(grid.usedRows - target_.firstRow, grid.usedColumns - target_.firstColumn, shift);
  }
}

void GridView::MoveSelection(int rows, int columns, bool extends) {
  // From the far side of a merge, so that one step leaves it.
  const GridArea from = WithMerges(*picture_, {target_.firstRow, target_.firstColumn, 1, 1});
  const int row = rows > 0 ? from.firstRow + from.rows - 1 : from.firstRow;
  const int column = columns > 0 ? from.firstColumn + from.columns - 1 : from.firstColumn;
  target_ = {std::clamp(row + rows, 1, kLastRow), std::clamp(column + columns, 1, kLastColumn), 1, 1};
  if (!extends) anchor_ = target_;
  Select();
  BringIntoView(target_);
}

void GridView::BringIntoView(const GridArea& cell) {
  const GridSnapshot& grid = picture_->Main().grid;
  const GridArea& seen = toldVisible_;
  const auto nearest = [](int line, int frozen, int first, int count) {
    if (line <= frozen || (line >= first && line < first + count)) return first;
    return line < first ? line : line - count + 1;
  };
  const int row = nearest(cell.firstRow, grid.frozenRows, seen.firstRow, seen.rows);
  const int column = nearest(cell.firstColumn, grid.frozenColumns, seen.firstColumn, seen.columns);
  if (row != seen.firstRow || column != seen.firstColumn) ScrollTo(row, column);
}

}  // namespace qv::devhost
