#include "translation/selected_cells.h"

#include <vector>

#include "translation/display_mode.h"
#include "workbook/automation.h"
#include "workbook/selection_areas.h"

namespace qv {
namespace {

/// Nothing when one of the areas cannot be read.
std::optional<AreaIndex> ReadAreas(const ComPtr<IDispatch>& selection) {
  std::vector<SelectionArea> areas;
  if (ReadSelectionAreas(selection, kAnyCellCount, areas) != SelectionRead::kRead) return std::nullopt;
  std::vector<RangeGeometry> geometries;
  for (const SelectionArea& area : areas)
    geometries.push_back(area.geometry);
  return AreaIndex(geometries);
}

}  // namespace

bool SelectedCells::Contains(const CellUnit& unit) const {
  return unit.kind == UnitKind::kCell && unit.SheetName() == sheetName && areas.Holds(unit.row, unit.col);
}

std::optional<SelectedCells> ReadSelectedCells(const TargetContext& target, std::wstring_view& message) {
  Variant value;
  const bool isRead = target.Application() != nullptr &&
                      SUCCEEDED(GetProperty(target.GetTargetWindowDrv().Get(), L"Selection", value));
  const ComPtr<IDispatch> selection = value.Object();
  if (target.Application() == nullptr) {
    message = kDisplayNotConnected;
  } else if (!isRead) {
    message = kDisplaySelectionUnreadable;
  } else if (!IsCellRange(selection.Get())) {
    message = kDisplayNothingSelected;
  } else {
    SelectedCells cells;
    cells.sheetName = GetStringProperty(GetDispProperty(selection.Get(), L"Worksheet").Get(), L"Name");
    if (cells.sheetName.empty()) cells.sheetName = target.GetActiveSheetName();
    if (std::optional<AreaIndex> areas = ReadAreas(selection)) {
      cells.areas = *std::move(areas);
      return cells;
    }
    message = kDisplaySelectionUnreadable;
  }
  return std::nullopt;
}

}  // namespace qv
