#pragma once

#include <oaidl.h>

#include <string>
#include <string_view>
#include <vector>

#include "workbook/cell_access.h"
#include "workbook/cell_unit.h"
#include "workbook/target_context.h"

namespace qv {

// The titles of the charts that lie on worksheets. Host UI thread.

/// One unit a chart with a title worth translating, in the order of the sheet's charts.
[[nodiscard]] std::vector<CellUnit> CollectChartTitles(IDispatch* sheet, std::wstring_view sheetName);

/// Sets the title that the unit came from. Fails for a title that shows neither the unit's source nor its
/// translation: charts may have been deleted or added since, and the number then names another one.
[[nodiscard]] CellWriteResult WriteChartTitle(const TargetContext& target, const CellUnit& unit,
                                              std::wstring_view text);

}  // namespace qv
