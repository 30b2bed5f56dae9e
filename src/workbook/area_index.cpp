#include "workbook/area_index.h"

#include <algorithm>
#include <utility>

namespace qv {
namespace {

std::pair<std::int32_t, std::int32_t> CornerOf(const RangeGeometry& area) {
  return {area.firstRow, area.firstCol};
}

}  // namespace

AreaIndex::AreaIndex(std::span<const RangeGeometry> areas) {
  entries_.reserve(areas.size());
  for (const RangeGeometry& area : areas)
    entries_.push_back({area});
  const auto cornerOf = [](const Entry& entry) { return CornerOf(entry.area); };
  std::ranges::sort(entries_, {}, cornerOf);
  std::int64_t endRow = 0;
  for (Entry& entry : entries_) {
    endRow = std::max(endRow, std::int64_t{entry.area.firstRow} + entry.area.rows);
    entry.endRow = endRow;
  }
}

bool AreaIndex::Holds(std::int32_t row, std::int32_t col) const {
  const auto cornerOf = [](const Entry& entry) { return CornerOf(entry.area); };
  auto entry = std::ranges::upper_bound(entries_, std::pair(row, col), {}, cornerOf);
  // Backwards as far as one of the rectangles still reaches the row.
  while (entry != entries_.begin() && (--entry)->endRow > row) {
    if (entry->area.Holds(row, col)) return true;
  }
  return false;
}

}  // namespace qv
