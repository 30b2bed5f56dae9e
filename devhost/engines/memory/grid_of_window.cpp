#include "engines/memory/grid_of_window.h"

#include <algorithm>
#include <map>
#include <utility>

#include "engines/memory/font_object.h"

namespace qv::devhost::memory {
namespace {

constexpr long kVisible = -1;

GridFont FontOf(const FontStyle& font) {
  return {font.name,
          font.size,
          font.bold,
          font.italic,
          font.underline != kNone,
          font.strikethrough,
          font.automaticColor ? 0 : static_cast<COLORREF>(font.color)};
}

GridHorizontal HorizontalOf(long alignment) {
  static const std::map<long, GridHorizontal> kAlignments = {{-4131, GridHorizontal::kLeft},
                                                             {-4108, GridHorizontal::kCenter},
                                                             {7, GridHorizontal::kCenter},
                                                             {-4152, GridHorizontal::kRight},
                                                             {-4130, GridHorizontal::kJustify}};
  const auto found = kAlignments.find(alignment);
  return found == kAlignments.end() ? GridHorizontal::kGeneral : found->second;
}

GridVertical VerticalOf(long alignment) {
  static const std::map<long, GridVertical> kAlignments = {
      {-4160, GridVertical::kTop}, {-4130, GridVertical::kTop}, {-4108, GridVertical::kCenter}};
  const auto found = kAlignments.find(alignment);
  return found == kAlignments.end() ? GridVertical::kBottom : found->second;
}

GridStyle StyleOf(const CellStyle& style) {
  GridStyle result;
  result.font = FontOf(style.font);
  if (style.fillPattern != kNone) result.fill = static_cast<COLORREF>(style.fillColor);
  result.horizontal = HorizontalOf(style.horizontalAlignment);
  result.vertical = VerticalOf(style.verticalAlignment);
  result.wrap = style.wrap;
  return result;
}

GridContent ContentOf(const CellValue& value) {
  if (std::holds_alternative<double>(value)) return GridContent::kNumber;
  const bool isText = std::holds_alternative<std::wstring>(value) || value.index() == 0;
  return isText ? GridContent::kText : GridContent::kLogical;
}

std::vector<GridRun> RunsOfText(const Cell& cell, size_t length) {
  std::vector<GridRun> runs;
  for (size_t i = 0; i < cell.runs.size(); ++i) {
    const size_t start = cell.runs[i].start;
    const size_t end = i + 1 < cell.runs.size() ? cell.runs[i + 1].start : length;
    if (start < end) {
      runs.push_back({static_cast<int>(start), static_cast<int>(end - start), FontOf(cell.runs[i].font)});
    }
  }
  return runs;
}

/// Fills one snapshot.
class Picture {
 public:
  Picture(const Sheet& sheet, const Area& area) : sheet_(sheet), area_(area) {}

  void AddLines(GridSnapshot& grid) const {
    for (long row = area_.row1; row <= area_.row2; ++row)
      grid.rowHeights.push_back(sheet_.RowHeight(row));
    for (long col = area_.col1; col <= area_.col2; ++col)
      grid.columnWidths.push_back(sheet_.ColumnPoints(col));
  }

  void AddCells(GridSnapshot& grid) {
    for (const Area& merge : sheet_.Merges()) {
      if (Intersect(merge, area_)) AddMerge(grid, merge);
    }
    sheet_.ForEach(area_, [&](long row, long col, const Cell& cell) {
      const bool shows = cell.HasContent() || cell.Style().fillPattern != kNone;
      if (shows && !sheet_.MergeAt(row, col)) Add(grid, row, col, cell);
      return true;
    });
    std::ranges::sort(grid.cells, {}, [](const GridCell& cell) { return std::pair(cell.row, cell.column); });
  }

  void AddFloating(GridSnapshot& grid) const {
    const double left = sheet_.WidthOf({1, 1, 1, area_.col1 - 1});
    const double top = sheet_.HeightOf({1, 1, area_.row1 - 1, 1});
    for (const auto& object : sheet_.Floating()) {
      const auto* const chart = dynamic_cast<const Chart*>(object.get());
      grid.shapes.push_back({object->left - left, object->top - top, object->width, object->height,
                             chart != nullptr, chart != nullptr ? chart->title : object->name});
      while (grid.usedColumns < kMaxColumn &&
             sheet_.WidthOf({1, 1, 1, grid.usedColumns}) < object->left + object->width)
        ++grid.usedColumns;
      while (grid.usedRows < kMaxRow &&
             sheet_.HeightOf({1, 1, grid.usedRows, 1}) < object->top + object->height)
        ++grid.usedRows;
    }
  }

