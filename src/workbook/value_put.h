#pragma once

#include <oaidl.h>

#include <string_view>
#include <vector>

#include "foundation/variant.h"
#include "workbook/automation.h"
#include "workbook/cell_content.h"
#include "workbook/range_geometry.h"

namespace qv {

// Putting values that are no formulas and texts that nobody has to protect. Host UI thread, the host's alerts
// off.

/// What is put for a number, a flag or a text that the host reads as typed; VT_EMPTY for an empty one.
[[nodiscard]] Variant ValueOf(const CellContent& content);

/// One try to write a value, or an array of values, through "Value2", then "Value". A busy host is not asked
/// a second time.
[[nodiscard]] HostAnswer PutValue(IDispatch* cells, const Variant& value);

/// Whether every host takes the content as an element of an array just as it takes it alone: no formula, no
/// text that may be refused as a bad one or that needs an apostrophe, none too long for an array.
[[nodiscard]] bool FitsIntoArray(const CellContent& content);

/// Whether the host tells that rows of the range are hidden. A filtered range takes an array wrongly: its
/// elements go to the rows that are shown.
[[nodiscard]] bool HasHiddenRows(IDispatch* range);

/// Puts contents that fit into an array, row by row, into a rectangle with one call (logged). What a host
/// wrote before it refused the rest is not known. `sheetName` is for the log.
[[nodiscard]] HostAnswer PutBlock(IDispatch* range, std::wstring_view sheetName, const RangeGeometry& block,
                                  const std::vector<const CellContent*>& contents);

}  // namespace qv
