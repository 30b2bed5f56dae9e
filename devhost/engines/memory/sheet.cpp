#include "engines/memory/sheet.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace qv::devhost::memory {
namespace {

constexpr long long kMaxMergeCells = 1'000'000;
constexpr double kDefaultFontSize = 11;
/// Pixels of a digit of the default font and of a cell's padding, and points of a pixel, at 96 dots an inch.
constexpr double kDigitPixels = 7;
constexpr double kPaddingPixels = 5;
constexpr double kPointsPerPixel = 0.75;

const CellStyle& DefaultStyle() {
  static const CellStyle style;
  return style;
}

double LineHeight(double fontSize) {
  return Sheet::kDefaultRowHeight * fontSize / kDefaultFontSize;
}

double TallestFont(const Cell& cell) {
  double size = cell.runs.empty() ? cell.Style().font.size : 0;
  for (const FontRun& run : cell.runs)
    size = std::max(size, run.font.size);
  return size;
}

}  // namespace

const CellStyle& Cell::Style() const {
  return style != nullptr ? *style : DefaultStyle();
}

const Cell* Sheet::Find(long row, long col) const {
  const auto found = cells_.find(Key(row, col));
  return found == cells_.end() ? nullptr : &found->second;
}

const CellStyle& Sheet::StyleAt(long row, long col) const {
  const Cell* cell = Find(row, col);
  return cell != nullptr ? cell->Style() : DefaultStyle();
}

Cell& Sheet::Touch(long row, long col) {
  if (columnsKnown_) {
    firstColumn_ = cells_.empty() ? col : std::min(firstColumn_, col);
    lastColumn_ = cells_.empty() ? col : std::max(lastColumn_, col);
  }
  return cells_[Key(row, col)];
}

void Sheet::DropIfEmpty(std::map<CellKey, Cell>::iterator cell) {
  if (cell->second.HasContent() || cell->second.style != nullptr) return;
  cells_.erase(cell);
  columnsKnown_ = false;
}

void Sheet::SetEntry(long row, long col, const Entry& entry) {
  const auto merge = MergeAt(row, col);
  if (merge && (merge->row1 != row || merge->col1 != col)) return;
  Cell& cell = Touch(row, col);
  cell.value = entry.value;
  cell.formula = entry.formula;
  cell.prefixed = entry.prefixed;
  cell.runs.clear();
  if (!entry.numberFormat.empty() && cell.Style().numberFormat == L"General") {
    auto style = std::make_shared<CellStyle>(cell.Style());
    style->numberFormat = entry.numberFormat;
    cell.style = std::move(style);
  }
  if (cell.formula.empty()) {
    formulas_.erase(Key(row, col));
  } else {
    formulas_.insert(Key(row, col));
  }
  DropIfEmpty(cells_.find(Key(row, col)));
}

void Sheet::SetResult(long row, long col, CellValue value) {
  if (HasFormula(row, col)) Touch(row, col).value = std::move(value);
}

void Sheet::SetRuns(long row, long col, std::vector<FontRun> runs) {
  Touch(row, col).runs = std::move(runs);
}

void Sheet::ClearContents(const Area& area) {
  std::vector<CellKey> keys;
  ForEach(area, [&](long row, long col, const Cell& cell) {
    if (cell.HasContent()) keys.push_back(Key(row, col));
    return true;
  });
  for (const CellKey key : keys)
    SetEntry(RowOf(key), ColumnOf(key), Entry{});
}

Area Sheet::UsedArea() const {
  if (!columnsKnown_) {
    firstColumn_ = kMaxColumn;
    lastColumn_ = 1;
    for (const auto& [key, cell] : cells_) {
      firstColumn_ = std::min(firstColumn_, ColumnOf(key));
      lastColumn_ = std::max(lastColumn_, ColumnOf(key));
    }
    columnsKnown_ = true;
  }
  std::optional<Area> used;
  if (!cells_.empty()) {
    used = Area{RowOf(cells_.begin()->first), firstColumn_, RowOf(cells_.rbegin()->first), lastColumn_};
  }
  for (const Area& merge : Merges()) {
    if (!used) used = merge;
    used = Area{std::min(used->row1, merge.row1), std::min(used->col1, merge.col1),
                std::max(used->row2, merge.row2), std::max(used->col2, merge.col2)};
  }
  return used.value_or(Area{});
}

long long Sheet::CountExisting(const Area& area) const {
  long long count = 0;
  ForEach(area, [&](long, long, const Cell&) {
    ++count;
    return true;
  });
  return count;
}

long long Sheet::CountFormulas(const Area& area, long long limit) const {
  long long count = 0;
  Walk(formulas_, area, [&](long, long, auto) { return ++count < limit; });
  return count;
}

std::optional<Area> Sheet::MergeAt(long row, long col) const {
  const auto found = merged_.find(Key(row, col));
  if (found == merged_.end()) return std::nullopt;
  return *found->second;
}

