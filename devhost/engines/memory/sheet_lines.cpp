#include <algorithm>
#include <tuple>
#include <utility>

#include "engines/memory/sheet.h"

namespace qv::devhost::memory {
namespace {

/// How rows or columns move when some of them go (count below 0) or come (above 0) at `first`.
struct LineShift {
  long first;
  long count;

  /// Where a line goes; 0 for one that goes away.
  [[nodiscard]] long Of(long line) const {
    if (line < first) return line;
    return line < first - count && count < 0 ? 0 : line + count;
  }
  /// The first and last line of a block that is left, in its new place; last < first for one that goes.
  [[nodiscard]] std::pair<long, long> OfBlock(long from, long to) const {
    if (count > 0) return {Of(from), Of(to)};
    const auto bound = [&](long line, long gone) { return Of(line) != 0 ? Of(line) : gone; };
    return {bound(from, first), bound(to, first - 1)};
  }
};

template <typename Map>
Map ShiftedMap(const Map& lines, const LineShift& shift) {
  Map shifted;
  for (const auto& [line, value] : lines) {
    if (const long moved = shift.Of(line); moved != 0) shifted.emplace(moved, value);
  }
  return shifted;
}

std::set<long> ShiftedSet(const std::set<long>& lines, const LineShift& shift) {
  std::set<long> shifted;
  for (const long line : lines) {
    if (const long moved = shift.Of(line); moved != 0) shifted.insert(moved);
  }
  return shifted;
}

/// What begins behind the edge moves; a group with all that is in it.
void MoveObject(FloatingObject& object, bool rows, double edge, double grown) {
  double& start = rows ? object.top : object.left;
  if (start >= edge) start = std::max(edge, start + grown);
  const auto* const shape = dynamic_cast<const Shape*>(&object);
  if (shape == nullptr) return;
  for (const auto& child : shape->children)
    MoveObject(*child, rows, edge, grown);
}

}  // namespace

void Sheet::ShiftLines(bool rows, long first, long count) {
  const LineShift shift{first, count};
  const double edge = StartOf(rows, first);
  const double grown =
      count > 0 ? static_cast<double>(count) * (rows ? kDefaultRowHeight : ColumnPoints(kMaxColumn))
                : edge - StartOf(rows, first - count);
  for (const auto& object : Floating())
    MoveObject(*object, rows, edge, grown);
  const std::vector<Area> merges = Merges();
  const auto cells = std::exchange(cells_, {});
  formulas_.clear();
  merged_.clear();
  for (const auto& [key, cell] : cells) {
    const long row = rows ? shift.Of(RowOf(key)) : RowOf(key);
    const long col = rows ? ColumnOf(key) : shift.Of(ColumnOf(key));
    if (row == 0 || col == 0) continue;
    if (!cell.formula.empty()) formulas_.insert(Key(row, col));
    cells_.emplace(Key(row, col), cell);
  }
  columnsKnown_ = false;
  for (Area area : merges) {
    long& from = rows ? area.row1 : area.col1;
    long& to = rows ? area.row2 : area.col2;
    std::tie(from, to) = shift.OfBlock(from, to);
    if (from <= to && area.Cells() > 1) static_cast<void>(Merge(area));
  }
  auto& sizes = rows ? rowHeights_ : columnWidths_;
  auto& hidden = rows ? hiddenRows_ : hiddenColumns_;
  sizes = ShiftedMap(sizes, shift);
  hidden = ShiftedSet(hidden, shift);
}

double Sheet::StartOf(bool rows, long line) const {
  if (line <= 1) return 0;
  return rows ? HeightOf({1, 1, line - 1, 1}) : WidthOf({1, 1, 1, line - 1});
}

void Sheet::DeleteLines(bool rows, long first, long count) {
  ShiftLines(rows, first, -count);
}

bool Sheet::InsertLines(bool rows, long first, long count) {
  const Area used = UsedArea();
  const bool isEmpty = cells_.empty() && merged_.empty();
  const long last = rows ? used.row2 : used.col2;
  if (!isEmpty && last >= first && last + count > (rows ? kMaxRow : kMaxColumn)) return false;
  ShiftLines(rows, first, count);
  return true;
}

void Sheet::CopyContents(const Area& source, long targetRow) {
  for (long row = source.row1; row <= source.row2; ++row) {
    for (long col = source.col1; col <= source.col2; ++col) {
      const Cell* const found = Find(row, col);
      const Cell cell = found == nullptr ? Cell() : *found;
      const long target = targetRow + row - source.row1;
      SetEntry(target, col, {cell.value, cell.formula, cell.prefixed, {}});
    }
  }
}

}  // namespace qv::devhost::memory
