#pragma once

#include <oaidl.h>

#include <string>
#include <vector>

#include "tools/autofill_field.h"
#include "workbook/range_geometry.h"

namespace qv {

/// Largest used range that is scanned, in cells.
inline constexpr std::int64_t kMaxAutofillCells = 200000;

/// What a scan found.
struct AutofillCells {
  std::vector<AutofillField> fields;
  RangeGeometry usedRange;
  bool holdsData = false;
  /// Why the sheet could not be scanned; empty when it was.
  std::wstring error;
};

/// The cells of a sheet that wait for input. Cells with a formula, cells that are locked on a protected
/// sheet, and cells that nobody sees (in hidden lines, below a merged area) do not. Values are read in one
/// call, all else for as many cells at once as agree. Host UI thread.
[[nodiscard]] AutofillCells CollectAutofillCells(IDispatch* sheet);

}  // namespace qv