bool Sheet::Merge(const Area& area) {
  if (area.Cells() > kMaxMergeCells) return false;
  UnMerge(area);
  if (area.Cells() == 1) return true;
  const auto shared = std::make_shared<const Area>(area);
  for (long row = area.row1; row <= area.row2; ++row) {
    for (long col = area.col1; col <= area.col2; ++col) {
      if (row != area.row1 || col != area.col1) ClearContents(CellArea(row, col));
      merged_[Key(row, col)] = shared;
    }
  }
  return true;
}

void Sheet::UnMerge(const Area& area) {
  std::set<std::shared_ptr<const Area>> touched;
  Walk(merged_, area, [&](long, long, auto at) {
    touched.insert(at->second);
    return true;
  });
  for (const auto& merge : touched) {
    for (long row = merge->row1; row <= merge->row2; ++row) {
      for (long col = merge->col1; col <= merge->col2; ++col)
        merged_.erase(Key(row, col));
    }
  }
}

long long Sheet::CountMerged(const Area& area) const {
  long long count = 0;
  Walk(merged_, area, [&](long, long, auto) {
    ++count;
    return true;
  });
  return count;
}

std::vector<Area> Sheet::Merges() const {
  std::vector<Area> merges;
  for (const auto& [key, area] : merged_) {
    if (key == Key(area->row1, area->col1)) merges.push_back(*area);
  }
  return merges;
}

double Sheet::RowHeight(long row) const {
  if (IsRowHidden(row)) return 0;
  const auto found = rowHeights_.find(row);
  return found == rowHeights_.end() ? kDefaultRowHeight : found->second;
}

void Sheet::SetRowHeight(long row, double points) {
  HideRow(row, points == 0);
  if (points > 0) rowHeights_[row] = points;
}

void Sheet::AutoFitRow(long row) {
  double height = kDefaultRowHeight;
  ForEach(Area{row, 1, row, kMaxColumn}, [&](long, long col, const Cell& cell) {
    if (!cell.HasContent() || MergeAt(row, col)) return true;
    double lines = 1;
    if (cell.Style().wrap) {
      const std::wstring text = DisplayText(cell.value, cell.Style().numberFormat);
      lines += static_cast<double>(std::count(text.begin(), text.end(), L'\n'));
    }
    height = std::max(height, lines * LineHeight(TallestFont(cell)));
    return true;
  });
  rowHeights_[row] = std::min(height, kMaxRowHeight);
}

double Sheet::ColumnWidth(long col) const {
  if (IsColumnHidden(col)) return 0;
  const auto found = columnWidths_.find(col);
  return found == columnWidths_.end() ? kDefaultColumnWidth : found->second;
}

void Sheet::SetColumnWidth(long col, double characters) {
  HideColumn(col, characters == 0);
  if (characters > 0) columnWidths_[col] = characters;
}

void Sheet::AutoFitColumn(long col) {
  size_t longest = 0;
  ForEach(Area{1, col, kMaxRow, col}, [&](long row, long, const Cell& cell) {
    if (MergeAt(row, col)) return true;
    size_t line = 0;
    for (const wchar_t unit : DisplayText(cell.value, cell.Style().numberFormat)) {
      line = unit == L'\n' ? 0 : line + 1;
      longest = std::max(longest, line);
    }
    return true;
  });
  if (longest > 0) columnWidths_[col] = std::min(static_cast<double>(longest) + 1, kMaxColumnWidth);
}

double Sheet::ColumnPoints(long col) const {
  const double width = ColumnWidth(col);
  if (width == 0) return 0;
  return std::floor(width * kDigitPixels + kPaddingPixels) * kPointsPerPixel;
}

double Sheet::WidthOf(const Area& area) const {
  double width = 0;
  for (long col = area.col1; col <= area.col2; ++col)
    width += ColumnPoints(col);
  return width;
}

double Sheet::HeightOf(const Area& area) const {
  double height = static_cast<double>(area.Rows()) * kDefaultRowHeight;
  for (auto at = rowHeights_.lower_bound(area.row1); at != rowHeights_.end() && at->first <= area.row2;
       ++at) {
    height += at->second - kDefaultRowHeight;
  }
  for (auto at = hiddenRows_.lower_bound(area.row1); at != hiddenRows_.end() && *at <= area.row2; ++at) {
    const auto own = rowHeights_.find(*at);
    height -= own == rowHeights_.end() ? kDefaultRowHeight : own->second;
  }
  return height;
}

void Sheet::HideRow(long row, bool hide) {
  if (hide) {
    hiddenRows_.insert(row);
  } else {
    hiddenRows_.erase(row);
  }
}

void Sheet::HideColumn(long col, bool hide) {
  if (hide) {
    hiddenColumns_.insert(col);
  } else {
    hiddenColumns_.erase(col);
  }
}

}  // namespace qv::devhost::memory
