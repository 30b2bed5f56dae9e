#pragma once

#include "workbook/range_geometry.h"

namespace qv {

/// The halves of a range.
struct HalvedRange {
  RangeGeometry first;
  RangeGeometry second;
};

/// Divides a range of more than one cell, across its longer side.
[[nodiscard]] inline HalvedRange Halve(const RangeGeometry& range) {
  HalvedRange halves{range, range};
  if (range.rows >= range.cols) {
    halves.first.rows = range.rows / 2;
    halves.second.rows -= halves.first.rows;
    halves.second.firstRow += halves.first.rows;
  } else {
    halves.first.cols = range.cols / 2;
    halves.second.cols -= halves.first.cols;
    halves.second.firstCol += halves.first.cols;
  }
  return halves;
}

}  // namespace qv
