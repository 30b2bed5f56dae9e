#include "tools/blank_rows.h"

#include <algorithm>

#include "foundation/text.h"
#include "workbook/cell_text.h"

namespace qv {
namespace {

std::wstring AddressOf(const RangeGeometry& block) {
  return Concat(A1Address(block.firstRow, block.firstCol), L':',
                A1Address(block.firstRow + (block.rows - 1), block.firstCol + (block.cols - 1)));
}

std::wstring AddressOf(const RowSpan& rows) {
  return Concat(rows.first, L':', rows.last);
}

template <typename Part>
std::vector<std::wstring> Join(std::span<const Part> parts) {
  std::vector<std::wstring> joined;
  for (const Part& part : parts) {
    const std::wstring address = AddressOf(part);
    if (joined.empty() || joined.back().size() + 1 + address.size() > kMaxAddressLength) {
      joined.push_back(address);
    } else {
      joined.back() += L',' + address;
    }
  }
  return joined;
}

}  // namespace

RowSpan BlankRowScope(const RangeGeometry& used, const RowSpan& selected) {
  const RowSpan all{used.firstRow, used.firstRow + (used.rows - 1)};
  if (selected.Count() <= 1) return all;
  return {std::max(selected.first, all.first), std::min(selected.last, all.last)};
}

std::vector<RowSpan> JoinRows(std::span<const std::int32_t> rows) {
  std::vector<RowSpan> spans;
  for (const std::int32_t row : rows) {
    if (!spans.empty() && spans.back().last + 1 == row) {
      spans.back().last = row;
    } else {
      spans.push_back({row, row});
    }
  }
  return spans;
}

std::vector<std::wstring> JoinAddresses(std::span<const RangeGeometry> blocks) {
  return Join(blocks);
}

std::vector<std::wstring> JoinAddresses(std::span<const RowSpan> rows) {
  return Join(rows);
}

}  // namespace qv
