#include <utility>

#include "engines/memory/sheet.h"

namespace qv::devhost::memory {
namespace {

/// Adds `distance` to the keys from `first` on, in a map or a set.
template <typename Container, typename Key>
void MoveKeys(Container& container, Key first, Key distance) {
  Container moved;
  for (auto at = container.lower_bound(first); at != container.end();) {
    auto node = container.extract(at++);
    if constexpr (requires { node.key(); }) {
      node.key() += distance;
    } else {
      node.value() += distance;
    }
    moved.insert(std::move(node));
  }
  container.merge(moved);
}

}  // namespace

void Sheet::InsertRows(long row, long count) {
  std::vector<Area> merges = Merges();
  std::erase_if(merges, [row](const Area& merge) { return merge.row2 < row; });
  for (const Area& merge : merges)
    UnMerge(merge);
  const double top = HeightOf({1, 1, row - 1, 1});
  const CellKey distance = Key(count, 0);
  MoveKeys(cells_, Key(row, 0), distance);
  MoveKeys(formulas_, Key(row, 0), distance);
  MoveKeys(rowHeights_, row, count);
  MoveKeys(hiddenRows_, row, count);
  for (Area merge : merges) {
    if (merge.row1 >= row) merge.row1 += count;
    merge.row2 += count;
    // One that has grown too large for this model stays split.
    static_cast<void>(Merge(merge));
  }
  for (const auto& chart : charts) {
    if (chart->top >= top) chart->top += static_cast<double>(count) * kDefaultRowHeight;
  }
}

}  // namespace qv::devhost::memory
