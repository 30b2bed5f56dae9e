#include "host/grid_paint.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cwchar>
#include <set>
#include <utility>

#include "host/cell_text.h"
#include "host/selection_paint.h"

namespace qv::devhost {
namespace {

constexpr COLORREF kShapeFrame = RGB(0xBF, 0xBF, 0xBF);
/// Points between a cell's edge and its text.
constexpr double kPadding = 2.0;

/// Formats rarely ask for more decimals than this; no number has more than the other.
constexpr std::size_t kMostFixedDecimals = 6;
constexpr std::size_t kMostDecimals = 17;

using Position = std::pair<int, int>;

class PanePainter {
 public:
  PanePainter(HDC dc, FontCache& fonts, const GridPane& pane)
      : dc_(dc), fonts_(fonts), pane_(pane), padding_(PixelsOf(kPadding, fonts.Dpi())) {
    for (const GridCell& cell : pane.grid.cells) {
      for (int row = cell.row; row < cell.row + cell.rows; ++row) {
        for (int column = cell.column; column < cell.column + cell.columns; ++column)
          if (!cell.text.empty() || cell.rows * cell.columns > 1) taken_.insert({row, column});
      }
    }
  }

  void Paint() {
    const Clipped clipped(dc_, pane_.clip);
    Fill(dc_, pane_.clip, theme::kSurface);
    PaintGridLines();
    for (const GridCell& cell : pane_.grid.cells)
      PaintGround(cell);
    for (const GridCell& cell : pane_.grid.cells)
      PaintBorders(cell);
    for (const GridCell& cell : pane_.grid.cells)
      PaintText(cell);
    for (const GridShape& shape : pane_.grid.shapes)
      PaintShape(shape);
    PaintSelection(dc_, pane_, fonts_.Dpi());
  }

 private:
  [[nodiscard]] const GridStyle& StyleOf(const GridCell& cell) const {
    return pane_.grid.styles.at(cell.style);
  }

  [[nodiscard]] RECT Inside(const GridCell& cell) const {
    // The line at the right and below belongs to the grid.
    RECT rect = pane_.RectOf(cell, fonts_.Dpi());
    --rect.right;
    --rect.bottom;
    return rect;
  }

  void PaintGridLines() {
    for (const int x : pane_.columnEdges)
      Fill(dc_, {x - 1, pane_.clip.top, x, pane_.rowEdges.back()}, theme::kLine);
    for (const int y : pane_.rowEdges)
      Fill(dc_, {pane_.clip.left, y - 1, pane_.columnEdges.back(), y}, theme::kLine);
  }

  void PaintGround(const GridCell& cell) {
    const auto& fill = StyleOf(cell).fill;
    RECT rect = pane_.RectOf(cell, fonts_.Dpi());
    if (rect.right <= rect.left || rect.bottom <= rect.top) return;
    if (fill) {
      // A fill covers the lines around the cell.
      Fill(dc_, {rect.left - 1, rect.top - 1, rect.right, rect.bottom}, *fill);
    } else if (cell.rows * cell.columns > 1) {
      Fill(dc_, Inside(cell), theme::kSurface);
    }
  }

  void PaintBorders(const GridCell& cell) {
    const GridStyle& style = StyleOf(cell);
    const RECT rect = pane_.RectOf(cell, fonts_.Dpi());
    if (rect.right <= rect.left || rect.bottom <= rect.top) return;
    const auto thickness = [&](const GridBorder& border) {
      return border.width > 0 ? std::max(1, PixelsOf(border.width, fonts_.Dpi())) : 0;
    };
    // Lines are centered on the edge between two cells, which is the last pixel of the first of them.
    const auto before = [&](const GridBorder& border) { return (thickness(border) + 1) / 2; };
    const auto after = [&](const GridBorder& border) { return thickness(border) / 2; };
    Fill(dc_, {rect.left - before(style.left), rect.top - 1, rect.left + after(style.left), rect.bottom},
         style.left.color);
    Fill(dc_, {rect.left - 1, rect.top - before(style.top), rect.right, rect.top + after(style.top)},
         style.top.color);
    Fill(dc_, {rect.right - before(style.right), rect.top - 1, rect.right + after(style.right), rect.bottom},
         style.right.color);
    Fill(dc_,
         {rect.left - 1, rect.bottom - before(style.bottom), rect.right, rect.bottom + after(style.bottom)},
         style.bottom.color);
  }

  [[nodiscard]] static GridHorizontal AlignmentOf(const GridCell& cell, const GridStyle& style) {
    if (style.horizontal != GridHorizontal::kGeneral) return style.horizontal;
    return cell.content == GridContent::kNumber    ? GridHorizontal::kRight
           : cell.content == GridContent::kLogical ? GridHorizontal::kCenter
                                                   : GridHorizontal::kLeft;
  }

  void PaintText(const GridCell& cell) {
    if (cell.text.empty()) return;
    const GridStyle& style = StyleOf(cell);
    RECT room = Inside(cell);
    room.left += padding_;
    room.right -= padding_;
    if (room.right <= room.left || room.bottom <= room.top) return;
    const bool wraps = style.wrap && cell.content == GridContent::kText;
    CellText text(dc_, fonts_, cell, style.font, wraps ? room.right - room.left : 0);
    text.TightenTo(room.bottom - room.top);
    const GridHorizontal alignment = AlignmentOf(cell, style);
    const int missing = text.Width() - (room.right - room.left);
    if (missing > 0 && cell.content == GridContent::kNumber) {
      PaintLongNumber(cell, room);
      return;
    }
    const int left = room.left - (alignment == GridHorizontal::kRight    ? missing
                                  : alignment == GridHorizontal::kCenter ? missing / 2
                                                                         : 0);
    RECT clip = Inside(cell);
    if (missing > 0 && !wraps && cell.content == GridContent::kText && cell.rows * cell.columns == 1) {
      RunOver(cell, left, left + text.Width(), clip);
    }
    const Clipped clipped(dc_, clip);
    text.Draw(left, TopOf(text, style, room), alignment);
  }