 private:
  GridCell& Add(GridSnapshot& grid, long row, long col, const Cell& cell) {
    GridCell& added = grid.cells.emplace_back();
    added.row = static_cast<int>(row);
    added.column = static_cast<int>(col);
    added.text = DisplayText(cell.value, cell.Style().numberFormat);
    added.content = ContentOf(cell.value);
    added.style = IndexOf(grid, cell);
    added.runs = RunsOfText(cell, added.text.size());
    return added;
  }

  void AddMerge(GridSnapshot& grid, const Area& merge) {
    const Cell* first = sheet_.Find(merge.row1, merge.col1);
    GridCell& cell = Add(grid, merge.row1, merge.col1, first == nullptr ? Cell{} : *first);
    cell.rows = static_cast<int>(merge.Rows());
    cell.columns = static_cast<int>(merge.Columns());
    // An area that ends before it begins has no extent.
    cell.outside.left = sheet_.WidthOf({1, merge.col1, 1, area_.col1 - 1});
    cell.outside.right = sheet_.WidthOf({1, area_.col2 + 1, 1, merge.col2});
    if (merge.row1 < area_.row1) cell.outside.top = sheet_.HeightOf({merge.row1, 1, area_.row1 - 1, 1});
    if (merge.row2 > area_.row2) cell.outside.bottom = sheet_.HeightOf({area_.row2 + 1, 1, merge.row2, 1});
  }

  /// The style's place in the snapshot; cells mostly share their styles.
  std::size_t IndexOf(GridSnapshot& grid, const Cell& cell) {
    const auto [at, added] = styles_.try_emplace(cell.style.get(), grid.styles.size());
    if (added) grid.styles.push_back(StyleOf(cell.Style()));
    return at->second;
  }

  const Sheet& sheet_;
  Area area_;
  std::map<const CellStyle*, std::size_t> styles_;
};

void AddTabs(const Window& window, GridSnapshot& grid) {
  const auto workbook = window.workbook.lock();
  if (workbook == nullptr) return;
  for (const auto& sheet : workbook->sheets) {
    if (sheet->visible != kVisible) continue;
    if (sheet == window.activeSheet) grid.activeSheet = grid.sheets.size();
    grid.sheets.push_back(sheet->name);
  }
}

void AddView(SheetView& view, GridSnapshot& grid) {
  grid.scrollRow = static_cast<int>(view.scrollRow);
  grid.scrollColumn = static_cast<int>(view.scrollColumn);
  if (view.frozen) {
    grid.frozenRows = static_cast<int>(view.splitRow);
    grid.frozenColumns = static_cast<int>(view.splitColumn);
  }
  if (view.selectedChart != nullptr && !view.selectedChart->deleted) return;
  for (const Area& area : view.selection) {
    grid.selection.push_back({static_cast<int>(area.row1), static_cast<int>(area.col1),
                              static_cast<int>(area.Rows()), static_cast<int>(area.Columns())});
  }
}

}  // namespace

GridSnapshot GridOf(Window& window, const GridArea& area) {
  GridSnapshot grid;
  AddTabs(window, grid);
  if (window.activeSheet == nullptr) return grid;
  const Area wanted{area.firstRow, area.firstColumn, static_cast<long>(area.firstRow) + area.rows - 1,
                    static_cast<long>(area.firstColumn) + area.columns - 1};
  const auto cut = Intersect(wanted, kWholeSheet);
  if (!cut) return grid;
  grid.area = {static_cast<int>(cut->row1), static_cast<int>(cut->col1), static_cast<int>(cut->Rows()),
               static_cast<int>(cut->Columns())};
  const Sheet& sheet = *window.activeSheet;
  const Area used = sheet.UsedArea();
  grid.usedRows = static_cast<int>(used.row2);
  grid.usedColumns = static_cast<int>(used.col2);
  Picture picture(sheet, *cut);
  picture.AddLines(grid);
  picture.AddCells(grid);
  picture.AddFloating(grid);
  AddView(window.ViewOf(sheet), grid);
  return grid;
}

}  // namespace qv::devhost::memory
