#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "workbook/range_geometry.h"

namespace qv {

/// Why a cell waits for input.
enum class AutofillKind { kEmpty, kExamplePlaceholder, kUnderlinePlaceholder };

/// Longest text that a field has of its surroundings (label, left, above, rowText), in UTF-16 units.
inline constexpr std::size_t kMaxNearText = 500;
/// What the fields of one scan have of their surroundings together; those beyond it have a short label only.
inline constexpr std::size_t kMaxNearTexts = 32'000'000;
inline constexpr std::size_t kShortLabel = 40;

/// What stands around a field.
struct AutofillContext {
  std::wstring left;
  std::wstring above;
  /// The texts of the row, joined by " | ".
  std::wstring rowText;
};

/// One cell that waits for input.
struct AutofillField {
  std::wstring id;
  AutofillKind kind = AutofillKind::kEmpty;
  /// What the cell asks for.
  std::wstring label;
  /// Empty for an empty cell.
  std::wstring placeholderText;
  std::wstring currentValue;
  /// 1-based.
  std::int32_t row = 0;
  std::int32_t col = 0;
  std::wstring address;
  AutofillContext context;
};

/// What a cell with this text waits for; nothing when it holds something of its own. An example begins with a
/// word such as "e.g.:" in any case; an underline has nothing but lines and blanks, two lines at least.
[[nodiscard]] std::optional<AutofillKind> ClassifyAutofillText(std::wstring_view text);

/// The result of a scan. `holdsData` says whether any cell of the used range holds something.
[[nodiscard]] std::wstring AutofillScanResult(std::span<const AutofillField> fields,
                                              const RangeGeometry& usedRange, bool holdsData);

/// The result of a scan that could not be done.
[[nodiscard]] std::wstring AutofillUnavailableResult(std::wstring_view reason);

}  // namespace qv
