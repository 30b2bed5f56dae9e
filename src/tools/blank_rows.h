#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "workbook/range_geometry.h"

namespace qv {

/// What one removal of blank rows reports to the button.
struct BlankRowResult {
  std::int32_t deleted = 0;
  /// Blank rows found.
  std::int32_t found = 0;
  /// Rows whose deletion failed.
  std::int32_t failed = 0;
  /// The user said no to the preview, and is told nothing more.
  bool silent = false;
  /// Not empty when the removal could not start or could not read the sheet; nothing was deleted then.
  std::wstring error;
};

/// Sheet rows from `first` to `last`, both 1-based and included; none when `last` lies before `first`.
struct RowSpan {
  std::int32_t first = 1;
  std::int32_t last = 0;

  [[nodiscard]] std::int32_t Count() const { return last < first ? 0 : last - first + 1; }
  friend bool operator==(const RowSpan&, const RowSpan&) = default;
};

/// The rows that are searched: several selected rows as far as they lie in the used range, otherwise all of
/// it.
[[nodiscard]] RowSpan BlankRowScope(const RangeGeometry& used, const RowSpan& selected);

/// The sheet rows of the scope, a part of the used range, in which `isFilled(row, col)` holds for no cell, in
/// ascending order. Its positions are 1-based and counted from the used range's first cell. A sheet without
/// any content, whose used range is one empty cell, has no blank rows.
template <typename IsFilled>
[[nodiscard]] std::vector<std::int32_t> FindBlankRows(const RangeGeometry& used, const RowSpan& scope,
                                                      const IsFilled& isFilled) {
  std::vector<std::int32_t> blank;
  if (used.Cells() == 1 && !isFilled(1, 1)) return blank;
  for (std::int32_t row = scope.first; row <= scope.last; ++row) {
    std::int32_t col = 1;
    while (col <= used.cols && !isFilled(row - used.firstRow + 1, col))
      ++col;
    if (col > used.cols) blank.push_back(row);
  }
  return blank;
}

/// Neighbouring rows of an ascending list joined.
[[nodiscard]] std::vector<RowSpan> JoinRows(std::span<const std::int32_t> rows);

/// The longest address that hosts take for a range.
inline constexpr std::size_t kMaxAddressLength = 255;

/// Addresses that name blocks of cells together ("A3:H3,A7:H9"), as few as their limited length allows.
[[nodiscard]] std::vector<std::wstring> JoinAddresses(std::span<const RangeGeometry> blocks);

/// The same for whole rows ("3:3,7:9").
[[nodiscard]] std::vector<std::wstring> JoinAddresses(std::span<const RowSpan> rows);

}  // namespace qv
