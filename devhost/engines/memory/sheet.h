#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "engines/memory/a1.h"
#include "engines/memory/cell_style.h"
#include "engines/memory/cell_value.h"
#include "engines/memory/floating_object.h"

namespace qv::devhost::memory {

struct Workbook;

/// One cell that has content or a style of its own.
struct Cell {
  CellValue value;
  /// With the leading "="; empty for constants.
  std::wstring formula;
  bool prefixed = false;
  /// Null is the default style; shared between cells, never changed in place.
  std::shared_ptr<const CellStyle> style;
  /// Fonts of parts of a constant text; empty when the style's font holds for all of it. Otherwise the first
  /// run starts at 0 and neighbours differ.
  std::vector<FontRun> runs;

  [[nodiscard]] bool HasContent() const { return value.index() != 0 || !formula.empty(); }
  [[nodiscard]] const CellStyle& Style() const;
};

/// A chart that floats on a sheet.
struct Chart final : FloatingObject {
  bool hasTitle = false;
  std::wstring title;
  FontStyle titleFont;
  /// The host's chart type number; 51 is clustered columns.
  long type = 51;
  std::wstring source;
  /// What was pasted into it last; null for nothing.
  std::shared_ptr<const PictureData> pasted;
};

/// Cells of one worksheet in an ordered map, row by row, and what belongs to rows and columns. Single cells
/// and rectangles are reached in logarithmic time. Rows and columns are 1-based. Nothing here asks for
/// protection: that is the object model's rule, not the grid's.
class Sheet {
 public:
  explicit Sheet(std::wstring sheetName) : name(std::move(sheetName)) {}

  static constexpr double kDefaultRowHeight = 15;
  static constexpr double kMaxRowHeight = 409;
  static constexpr double kDefaultColumnWidth = 8.43;
  static constexpr double kMaxColumnWidth = 255;

  std::wstring name;
  /// The host's numbers: -1 visible, 0 hidden, 2 very hidden.
  long visible = -1;
  bool isProtected = false;
  bool deleted = false;
  std::weak_ptr<Workbook> workbook;
  std::vector<std::shared_ptr<Chart>> charts;
  /// Everything else that floats, groups with what is in them.
  std::vector<std::shared_ptr<Shape>> shapes;
  /// Rows and columns above and left of the split of a new window on this sheet.
  long frozenRows = 0;
  long frozenColumns = 0;

  /// Null for a cell that has neither content nor style.
  [[nodiscard]] const Cell* Find(long row, long col) const;
  /// Charts and shapes from the one behind all others on, as the host numbers them.
  [[nodiscard]] std::vector<std::shared_ptr<FloatingObject>> Floating() const;
  /// The depth of something new, which lies above all others.
  [[nodiscard]] long TopDepth() const;
  /// Takes a chart or a shape, also one inside a group, off the sheet.
  void Remove(FloatingObject& object);

  [[nodiscard]] const CellStyle& StyleAt(long row, long col) const;

  /// Replaces the content; styled text parts go, the style stays (with the entry's number format in a General
  /// cell). A covered cell of a merge area takes nothing.
  void SetEntry(long row, long col, const Entry& entry);
  /// The result of a formula cell, as a calculation would leave it.
  void SetResult(long row, long col, CellValue value);
  void SetRuns(long row, long col, std::vector<FontRun> runs);
  void ClearContents(const Area& area);
  /// Contents of a block, written again from `targetRow` on in the same columns.
  void CopyContents(const Area& source, long targetRow);

  /// Whole rows or columns go, and what follows moves up: cells, merges, sizes, hidden lines, charts.
  void DeleteLines(bool rows, long first, long count);
  /// Empty rows or columns come in before `first`; a merge around it grows. False, and nothing changes, where
  /// that would push what is in use over the sheet's edge.
  [[nodiscard]] bool InsertLines(bool rows, long first, long count);

  /// Calls `change(CellStyle&)` for every cell of the area, creating those that are missing; of whole rows
  /// and columns only the part within the used area.
  template <typename Change>
  void ChangeStyle(const Area& area, Change&& change);

  /// Calls `visit(row, col, cell)` for the existing cells of the area row by row; stops when it gives false.
  template <typename Visit>
  void ForEach(const Area& area, Visit&& visit) const;

  /// From the first to the last row and column that hold content, style or merges; A1 for an empty sheet.
  [[nodiscard]] Area UsedArea() const;
  /// Number of existing cells within the area.
  [[nodiscard]] long long CountExisting(const Area& area) const;
  /// Formula cells within the area; counts up to `limit` only.
  [[nodiscard]] long long CountFormulas(const Area& area, long long limit) const;
  [[nodiscard]] bool HasFormula(long row, long col) const { return formulas_.contains(Key(row, col)); }

