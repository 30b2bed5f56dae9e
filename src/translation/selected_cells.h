#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "workbook/area_index.h"
#include "workbook/cell_unit.h"
#include "workbook/target_context.h"

namespace qv {

/// The rectangles that are selected, and the sheet they lie on.
struct SelectedCells {
  std::wstring sheetName;
  AreaIndex areas;

  /// Whether the unit is a selected cell.
  [[nodiscard]] bool Contains(const CellUnit& unit) const;
};

/// Reads the selection of the target window. Nothing with a message for the page when there is none, it is
/// not of cells, or it cannot be read. Host UI thread.
[[nodiscard]] std::optional<SelectedCells> ReadSelectedCells(const TargetContext& target,
                                                             std::wstring_view& message);

}  // namespace qv
