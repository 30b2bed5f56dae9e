#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qv {

/// How the text of a cell's content is meant.
enum class CellContentKind {
  /// Text that stays text, whatever it looks like. Empty for an empty cell.
  kText,
  /// A formula from "=" on, in the host's language-neutral spelling.
  kFormula,
  /// A number as of `NumberText`.
  kNumber,
  /// "TRUE" or "FALSE".
  kFlag,
  /// What the host makes of the text as if it were typed: a number, a date, an error, a text.
  kTyped,
};

/// What a cell holds or shall hold, without its format.
struct CellContent {
  std::wstring text;
  CellContentKind kind = CellContentKind::kText;

  friend bool operator==(const CellContent&, const CellContent&) = default;
};

/// A number as text: the shortest spelling that reads back as the same number, with a decimal point, and an
/// exponent ("1E+21", "1E-07") only outside of 1e-6 to 1e21.
[[nodiscard]] std::wstring NumberText(double number);

/// The number that `NumberText` wrote, or any JSON number; 0 for another text, infinite beyond the range.
[[nodiscard]] double NumberOfText(std::wstring_view text);

/// The host's word for an error value ("#N/A") by its number in the host's enumeration (2042), which is also
/// the low half of a cell's error code; "#VALUE!" for an unknown one.
[[nodiscard]] std::wstring_view ErrorWord(std::int32_t code);

/// Whether a text is a formula: it begins with "=".
[[nodiscard]] bool IsFormulaText(std::wstring_view text);

}  // namespace qv
