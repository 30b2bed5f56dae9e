#pragma once

#include <oaidl.h>

#include <cstdint>
#include <optional>

#include "foundation/variant.h"

namespace qv {

/// A host's answer for a whole range seen as a two-dimensional array. Borrows the array and keeps it locked:
/// the answer outlives the block.
class ValueBlock {
 public:
  /// Nothing when the value is no array, has no data or not two dimensions.
  [[nodiscard]] static std::optional<ValueBlock> Of(const Variant& answer);
  ValueBlock(const ValueBlock&) = delete;
  ValueBlock& operator=(const ValueBlock&) = delete;
  ValueBlock(ValueBlock&& other) noexcept;
  ~ValueBlock();

  /// The element at a 1-based position counted from the array's own lower bounds, or null outside of its
  /// bounds. It stays in the array, uncopied, or in `held` where the array holds no VARIANTs.
  [[nodiscard]] const VARIANT* Read(std::int32_t row, std::int32_t col, Variant& held) const;

  /// Whether the element is the boolean TRUE; false outside of the bounds.
  [[nodiscard]] bool IsTrueAt(std::int32_t row, std::int32_t col) const;

  /// How many elements hold a text; an upper bound of what can be collected.
  [[nodiscard]] std::size_t CountTexts() const;

 private:
  ValueBlock(SAFEARRAY* array, VARTYPE elementType) : array_(array), elementType_(elementType) {}

  SAFEARRAY* array_;
  VARTYPE elementType_;
  /// The locked elements column by column, for an array of VARIANTs; else null.
  const VARIANT* elements_ = nullptr;
  LONG rowBase_ = 0;
  LONG rowLimit_ = 0;
  LONG colBase_ = 0;
  LONG colLimit_ = 0;
};

}  // namespace qv
