#pragma once

#include <oaidl.h>

#include <vector>

#include "workbook/automation.h"
#include "workbook/range_geometry.h"

namespace qv {

/// The merged areas of which a cell lies in a rectangle, each once. The rectangle is divided only where some
/// of its cells are merged. What cannot be read counts as not merged; a host that is busy is not asked
/// further. Host UI thread.
[[nodiscard]] HostAnswer ReadMergedAreas(IDispatch* sheet, const RangeGeometry& block,
                                         std::vector<RangeGeometry>& areas);

}  // namespace qv
