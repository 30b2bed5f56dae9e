#include "workbook/selection_areas.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "workbook/automation.h"
#include "workbook/range_reader.h"

namespace qv {

bool IsCellRange(IDispatch* selection) {
  return GetDispProperty(selection, L"Rows") != nullptr && GetDispProperty(selection, L"Columns") != nullptr;
}

SelectionRanges::SelectionRanges(const ComPtr<IDispatch>& selection)
    : selection_(selection),
      collection_(GetDispProperty(selection.Get(), L"Areas")),
      count_(std::max(GetIntProperty(collection_.Get(), L"Count"), std::int32_t{1})) {}

ComPtr<IDispatch> SelectionRanges::At(std::int32_t number) const {
  // One area is the selection itself.
  return count_ == 1 ? selection_ : GetCollectionItem(collection_.Get(), Variant(number));
}

SelectionRead ReadSelectionAreas(const ComPtr<IDispatch>& selection, std::int64_t maxCells,
                                 std::vector<SelectionArea>& areas) {
  const SelectionRanges ranges(selection);
  // Each area has a cell at least.
  if (ranges.Count() > maxCells) return SelectionRead::kTooLarge;
  std::int64_t cells = 0;
  for (std::int32_t i = 1; i <= ranges.Count(); ++i) {
    ComPtr<IDispatch> range = ranges.At(i);
    const std::optional<RangeGeometry> geometry = ReadGeometry(RangeReader::LateBound(range));
    if (!geometry) return SelectionRead::kUnreadable;
    cells += geometry->Cells();
    if (cells > maxCells) return SelectionRead::kTooLarge;
    areas.push_back({std::move(range), *geometry});
  }
  return SelectionRead::kRead;
}

}  // namespace qv
