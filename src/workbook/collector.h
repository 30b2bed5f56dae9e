#pragma once

#include <oaidl.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "workbook/cell_unit.h"
#include "workbook/range_geometry.h"
#include "workbook/target_context.h"

namespace qv {

/// What a collection gives besides success.
struct CollectResult {
  std::vector<CellUnit> units;
  /// One message a cell that is too long.
  std::vector<std::wstring> warnings;
  std::wstring sheetName;
  /// Cells of the scanned range (rows × columns).
  std::int64_t cells = 0;
  /// The rectangles of a collected selection in the order of its "Areas"; they may overlap.
  std::vector<RangeGeometry> areas;
  /// Short text for the panel when the collection failed; empty when it was given up.
  std::wstring error;
};

/// Turns a sheet's used range or the selection into translatable units, row by row. Host UI thread; while it
/// scans it reports progress to the page (for a run id other than 0) and keeps the host painting.
class Collector {
 public:
  /// The three objects outlive the collector. A scan asks `stillWanted` (may be empty) before each area and
  /// each row, and is given up when it says no or the pane is closing.
  Collector(const TargetContext& target, PanelOutput& output, PaneContext& pane,
            std::function<bool()> stillWanted = {})
      : target_(target), output_(output), pane_(pane), stillWanted_(std::move(stillWanted)) {}

  /// The used range of the named sheet, or of the active one. False with `result.error` on failure.
  [[nodiscard]] bool CollectUsedRangeCells(std::wstring_view sheetName, std::uint64_t runId,
                                           CollectResult& result);

  /// The current selection of the target window.
  [[nodiscard]] bool CollectSelectionCells(std::uint64_t runId, CollectResult& result);

 private:
  const TargetContext& target_;
  PanelOutput& output_;
  PaneContext& pane_;
  std::function<bool()> stillWanted_;
};

}  // namespace qv
