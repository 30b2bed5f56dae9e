#pragma once

#include <oaidl.h>

#include <span>
#include <vector>

#include "foundation/variant.h"
#include "workbook/automation.h"
#include "workbook/cell_place.h"

namespace qv {

/// Reads a property of the format ("Locked", "NumberFormat") or "HasFormula" of single cells, one value a
/// place. Hosts give it for a whole rectangle whose cells agree, and Null where they differ: rectangles
/// around the cells are asked, and divided only where they have to be. VT_EMPTY for a cell that cannot be
/// read. A host that is busy is not asked further; any other answer is good. Host UI thread.
[[nodiscard]] HostAnswer ReadUniform(IDispatch* sheet, const wchar_t* property,
                                     std::span<const CellPlace> places, std::vector<Variant>& values);

}  // namespace qv
