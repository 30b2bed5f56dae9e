#include "host/selection_paint.h"

#include <algorithm>

#include "host/drawing_scopes.h"

namespace qv::devhost {
namespace {

constexpr COLORREF kShade = RGB(0, 0, 0);
/// Of 255.
constexpr BYTE kShadeStrength = 26;

/// The active cell with all that it is merged with, as far as the pane's area reaches.
GridArea ActiveCell(const GridSnapshot& grid) {
  GridArea cell{grid.selection.front().firstRow, grid.selection.front().firstColumn, 1, 1};
  for (const GridCell& each : grid.cells) {
    if (each.row == cell.firstRow && each.column == cell.firstColumn) {
      cell.rows = each.rows;
      cell.columns = each.columns;
    }
  }
  return cell;
}

void Shade(HDC dc, const RECT& rect) {
  const UniqueMemoryDc source(CreateCompatibleDC(dc));
  const UniqueBitmap pixel(CreateCompatibleBitmap(dc, 1, 1));
  const Selected selected(source.Get(), pixel.Get());
  SetPixel(source.Get(), 0, 0, kShade);
  AlphaBlend(dc, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, source.Get(), 0, 0, 1,
             1, {AC_SRC_OVER, 0, kShadeStrength, 0});
}

void ShadeAround(HDC dc, const GridPane& pane, const RECT& area, const RECT& active) {
  RECT visible{};
  if (!IntersectRect(&visible, &area, &pane.clip)) return;
  const int saved = SaveDC(dc);
  ExcludeClipRect(dc, active.left, active.top, active.right, active.bottom);
  Shade(dc, visible);
  RestoreDC(dc, saved);
}

void Frame(HDC dc, const RECT& rect, int thickness) {
  const int outer = (thickness + 1) / 2;
  const RECT around{rect.left - outer, rect.top - outer, rect.right + thickness - outer,
                    rect.bottom + thickness - outer};
  Fill(dc, {around.left, around.top, around.right, around.top + thickness}, theme::kAccent);
  Fill(dc, {around.left, around.bottom - thickness, around.right, around.bottom}, theme::kAccent);
  Fill(dc, {around.left, around.top, around.left + thickness, around.bottom}, theme::kAccent);
  Fill(dc, {around.right - thickness, around.top, around.right, around.bottom}, theme::kAccent);
}

void FillHandle(HDC dc, const RECT& rect, int size) {
  const RECT handle{rect.right - size / 2 - 1, rect.bottom - size / 2 - 1, rect.right + size / 2,
                    rect.bottom + size / 2};
  Fill(dc, {handle.left - 1, handle.top - 1, handle.right + 1, handle.bottom + 1}, RGB(255, 255, 255));
  Fill(dc, handle, theme::kAccent);
}

}  // namespace

void PaintSelection(HDC dc, const GridPane& pane, int dpi) {
  if (pane.grid.selection.empty()) return;
  const GridArea active = ActiveCell(pane.grid);
  const int thickness = std::max(1, MulDiv(2, dpi, USER_DEFAULT_SCREEN_DPI));
  for (const GridArea& area : pane.grid.selection) {
    const RECT rect = pane.RectOf(area);
    const bool isActiveOnly = area.rows == active.rows && area.columns == active.columns;
    if (!isActiveOnly) ShadeAround(dc, pane, rect, pane.RectOf(active));
    const bool isSeen = rect.right > rect.left && rect.bottom > rect.top;
    if (!isSeen) continue;
    // The frame lies on the grid's lines.
    Frame(dc, {rect.left, rect.top, rect.right - 1, rect.bottom - 1}, thickness);
    if (pane.grid.selection.size() == 1) FillHandle(dc, rect, MulDiv(5, dpi, USER_DEFAULT_SCREEN_DPI));
  }
}

}  // namespace qv::devhost
