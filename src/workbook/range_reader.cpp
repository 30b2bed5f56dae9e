#include "workbook/range_reader.h"

#include <array>

#include "foundation/dispatch.h"

namespace qv {
namespace {

constexpr IID kTypedRange = {0x00020846, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

}  // namespace

std::optional<RangeReader> RangeReader::Typed(IDispatch* range) {
  ComPtr<IDispatch> typed;
  if (range == nullptr) return std::nullopt;
  if (FAILED(range->QueryInterface(kTypedRange, reinterpret_cast<void**>(typed.GetAddressOf()))) ||
      typed == nullptr) {
    return std::nullopt;
  }
  return RangeReader(std::move(typed), true);
}

RangeReader RangeReader::For(IDispatch* range) const {
  if (typed_) {
    if (std::optional<RangeReader> typed = Typed(range)) return *std::move(typed);
  }
  return LateBound(range);
}

HRESULT RangeReader::Get(const RangeMember& member, Variant& value, SCODE* exceptionCode) const {
  if (!typed_) return GetProperty(range_.Get(), member.name, value, exceptionCode);
  return InvokeDispId(range_.Get(), member.id, DISPATCH_PROPERTYGET, {}, &value, exceptionCode);
}

RangeReader RangeReader::Child(const RangeMember& member) const {
  Variant value;
  const HRESULT hr = Get(member, value);
  return For(SUCCEEDED(hr) ? value.Object().Get() : nullptr);
}

std::int32_t RangeReader::Int(const RangeMember& member) const {
  Variant value;
  return SUCCEEDED(Get(member, value)) ? IntegerOf(value) : 0;
}

HRESULT RangeReader::Item(std::int32_t row, std::int32_t col, Variant& cell, SCODE* exceptionCode) const {
  const std::array<Variant, 2> position = {Variant(row), Variant(col)};
  if (!typed_) return GetItem(range_.Get(), position, cell, exceptionCode);
  return InvokeDispId(range_.Get(), kRangeItem.id, DISPATCH_PROPERTYGET, position, &cell, exceptionCode);
}

std::optional<RangeGeometry> ReadGeometry(const RangeReader& range) {
  RangeGeometry geometry;
  geometry.firstRow = range.Int(kRangeRow);
  geometry.firstCol = range.Int(kRangeColumn);
  geometry.rows = range.Child(kRangeRows).Int(kRangeCount);
  geometry.cols = range.Child(kRangeColumns).Int(kRangeCount);
  const bool valid =
      geometry.rows >= 1 && geometry.cols >= 1 && geometry.firstRow >= 1 && geometry.firstCol >= 1;
  return valid ? std::optional(geometry) : std::nullopt;
}

bool IsCoveredByMerge(const RangeReader& cell, std::int32_t row, std::int32_t col, HostAnswer* answer) {
  HostAnswer own;
  Variant value;
  const auto read = [&](const RangeReader& range, const RangeMember& member) {
    own.hr = range.Get(member, value, &own.exceptionCode);
    return own.Ok();
  };
  const auto differs = [&](const RangeReader& range, const RangeMember& member, std::int32_t expected) {
    return read(range, member) && IntegerOf(value) != expected;
  };
  bool covered = false;
  if (read(cell, kRangeMergeCells) && value.IsTrue() && read(cell, kRangeMergeArea)) {
    const RangeReader area = cell.For(value.Object().Get());
    covered =
        !area.IsNull() && (differs(area, kRangeRow, row) || (own.Ok() && differs(area, kRangeColumn, col)));
  }
  if (answer != nullptr) *answer = own;
  return covered;
}

}  // namespace qv
