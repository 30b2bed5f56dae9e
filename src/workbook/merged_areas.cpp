#include "workbook/merged_areas.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "workbook/cell_access.h"
#include "workbook/cell_block.h"
#include "workbook/halved_range.h"
#include "workbook/range_reader.h"
#include "workbook/value_block.h"

namespace qv {
namespace {

class MergeReader {
 public:
  MergeReader(IDispatch* sheet, const RangeGeometry& block, std::vector<RangeGeometry>& areas)
      : sheet_(sheet), block_(block), areas_(areas), known_(static_cast<std::size_t>(block.Cells())) {}

  [[nodiscard]] HostAnswer Read() {
    ReadPart(block_);
    return answer_.IsBusy() ? answer_ : HostAnswer{};
  }

 private:
  void ReadPart(const RangeGeometry& part) {
    if (answer_.IsBusy() || IsKnown(part)) return;
    const ComPtr<IDispatch> cells = GetBlockRange(sheet_, part, &answer_);
    Variant merged;
    if (cells != nullptr)
      answer_.hr = GetProperty(cells.Get(), L"MergeCells", merged, &answer_.exceptionCode);
    if (!answer_.Ok()) return;
    const std::optional<ValueBlock> flags = ValueBlock::Of(merged);
    if (flags || merged.IsTrue()) {
      ForEachCell(part, [&](std::int32_t row, std::int32_t col) {
        if (!flags || flags->IsTrueAt(row - part.firstRow + 1, col - part.firstCol + 1)) TakeAreaAt(row, col);
      });
    } else if (merged.Type() == VT_NULL && part.Cells() > 1) {
      const HalvedRange halves = Halve(part);
      ReadPart(halves.first);
      ReadPart(halves.second);
    }
  }

  void TakeAreaAt(std::int32_t row, std::int32_t col) {
    if (answer_.IsBusy() || known_[IndexOf(row, col)]) return;
    const ComPtr<IDispatch> cell = GetCellDispatch(sheet_, row, col, &answer_);
    const ComPtr<IDispatch> area = GetDispProperty(cell.Get(), L"MergeArea", &answer_);
    if (area == nullptr) return;
    const std::optional<RangeGeometry> place = ReadGeometry(RangeReader::LateBound(area));
    if (!place || !place->Holds(row, col)) return;
    areas_.push_back(*place);
    // A whole merged column has a million cells, the block perhaps ten of them.
    ForEachCell(InBlock(*place), [this](std::int32_t areaRow, std::int32_t areaCol) {
      known_[IndexOf(areaRow, areaCol)] = true;
    });
  }

  /// The part of an area that lies in the block, which it meets.
  [[nodiscard]] RangeGeometry InBlock(const RangeGeometry& area) const {
    const std::int32_t top = std::max(area.firstRow, block_.firstRow);
    const std::int32_t left = std::max(area.firstCol, block_.firstCol);
    const std::int32_t bottom = std::min(area.firstRow + area.rows, block_.firstRow + block_.rows);
    const std::int32_t right = std::min(area.firstCol + area.cols, block_.firstCol + block_.cols);
    return {bottom - top, right - left, top, left};
  }

  [[nodiscard]] bool IsKnown(const RangeGeometry& part) const {
    return part.Cells() == 1 && known_[IndexOf(part.firstRow, part.firstCol)];
  }

  [[nodiscard]] std::size_t IndexOf(std::int32_t row, std::int32_t col) const {
    return static_cast<std::size_t>(row - block_.firstRow) * static_cast<std::size_t>(block_.cols) +
           static_cast<std::size_t>(col - block_.firstCol);
  }

  template <class Visit>
  static void ForEachCell(const RangeGeometry& part, Visit visit) {
    for (std::int32_t row = 0; row < part.rows; ++row) {
      for (std::int32_t col = 0; col < part.cols; ++col)
        visit(part.firstRow + row, part.firstCol + col);
    }
  }

  IDispatch* sheet_;
  const RangeGeometry& block_;
  std::vector<RangeGeometry>& areas_;
  /// The cells of the block that lie in an area found so far.
  std::vector<bool> known_;
  HostAnswer answer_;
};

}  // namespace

HostAnswer ReadMergedAreas(IDispatch* sheet, const RangeGeometry& block, std::vector<RangeGeometry>& areas) {
  areas.clear();
  return MergeReader(sheet, block, areas).Read();
}

}  // namespace qv
