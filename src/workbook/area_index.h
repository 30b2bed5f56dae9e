#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "workbook/range_geometry.h"

namespace qv {

/// Tells quickly whether a cell lies in one of many rectangles, which may overlap. Platform-free.
class AreaIndex {
 public:
  AreaIndex() = default;
  explicit AreaIndex(std::span<const RangeGeometry> areas);

  /// Row and column are 1-based.
  [[nodiscard]] bool Holds(std::int32_t row, std::int32_t col) const;

 private:
  struct Entry {
    RangeGeometry area;
    /// The first row below this rectangle and all before it.
    std::int64_t endRow = 0;
  };

  /// By first row and first column.
  std::vector<Entry> entries_;
};

}  // namespace qv
