#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbook/cell_content.h"

namespace qv {

/// One change that is asked for.
struct AutofillFill {
  /// 1-based.
  std::int32_t row = 0;
  std::int32_t col = 0;
  std::wstring action;
  /// Nothing unless "value" is a text, a number or a flag.
  std::optional<CellContent> value;
  /// How sure the one who asks is. It decides nothing here.
  double confidence = 0;
};

/// The items of the JSON array "fills" that name a cell by whole numbers; none for anything but an array. A
/// value that is a number or a flag is one in the cell. A text that is a plain number becomes one, whatever
/// the user's decimal point; from "=" on it is a formula; what a host would not keep as it is (leading zeros,
/// a leading "+", more digits in front of the point than a number has) stays text; all else is as if typed.
[[nodiscard]] std::vector<AutofillFill> ParseAutofillFills(std::wstring_view json);

/// What a fill puts into its cell; nothing when its action is neither "fill" nor "clear", or it shall fill
/// without a value.
[[nodiscard]] std::optional<CellContent> ContentOfFill(const AutofillFill& fill);

}  // namespace qv
