#include "host/header_paint.h"

#include <algorithm>
#include <string>

#include "host/drawing_scopes.h"

namespace qv::devhost {
namespace {

constexpr COLORREF kFrozenLine = RGB(0x80, 0x80, 0x80);

std::wstring ColumnName(int column) {
  constexpr int kLetters = 26;
  std::wstring name;
  for (; column > 0; column = (column - 1) / kLetters)
    name.insert(name.begin(), static_cast<wchar_t>(L'A' + (column - 1) % kLetters));
  return name;
}

bool IsSelected(const GridSnapshot& grid, int line, bool isRow) {
  return std::ranges::any_of(grid.selection, [&](const GridArea& area) {
    const int first = isRow ? area.firstRow : area.firstColumn;
    return line >= first && line < first + (isRow ? area.rows : area.columns);
  });
}

void PaintCell(HDC dc, FontCache& fonts, const RECT& rect, const std::wstring& text, bool isSelected,
               bool isRow) {
  Fill(dc, rect, theme::kLine);
  RECT inside = rect;
  --inside.right;
  --inside.bottom;
  Fill(dc, inside, isSelected ? theme::kPressed : theme::kBar);
  if (isSelected) {
    const int thickness = std::max(1, MulDiv(2, fonts.Dpi(), USER_DEFAULT_SCREEN_DPI));
    (isRow ? inside.left : inside.top) = isRow ? rect.right - thickness : rect.bottom - thickness;
    inside.right = rect.right;
    inside.bottom = rect.bottom;
    Fill(dc, inside, theme::kAccent);
  }
  DrawLabel(dc, text, rect, fonts.Get(GridFont()), isSelected ? theme::kAccent : theme::kText,
            DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

void PaintColumns(HDC dc, FontCache& fonts, const GridPane& pane, int height) {
  const Clipped clipped(dc, {pane.clip.left, 0, pane.clip.right, height});
  for (std::size_t i = 0; i + 1 < pane.columnEdges.size(); ++i) {
    const RECT rect{pane.columnEdges[i], 0, pane.columnEdges[i + 1], height};
    const int column = pane.grid.area.firstColumn + static_cast<int>(i);
    if (rect.right > rect.left) {
      PaintCell(dc, fonts, rect, ColumnName(column), IsSelected(pane.grid, column, false), false);
    }
  }
}

void PaintRows(HDC dc, FontCache& fonts, const GridPane& pane, int width) {
  const Clipped clipped(dc, {0, pane.clip.top, width, pane.clip.bottom});
  for (std::size_t i = 0; i + 1 < pane.rowEdges.size(); ++i) {
    const RECT rect{0, pane.rowEdges[i], width, pane.rowEdges[i + 1]};
    const int row = pane.grid.area.firstRow + static_cast<int>(i);
    if (rect.bottom > rect.top) {
      PaintCell(dc, fonts, rect, std::to_wstring(row), IsSelected(pane.grid, row, true), true);
    }
  }
}

}  // namespace

HeaderSizes HeaderSizesFor(int lastRow, int dpi) {
  // At least three digits, so that the headers mostly keep their width while scrolling.
  const int digits = std::max<int>(3, static_cast<int>(std::to_wstring(lastRow).size()));
  return {MulDiv(12 + 8 * digits, dpi, USER_DEFAULT_SCREEN_DPI), MulDiv(21, dpi, USER_DEFAULT_SCREEN_DPI)};
}

void PaintHeaders(HDC dc, FontCache& fonts, const std::vector<GridPane>& panes, const HeaderSizes& sizes,
                  SIZE size) {
  Fill(dc, {0, 0, size.cx, sizes.columnHeaderHeight}, theme::kBar);
  Fill(dc, {0, 0, sizes.rowHeaderWidth, size.cy}, theme::kBar);
  for (const GridPane& pane : panes) {
    PaintColumns(dc, fonts, pane, sizes.columnHeaderHeight);
    PaintRows(dc, fonts, pane, sizes.rowHeaderWidth);
  }
  PaintCell(dc, fonts, {0, 0, sizes.rowHeaderWidth, sizes.columnHeaderHeight}, L"", false, false);
  const RECT& scrolling = panes.back().clip;
  if (scrolling.top > sizes.columnHeaderHeight) {
    Fill(dc, {0, scrolling.top - 1, size.cx, scrolling.top}, kFrozenLine);
  }
  if (scrolling.left > sizes.rowHeaderWidth) {
    Fill(dc, {scrolling.left - 1, 0, scrolling.left, size.cy}, kFrozenLine);
  }
}

}  // namespace qv::devhost
