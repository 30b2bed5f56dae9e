#include "workbook/number_formats.h"

#include <cstddef>
#include <cstdint>

#include "foundation/variant.h"
#include "workbook/cell_place.h"
#include "workbook/uniform_property.h"

namespace qv {
namespace {

CellPlace PlaceOf(const RangeGeometry& block, std::size_t index) {
  const auto columns = static_cast<std::size_t>(block.cols);
  return {block.firstRow + static_cast<std::int32_t>(index / columns),
          block.firstCol + static_cast<std::int32_t>(index % columns)};
}

}  // namespace

std::vector<std::wstring> ReadNumberFormats(IDispatch* sheet, const RangeGeometry& block,
                                            const std::vector<bool>& watched) {
  std::vector<CellPlace> places;
  for (std::size_t i = 0; i < watched.size(); ++i) {
    if (watched[i]) places.push_back(PlaceOf(block, i));
  }
  std::vector<Variant> values;
  // What a busy host did not tell stays unknown like anything else that cannot be read.
  static_cast<void>(ReadUniform(sheet, L"NumberFormat", places, values));
  std::vector<std::wstring> formats(watched.size());
  auto value = values.cbegin();
  for (std::size_t i = 0; i < watched.size(); ++i) {
    if (watched[i]) formats[i] = (value++)->Text();
  }
  return formats;
}

}  // namespace qv
