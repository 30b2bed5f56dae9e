#include "workbook/value_block.h"

#include <algorithm>
#include <span>
#include <utility>

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
  if (!bounded) return std::nullopt;
  if (block.elementType_ == VT_VARIANT) {
    void* data = nullptr;
    if (FAILED(SafeArrayAccessData(array, &data))) return std::nullopt;
    block.elements_ = static_cast<const VARIANT*>(data);
  }
  return block;
}

ValueBlock::ValueBlock(ValueBlock&& other) noexcept
    : array_(other.array_),
      elementType_(other.elementType_),
      elements_(std::exchange(other.elements_, nullptr)),
      rowBase_(other.rowBase_),
      rowLimit_(other.rowLimit_),
      colBase_(other.colBase_),
      colLimit_(other.colLimit_) {}

ValueBlock::~ValueBlock() {
  if (elements_ != nullptr) static_cast<void>(SafeArrayUnaccessData(array_));
}

const VARIANT* ValueBlock::Read(std::int32_t row, std::int32_t col, Variant& held) const {
  LONG indexes[] = {rowBase_ + row - 1, colBase_ + col - 1};
  if (indexes[0] > rowLimit_ || indexes[1] > colLimit_) return nullptr;
  if (elements_ != nullptr) {
    const std::int64_t rows = std::int64_t{rowLimit_} - rowBase_ + 1;
    return elements_ + (col - 1) * rows + (row - 1);
  }
  VARIANT* const out = held.Put();
  // A plain array of texts or booleans; the types too wide for a VARIANT's value field never occur in cells.
  if (SafeArrayGetElemsize(array_) > sizeof(out->llVal)) return nullptr;
  if (FAILED(SafeArrayGetElement(array_, indexes, &out->llVal))) return nullptr;
  out->vt = elementType_;
  return out;
}

bool ValueBlock::IsTrueAt(std::int32_t row, std::int32_t col) const {
  Variant held;
  const VARIANT* const element = Read(row, col, held);
  return element != nullptr && element->vt == VT_BOOL && element->boolVal != VARIANT_FALSE;
}

std::size_t ValueBlock::CountTexts() const {
  const std::size_t size = static_cast<std::size_t>(std::max(0L, rowLimit_ - rowBase_ + 1)) *
                           static_cast<std::size_t>(std::max(0L, colLimit_ - colBase_ + 1));
  if (elementType_ != VT_VARIANT) return elementType_ == VT_BSTR ? size : 0;
  const auto count = std::ranges::count(std::span(elements_, size), VT_BSTR, &VARIANT::vt);
  return static_cast<std::size_t>(count);
}

}  // namespace qv