  /// The merge area around the cell, or nothing.
  [[nodiscard]] std::optional<Area> MergeAt(long row, long col) const;
  /// Joins the area, dropping contents of all but the first cell; merges inside it are absorbed. False for a
  /// merge of more than a million cells, which this model does not keep.
  [[nodiscard]] bool Merge(const Area& area);
  /// Splits every merge that touches the area.
  void UnMerge(const Area& area);
  /// Cells of the area that belong to merges.
  [[nodiscard]] long long CountMerged(const Area& area) const;
  [[nodiscard]] std::vector<Area> Merges() const;

  [[nodiscard]] double RowHeight(long row) const;
  void SetRowHeight(long row, double points);
  /// Gives the row the height of its content: the default line height times size / 11 for each line of the
  /// tallest unmerged cell; only wrapped cells have more than one line, one for each line feed and the first.
  void AutoFitRow(long row);
  /// In characters of the default font.
  [[nodiscard]] double ColumnWidth(long col) const;
  void SetColumnWidth(long col, double characters);
  void AutoFitColumn(long col);
  /// In points; 0 for a hidden column.
  [[nodiscard]] double ColumnPoints(long col) const;
  [[nodiscard]] double WidthOf(const Area& area) const;
  [[nodiscard]] double HeightOf(const Area& area) const;

  [[nodiscard]] bool IsRowHidden(long row) const { return hiddenRows_.contains(row); }
  void HideRow(long row, bool hide);
  [[nodiscard]] bool IsColumnHidden(long col) const { return hiddenColumns_.contains(col); }
  void HideColumn(long col, bool hide);
  [[nodiscard]] const std::map<long, double>& RowHeights() const { return rowHeights_; }
  [[nodiscard]] const std::map<long, double>& ColumnWidths() const { return columnWidths_; }

 private:
  /// Row in the upper, column in the lower 16 bits, so that the order is row by row.
  using CellKey = std::uint64_t;
  static CellKey Key(long row, long col) {
    return (static_cast<CellKey>(row) << 16) | static_cast<CellKey>(col);
  }
  static long RowOf(CellKey key) { return static_cast<long>(key >> 16); }
  static long ColumnOf(CellKey key) { return static_cast<long>(key & 0xFFFF); }

  /// Walks an ordered container of keys inside the area, jumping over what lies beside it.
  template <typename Container, typename Visit>
  static void Walk(Container& container, const Area& area, Visit&& visit);

  /// Points before a row or column.
  [[nodiscard]] double StartOf(bool rows, long line) const;
  void ShiftLines(bool rows, long first, long count);
  Cell& Touch(long row, long col);
  void DropIfEmpty(std::map<CellKey, Cell>::iterator cell);

  std::map<CellKey, Cell> cells_;
  std::set<CellKey> formulas_;
  /// Every cell of every merge area, with the area.
  std::map<CellKey, std::shared_ptr<const Area>> merged_;
  std::map<long, double> rowHeights_;
  std::map<long, double> columnWidths_;
  std::set<long> hiddenRows_;
  std::set<long> hiddenColumns_;
  /// Columns in use; grows with each new cell and is counted again after one was dropped.
  mutable long firstColumn_ = 0;
  mutable long lastColumn_ = 0;
  mutable bool columnsKnown_ = true;
};

template <typename Container, typename Visit>
void Sheet::Walk(Container& container, const Area& area, Visit&& visit) {
  const auto keyOf = [](const auto& element) -> CellKey {
    if constexpr (requires { element.first; }) {
      return element.first;
    } else {
      return element;
    }
  };
  auto at = container.lower_bound(Key(area.row1, area.col1));
  while (at != container.end()) {
    const long row = RowOf(keyOf(*at));
    const long col = ColumnOf(keyOf(*at));
    if (row > area.row2) return;
    if (col < area.col1) {
      at = container.lower_bound(Key(row, area.col1));
    } else if (col > area.col2) {
      at = container.lower_bound(Key(row + 1, area.col1));
    } else {
      const auto current = at++;
      if (!visit(row, col, current)) return;
    }
  }
}

template <typename Visit>
void Sheet::ForEach(const Area& area, Visit&& visit) const {
  Walk(cells_, area, [&](long row, long col, auto at) { return visit(row, col, at->second); });
}

template <typename Change>
void Sheet::ChangeStyle(const Area& area, Change&& change) {
  const bool whole = area.IsWholeRows() || area.IsWholeColumns();
  const auto part = whole ? Intersect(area, UsedArea()) : std::optional(area);
  if (!part) return;
  // Neighbours mostly share one style before and after.
  std::shared_ptr<const CellStyle> lastBefore;
  std::shared_ptr<const CellStyle> lastAfter;
  for (long row = part->row1; row <= part->row2; ++row) {
    for (long col = part->col1; col <= part->col2; ++col) {
      Cell& cell = Touch(row, col);
      if (lastAfter == nullptr || cell.style != lastBefore) {
        CellStyle style = cell.Style();
        change(style);
        lastBefore = cell.style;
        lastAfter = std::make_shared<const CellStyle>(std::move(style));
      }
      cell.style = lastAfter;
    }
  }
}

}  // namespace qv::devhost::memory