  [[nodiscard]] static int TopOf(const CellText& text, const GridStyle& style, const RECT& room) {
    const int low = room.bottom - text.Height();
    if (style.vertical == GridVertical::kTop) return room.top;
    return style.vertical == GridVertical::kCenter ? (room.top + low) / 2 : low;
  }

  /// With as many decimals as fit, if it has that many that its format is the general one.
  void PaintLongNumber(GridCell number, const RECT& room) {
    const std::size_t point = number.text.find(L'.');
    const std::size_t decimals = point == std::wstring::npos ? 0 : number.text.size() - point - 1;
    if (decimals <= kMostFixedDecimals) return PaintHashes(room, StyleOf(number));
    const double value = std::wcstod(number.text.c_str(), nullptr);
    for (std::size_t places = std::min(decimals, kMostDecimals); places-- > 0;) {
      std::array<char, 64> digits{};
      const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                     std::chars_format::fixed, static_cast<int>(places));
      number.text.assign(digits.data(), end.ptr);
      const CellText text(dc_, fonts_, number, StyleOf(number).font, 0);
      if (text.Width() > room.right - room.left) continue;
      text.Draw(room.right - text.Width(), TopOf(text, StyleOf(number), room), GridHorizontal::kRight);
      return;
    }
    PaintHashes(room, StyleOf(number));
  }

  /// A number that does not fit is not shown in part.
  void PaintHashes(const RECT& room, const GridStyle& style) {
    GridCell hash;
    hash.text = L"#";
    const CellText one(dc_, fonts_, hash, style.font, 0);
    const int count = std::max(1, static_cast<int>(room.right - room.left) / std::max(1, one.Width()));
    hash.text.assign(static_cast<std::size_t>(count), L'#');
    const CellText text(dc_, fonts_, hash, style.font, 0);
    const Clipped clipped(dc_, room);
    text.Draw(room.left, TopOf(text, style, room), GridHorizontal::kLeft);
  }

  /// Widens the clip over the empty neighbours that a text from `left` to `right` reaches, and takes away the
  /// lines between them.
  void RunOver(const GridCell& cell, int left, int right, RECT& clip) {
    const auto isFree = [&](int column) {
      return column >= pane_.grid.area.firstColumn &&
             column < pane_.grid.area.firstColumn + pane_.grid.area.columns &&
             !taken_.contains({cell.row, column});
    };
    for (int column = cell.column + 1; clip.right < right && isFree(column); ++column) {
      const RECT next = pane_.RectOf(GridArea{cell.row, column, 1, 1});
      EraseLine(clip.right, next, cell.row, column);
      clip.right = next.right - 1;
    }
    for (int column = cell.column - 1; clip.left > left && isFree(column); --column) {
      const RECT next = pane_.RectOf(GridArea{cell.row, column, 1, 1});
      EraseLine(next.right - 1, next, cell.row, column);
      clip.left = next.left;
    }
  }

  void EraseLine(int x, const RECT& neighbour, int row, int column) {
    if (neighbour.right == neighbour.left) return;
    const auto at = std::find_if(pane_.grid.cells.begin(), pane_.grid.cells.end(), [&](const GridCell& cell) {
      return cell.row == row && cell.column == column;
    });
    // A neighbour that is there has a fill or borders, which stay.
    if (at == pane_.grid.cells.end()) {
      Fill(dc_, {x, neighbour.top, x + 1, neighbour.bottom - 1}, theme::kSurface);
    }
  }

  void PaintShape(const GridShape& shape) {
    const int dpi = fonts_.Dpi();
    const int x = pane_.columnEdges.front() + PixelsOf(shape.left, dpi);
    const int y = pane_.rowEdges.front() + PixelsOf(shape.top, dpi);
    const RECT rect{x, y, x + PixelsOf(shape.width, dpi), y + PixelsOf(shape.height, dpi)};
    Fill(dc_, rect, kShapeFrame);
    Fill(dc_, {rect.left + 1, rect.top + 1, rect.right - 1, rect.bottom - 1}, theme::kSurface);
    GridCell title;
    title.text = shape.title;
    GridFont font;
    font.size = shape.isChart ? 14 : 10;
    font.color = theme::kQuietText;
    const Clipped clipped(dc_, rect);
    const CellText text(dc_, fonts_, title, font, std::max(1L, rect.right - rect.left - 2 * padding_));
    text.Draw(rect.left + (rect.right - rect.left - text.Width()) / 2, rect.top + 4 * padding_,
              GridHorizontal::kCenter);
  }

  HDC dc_;
  FontCache& fonts_;
  const GridPane& pane_;
  int padding_;
  /// Cells over which no text runs.
  std::set<Position> taken_;
};

}  // namespace

void PaintPane(HDC dc, FontCache& fonts, const GridPane& pane) {
  if (pane.rowEdges.empty() || pane.columnEdges.empty()) return;
  PanePainter(dc, fonts, pane).Paint();
}

}  // namespace qv::devhost
