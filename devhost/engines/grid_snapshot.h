#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace qv::devhost {

/// One document window. `id` stays the same while the window is open and is never given again.
struct WindowInfo {
  int id = 0;
  /// "Book.xlsx", or "Book.xlsx:2" where the workbook has several windows.
  std::wstring caption;
  /// Name of the workbook.
  std::wstring workbook;
  bool active = false;
};

/// A rectangle of cells; row and column are 1-based.
struct GridArea {
  int firstRow = 1;
  int firstColumn = 1;
  int rows = 0;
  int columns = 0;
  bool operator==(const GridArea&) const = default;
};

/// Colors are the host's numbers, 0xBBGGRR; sizes are points.
struct GridFont {
  std::wstring name = L"Calibri";
  double size = 11;
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikethrough = false;
  COLORREF color = 0;
  bool operator==(const GridFont&) const = default;
};

/// One edge of a cell; a width of 0 points is no line.
struct GridBorder {
  double width = 0;
  COLORREF color = 0;
  bool operator==(const GridBorder&) const = default;
};

enum class GridHorizontal { kGeneral, kLeft, kCenter, kRight, kJustify };
enum class GridVertical { kTop, kCenter, kBottom };

/// Everything about a cell but its content.
struct GridStyle {
  GridFont font;
  std::optional<COLORREF> fill;
  GridHorizontal horizontal = GridHorizontal::kGeneral;
  GridVertical vertical = GridVertical::kBottom;
  bool wrap = false;
  GridBorder left, top, right, bottom;
  bool operator==(const GridStyle&) const = default;
};

/// Part of a text in a font of its own: `length` UTF-16 units from the 0-based `start`.
struct GridRun {
  int start = 0;
  int length = 0;
  GridFont font;
  bool operator==(const GridRun&) const = default;
};

/// What the general alignment goes by: numbers stand right and never run over, booleans and errors in the
/// middle.
enum class GridContent { kText, kNumber, kLogical };

struct GridMargins {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
};

struct GridCell {
  int row = 0;
  int column = 0;
  /// More than 1 at the top-left cell of a merge; the cells that it covers are absent.
  int rows = 1;
  int columns = 1;
  /// Points of a merge that lie beyond each side of the area.
  GridMargins outside;
  /// As displayed, lines separated by "\n".
  std::wstring text;
  GridContent content = GridContent::kText;
  /// Index into `GridSnapshot::styles`.
  std::size_t style = 0;
  /// Empty when the style's font holds for the whole text; otherwise they cover it.
  std::vector<GridRun> runs;
};

/// A chart or picture that floats on the sheet; points from the top-left corner of the snapshot's area, so
/// that what begins above or left of it has a negative position.
struct GridShape {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
  bool isChart = false;
  /// The chart's title or the shape's name.
  std::wstring title;
};

/// What one window shows of its active sheet.
struct GridSnapshot {
  /// Names of the visible sheets, in order.
  std::vector<std::wstring> sheets;
  /// 0-based place of the active one among them.
  std::size_t activeSheet = 0;
  GridArea area;
  /// One for each column and row of the area, in points; 0 is hidden.
  std::vector<double> columnWidths;
  std::vector<double> rowHeights;
  std::vector<GridStyle> styles;
  /// Cells that show something, row by row. A merge that reaches into the area is there with its first cell
  /// even where that lies outside.
  std::vector<GridCell> cells;
  /// Selected areas, the one with the active cell first; the active cell is its top-left one. Empty while
  /// something else than cells is selected.
  std::vector<GridArea> selection;
  /// First row and column of the part that scrolls.
  int scrollRow = 1;
  int scrollColumn = 1;
  /// Rows and columns that stay in place above and left of it.
  int frozenRows = 0;
  int frozenColumns = 0;
  std::vector<GridShape> shapes;
  /// The last row and column that hold anything, shapes included; 1 in an empty sheet.
  int usedRows = 1;
  int usedColumns = 1;
};

}  // namespace qv::devhost
