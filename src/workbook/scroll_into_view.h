#pragma once

#include <string_view>

#include "workbook/range_reader.h"
#include "workbook/target_context.h"

namespace qv {

/// Shows the block's first cell in the top left corner of the target's window, unless the whole block is
/// visible already. Does nothing while the window shows another sheet. Host UI thread.
void ScrollIntoView(const TargetContext& target, std::wstring_view sheetName, const RangeGeometry& block);

}  // namespace qv
