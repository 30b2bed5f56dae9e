#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace qv::devhost::memory {

/// An error value by the host's number: 2007 is #DIV/0!, 2015 #VALUE!, 2023 #REF!, 2029 #NAME?, 2042 #N/A.
struct ErrorValue {
  long number = 0;
  bool operator==(const ErrorValue&) const = default;
};

/// What a cell holds: nothing, a number (dates are numbers too), a boolean, a text or an error.
using CellValue = std::variant<std::monostate, double, bool, std::wstring, ErrorValue>;

/// What the host makes of something typed or put into a cell.
struct Entry {
  CellValue value;
  /// With the leading "="; empty for a constant. `value` then is the result as far as it is known.
  std::wstring formula;
  /// A leading apostrophe was taken away.
  bool prefixed = false;
  /// Number format that the host gives a General cell for this entry (dates, percentages); empty keeps it.
  std::wstring numberFormat;
};

/// Longest text that a cell takes.
inline constexpr size_t kMaxCellText = 32767;

/// The host's reading of a text put into a cell whose number format is `numberFormat`: numbers, dates,
/// booleans and error words become values, a leading "=" makes a formula, a leading "'" keeps the rest as
/// text, and a cell formatted "@" keeps everything. Nothing when the host refuses the entry: a formula that
/// cannot be parsed, a text that begins with "+", "-" or "@" and is neither number nor formula, a text that
/// is too long.
///
/// Formulas are not calculated: a number, a quoted text or a boolean after "=" gives that value, an unknown
/// word gives #NAME?, everything else 0 until somebody sets the result. A formula cannot be parsed when its
/// parentheses or quotes do not match, when it begins or ends with an operator, or when two operands stand
/// side by side with only blanks between them.
[[nodiscard]] std::optional<Entry> ParseEntry(std::wstring_view text, std::wstring_view numberFormat);

/// The text that a cell shows. Knows General, "@", the fixed, thousands, percent and date formats that
/// ParseEntry gives; any other format shows as General.
[[nodiscard]] std::wstring DisplayText(const CellValue& value, std::wstring_view numberFormat);

/// The shortest text that reads back as the number, at most 15 digits, without exponent where the host shows
/// none.
[[nodiscard]] std::wstring NumberText(double number, int digits);

/// "#N/A" and the like; "#VALUE!" for a number that has no word.
[[nodiscard]] std::wstring_view ErrorWord(long number);

/// Whether the format shows numbers as dates.
[[nodiscard]] bool IsDateFormat(std::wstring_view numberFormat);

}  // namespace qv::devhost::memory
