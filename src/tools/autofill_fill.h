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
  std::wstring value;
  /// How sure the one who asks is. It decides nothing here.
  double confidence = 0;
};

/// The items of the JSON array "fills" that name a cell; none for anything but an array. Values that are
/// numbers or flags are taken as their texts.
[[nodiscard]] std::vector<AutofillFill> ParseAutofillFills(std::wstring_view json);

/// What a fill puts into its cell; nothing when its action is neither "fill" nor "clear". A plain number
/// becomes one, whatever the user's decimal point; a text from "=" on is a formula; what a host would not
/// keep as it is (leading zeros, a leading "+", more digits than a number has) stays text; all else is as if
/// typed.
[[nodiscard]] std::optional<CellContent> ContentOfFill(const AutofillFill& fill);

}  // namespace qv
