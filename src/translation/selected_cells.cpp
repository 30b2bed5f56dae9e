#include "translation/selected_cells.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "translation/display_mode.h"
#include "workbook/automation.h"

namespace qv {
namespace {

bool IsCellRange(IDispatch* selection) {
  return GetDispProperty(selection, L"Rows") != nullptr && GetDispProperty(selection, L"Columns") != nullptr;
}

bool Covers(const RangeGeometry& area, std::int32_t row, std::int32_t col) {
  return row >= area.firstRow && row - area.firstRow < area.rows && col >= area.firstCol &&
         col - area.firstCol < area.cols;
}

/// False when one of the areas cannot be read.
bool ReadAreas(const ComPtr<IDispatch>& selection, std::vector<RangeGeometry>& areas) {
  const ComPtr<IDispatch> collection = GetDispProperty(selection.Get(), L"Areas");
  const std::int32_t count = GetIntProperty(collection.Get(), L"Count");
  for (std::int32_t i = 1; i <= std::max(count, 1); ++i) {
    // One area is the selection itself, and so it is where the host has no areas.
    ComPtr<IDispatch> range = count < 2 ? selection : GetCollectionItem(collection.Get(), Variant(i));
    const std::optional<RangeGeometry> geometry = ReadGeometry(RangeReader::LateBound(std::move(range)));
    if (!geometry) return false;
    areas.push_back(*geometry);
  }
  return true;
}

}  // namespace

bool SelectedCells::Contains(const CellUnit& unit) const {
  return unit.kind == UnitKind::kCell && unit.SheetName() == sheetName &&
         std::ranges::any_of(areas,
                             [&](const RangeGeometry& area) { return Covers(area, unit.row, unit.col); });
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
    if (ReadAreas(selection, cells.areas)) return cells;
    message = kDisplaySelectionUnreadable;
  }
  return std::nullopt;
}

}  // namespace qv
