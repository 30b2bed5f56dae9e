#include "tools/duplicate_rows.h"

#include <algorithm>
#include <string>
#include <unordered_map>

#include "foundation/text.h"
#include "tools/tool_targets.h"
#include "workbook/cell_block.h"

namespace qv {
namespace {

/// Cells that are read in one call.
constexpr std::int32_t kCellsAtOnce = 50'000;

/// A text that is the same for equal values only. Of a value only the bytes of its type mean anything.
std::wstring KeyOf(const Variant& value) {
  if (IsEmptyValue(value)) return L"e";
  if (value.IsText()) return Concat(L's', SysStringLen(value->bstrVal), L':', value.Text());
  switch (value.Type()) {
    case VT_BOOL:
      return Concat(L'b', value.IsTrue());
    case VT_ERROR:
    case VT_I4:
      return Concat(value.Type(), L':', Hex{static_cast<std::uint32_t>(value->lVal)}, L';');
    default:
      return Concat(value.Type(), L':', Hex{static_cast<std::uint64_t>(value->llVal)}, L';');
  }
}

std::wstring Lowered(std::wstring text) {
  CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
  return text;
}

}  // namespace

bool DataRows::ForEach(const Visit& visit) const {
  const std::optional<RangeGeometry> used = ReadUsedRange(sheet_);
  if (!used) return false;
  RangeArgs data = range_;
  if (hasHeader_) data.row1 = std::max(data.row1, 1) + 1;
  if (data.IsWholeColumns()) data.row2 = used->firstRow + used->rows;
  if (data.row1 > data.row2 && !data.IsWholeColumns()) return true;
  const std::optional<RangeGeometry> part = Intersect(data, *used);
  if (!part) return true;
  const std::int32_t firstCol = part->firstCol - std::max(range_.col1, 1) + 1;
  const auto cols = static_cast<std::size_t>(part->cols);
  RangeGeometry block = *part;
  std::vector<Variant> values;
  for (std::int32_t done = 0; done < part->rows; done += block.rows) {
    block.firstRow = part->firstRow + done;
    block.rows = std::min(std::max(kCellsAtOnce / part->cols, 1), part->rows - done);
    if (!ReadBlock(sheet_, block, L"Value2", values).Ok()) return false;
    for (std::size_t at = 0; at < values.size(); at += cols)
      visit(std::span(values).subspan(at, cols), firstCol);
  }
  return true;
}

std::optional<std::int64_t> DataRows::CountFilled() const {
  std::int64_t filled = 0;
  const bool read = ForEach([&](std::span<const Variant> row, std::int32_t) {
    if (!std::ranges::all_of(row, &IsEmptyValue)) ++filled;
  });
  return read ? std::optional(filled) : std::nullopt;
}

std::optional<bool> DataRows::CaseMatters(const std::vector<std::int32_t>& columns) const {
  std::unordered_map<std::wstring, std::wstring> seen;
  bool matters = false;
  const bool read = ForEach([&](std::span<const Variant> row, std::int32_t firstCol) {
    std::wstring key;
    for (const std::int32_t column : columns) {
      const std::int64_t at = std::int64_t{column} - firstCol;
      const bool inUse = at >= 0 && at < static_cast<std::int64_t>(row.size());
      key += inUse ? KeyOf(row[static_cast<std::size_t>(at)]) : L"e";
    }
    const auto [known, isNew] = seen.try_emplace(Lowered(key), key);
    if (!isNew && known->second != key) matters = true;
  });
  return read ? std::optional(matters) : std::nullopt;
}

}  // namespace qv
