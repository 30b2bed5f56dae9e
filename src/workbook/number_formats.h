#pragma once

#include <oaidl.h>

#include <string>
#include <vector>

#include "workbook/range_geometry.h"

namespace qv {

/// The number formats of the cells of a rectangle that are `watched` (row by row, one flag a cell), as of
/// `ReadUniform`. Empty for a cell that is not watched or cannot be read. Host UI thread.
[[nodiscard]] std::vector<std::wstring> ReadNumberFormats(IDispatch* sheet, const RangeGeometry& block,
                                                          const std::vector<bool>& watched);

}  // namespace qv
