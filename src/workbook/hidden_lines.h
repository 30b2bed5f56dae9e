#pragma once

#include <oaidl.h>

#include <vector>

#include "workbook/automation.h"
#include "workbook/range_geometry.h"

namespace qv {

/// Which rows and columns of a rectangle are hidden, by the user or by a filter; one flag a line.
struct HiddenLines {
  std::vector<bool> rows;
  std::vector<bool> cols;
};

/// Lines are asked together and divided only where they differ. What cannot be read counts as shown; a host
/// that is busy is not asked further. Host UI thread.
[[nodiscard]] HostAnswer ReadHiddenLines(IDispatch* sheet, const RangeGeometry& block, HiddenLines& lines);

}  // namespace qv
