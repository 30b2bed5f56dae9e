#pragma once

#include <oaidl.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "foundation/variant.h"
#include "tools/range_args.h"

namespace qv {

/// The rows below the header of a range, as far as the sheet is in use. Each question reads the cells anew.
/// Host UI thread.
class DataRows {
 public:
  /// Borrows the sheet.
  DataRows(IDispatch* sheet, const RangeArgs& range, bool hasHeader)
      : sheet_(sheet), range_(range), hasHeader_(hasHeader) {}

  /// How many rows hold anything; nothing when that cannot be read.
  [[nodiscard]] std::optional<std::int64_t> CountFilled() const;

  /// Whether two rows differ in these columns (1-based within the range) by the case of letters only; nothing
  /// when that cannot be read.
  [[nodiscard]] std::optional<bool> CaseMatters(const std::vector<std::int32_t>& columns) const;

 private:
  /// One row's values; `firstCol` is the range's column (1-based) of the first one.
  using Visit = std::function<void(std::span<const Variant> row, std::int32_t firstCol)>;
  /// False when the cells cannot be read.
  [[nodiscard]] bool ForEach(const Visit& visit) const;

  IDispatch* sheet_;
  RangeArgs range_;
  bool hasHeader_;
};

}  // namespace qv
