#pragma once

#include <cstdint>

namespace qv {

/// Size and 1-based place of a rectangular range.
struct RangeGeometry {
  std::int32_t rows = 0;
  std::int32_t cols = 0;
  std::int32_t firstRow = 0;
  std::int32_t firstCol = 0;

  [[nodiscard]] std::int64_t Cells() const { return std::int64_t{rows} * cols; }

  /// Whether the cell (1-based) lies in it.
  [[nodiscard]] bool Holds(std::int32_t row, std::int32_t col) const {
    return row >= firstRow && row - firstRow < rows && col >= firstCol && col - firstCol < cols;
  }
};

}  // namespace qv
