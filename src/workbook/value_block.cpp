#include "workbook/value_block.h"

#include <algorithm>
#include <span>

namespace qv {
namespace {

SAFEARRAY* ArrayOf(const VARIANT& value) {
  if ((value.vt & VT_BYREF) == 0) return value.parray;
  return value.pparray != nullptr ? *value.pparray : nullptr;
}

}  // namespace

std::optional<ValueBlock> ValueBlock::Of(const Variant& answer) {
  if (!answer.IsArray()) return std::nullopt;
  SAFEARRAY* const array = ArrayOf(answer.Get());
  if (array == nullptr || SafeArrayGetDim(array) != 2) return std::nullopt;
  ValueBlock block(array, static_cast<VARTYPE>(answer.Type() & VT_TYPEMASK));
  const bool bounded = SUCCEEDED(SafeArrayGetLBound(array, 1, &block.rowBase_)) &&
                       SUCCEEDED(SafeArrayGetUBound(array, 1, &block.rowLimit_)) &&
                       SUCCEEDED(SafeArrayGetLBound(array, 2, &block.colBase_)) &&
                       SUCCEEDED(SafeArrayGetUBound(array, 2, &block.colLimit_));
  return bounded ? std::optional(block) : std::nullopt;
}

bool ValueBlock::Read(std::int32_t row, std::int32_t col, Variant& element) const {
  LONG indexes[] = {rowBase_ + row - 1, colBase_ + col - 1};
  if (indexes[0] > rowLimit_ || indexes[1] > colLimit_) return false;
  VARIANT* const out = element.Put();
  if (elementType_ == VT_VARIANT) return SUCCEEDED(SafeArrayGetElement(array_, indexes, out));
  // A plain array of texts or booleans; the types too wide for a VARIANT's value field never occur in cells.
  if (SafeArrayGetElemsize(array_) > sizeof(out->llVal)) return false;
  if (FAILED(SafeArrayGetElement(array_, indexes, &out->llVal))) return false;
  out->vt = elementType_;
  return true;
}

bool ValueBlock::IsTrueAt(std::int32_t row, std::int32_t col) const {
  Variant element;
  return Read(row, col, element) && element.IsTrue();
}

std::size_t ValueBlock::CountTexts() const {
  const std::size_t size = static_cast<std::size_t>(std::max(0L, rowLimit_ - rowBase_ + 1)) *
                           static_cast<std::size_t>(std::max(0L, colLimit_ - colBase_ + 1));
  if (elementType_ != VT_VARIANT) return elementType_ == VT_BSTR ? size : 0;
  void* data = nullptr;
  if (FAILED(SafeArrayAccessData(array_, &data))) return 0;
  const std::span elements(static_cast<const VARIANT*>(data), size);
  const auto count = std::ranges::count(elements, VT_BSTR, &VARIANT::vt);
  static_cast<void>(SafeArrayUnaccessData(array_));
  return static_cast<std::size_t>(count);
}

}  // namespace qv
