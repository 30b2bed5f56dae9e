#include "workbook/uniform_property.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <optional>

#include "workbook/cell_block.h"
#include "workbook/range_geometry.h"
#include "workbook/value_block.h"

namespace qv {
namespace {

class UniformReader {
 public:
  UniformReader(IDispatch* sheet, const wchar_t* property, std::span<const CellPlace> places,
                std::vector<Variant>& values)
      : sheet_(sheet), property_(property), places_(places), values_(values) {}

  [[nodiscard]] HostAnswer Read() {
    values_.assign(places_.size(), Variant());
    std::vector<std::size_t> all(places_.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    ReadPart(all);
    return answer_.IsBusy() ? answer_ : HostAnswer{};
  }

 private:
  void ReadPart(std::span<std::size_t> part) {
    if (part.empty() || answer_.IsBusy()) return;
    const RangeGeometry box = BoxAround(part);
    const ComPtr<IDispatch> cells = GetBlockRange(sheet_, box, &answer_);
    Variant value;
    if (cells != nullptr) answer_.hr = GetProperty(cells.Get(), property_, value, &answer_.exceptionCode);
    if (!answer_.Ok()) return;
    if (const std::optional<ValueBlock> block = ValueBlock::Of(value)) {
      TakeElements(*block, box, part);
    } else if (box.Cells() == 1 || value.Type() > VT_NULL) {
      for (const std::size_t index : part)
        values_[index] = value;
    } else {
      Divide(box, part);
    }
  }

  [[nodiscard]] RangeGeometry BoxAround(std::span<const std::size_t> part) const {
    const auto rowOf = [this](std::size_t index) { return places_[index].row; };
    const auto colOf = [this](std::size_t index) { return places_[index].col; };
    const auto [top, bottom] = std::ranges::minmax(part, {}, rowOf);
    const auto [left, right] = std::ranges::minmax(part, {}, colOf);
    return {rowOf(bottom) - rowOf(top) + 1, colOf(right) - colOf(left) + 1, rowOf(top), colOf(left)};
  }

  void TakeElements(const ValueBlock& block, const RangeGeometry& box, std::span<const std::size_t> part) {
    Variant held;
    for (const std::size_t index : part) {
      const VARIANT* const element =
          block.Read(places_[index].row - box.firstRow + 1, places_[index].col - box.firstCol + 1, held);
      if (element != nullptr) values_[index] = Variant(*element);
    }
  }

  /// Tables and forms mostly have one format a column.
  void Divide(const RangeGeometry& box, std::span<std::size_t> part) {
    const bool byColumn = box.cols > 1;
    const std::int32_t middle =
        byColumn ? box.firstCol + (box.cols + 1) / 2 : box.firstRow + (box.rows + 1) / 2;
    const auto rest = std::ranges::partition(part, [&](std::size_t index) {
      return (byColumn ? places_[index].col : places_[index].row) < middle;
    });
    ReadPart(part.first(part.size() - rest.size()));
    ReadPart(part.last(rest.size()));
  }

  IDispatch* sheet_;
  const wchar_t* property_;
  std::span<const CellPlace> places_;
  std::vector<Variant>& values_;
  HostAnswer answer_;
};

}  // namespace

HostAnswer ReadUniform(IDispatch* sheet, const wchar_t* property, std::span<const CellPlace> places,
                       std::vector<Variant>& values) {
  return UniformReader(sheet, property, places, values).Read();
}

}  // namespace qv
