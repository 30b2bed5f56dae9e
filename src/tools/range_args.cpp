#include "tools/range_args.h"

#include <limits>
#include <utility>

namespace qv {
namespace {

constexpr std::int32_t kWhole = -1;

/// One side of the colon; a missing half is `kWhole`.
struct Corner {
  std::int32_t row = kWhole;
  std::int32_t col = kWhole;
};

/// Takes digits of a number from the front; nothing when the number is 0 or beyond 32 bits, `kWhole` when
/// there are none.
template <typename DigitOf>
std::optional<std::int32_t> TakeNumber(std::wstring_view& text, std::int64_t base, const DigitOf& digitOf) {
  std::int64_t number = 0;
  std::size_t taken = 0;
  for (; taken < text.size(); ++taken) {
    const std::int64_t digit = digitOf(text[taken]);
    if (digit < 0) break;
    number = number * base + digit;
    if (number > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  }
  text.remove_prefix(taken);
  if (taken == 0) return kWhole;
  return number > 0 ? std::optional(static_cast<std::int32_t>(number)) : std::nullopt;
}

/// 1 to 26, or -1.
std::int64_t LetterValue(wchar_t unit) {
  if (unit >= L'a' && unit <= L'z') return unit - L'a' + 1;
  return unit >= L'A' && unit <= L'Z' ? unit - L'A' + 1 : -1;
}

std::int64_t DigitValue(wchar_t unit) {
  return unit >= L'0' && unit <= L'9' ? unit - L'0' : -1;
}

std::optional<Corner> ParseCorner(std::wstring_view text) {
  if (text.empty()) return std::nullopt;
  const std::optional<std::int32_t> col = TakeNumber(text, 26, LetterValue);
  const std::optional<std::int32_t> row = TakeNumber(text, 10, DigitValue);
  if (!col || !row || !text.empty()) return std::nullopt;
  return Corner{*row, *col};
}

bool AreSameKind(std::int32_t first, std::int32_t second) {
  return (first == kWhole) == (second == kWhole);
}

RangeArgs Ordered(RangeArgs range) {
  if (range.row1 > range.row2) std::swap(range.row1, range.row2);
  if (range.col1 > range.col2) std::swap(range.col1, range.col2);
  return range;
}

}  // namespace

std::optional<RangeArgs> ParseA1(std::wstring_view text) {
  const std::size_t colon = text.find(L':');
  const std::optional<Corner> first = ParseCorner(text.substr(0, colon));
  std::optional<Corner> second =
      colon == std::wstring_view::npos ? first : ParseCorner(text.substr(colon + 1));
  if (!first || !second) return std::nullopt;
  // "B3:D" is B3:D3.
  if (second->row == kWhole) second->row = first->row;
  // "B:D9" or "B3:4" names no rectangle.
  if (!AreSameKind(first->row, second->row) || !AreSameKind(first->col, second->col)) return std::nullopt;
  return Ordered({first->row, first->col, second->row, second->col});
}

std::optional<RangeArgs> ParseRangeArgs(const ToolArguments& arguments) {
  if (std::optional<RangeArgs> range = ParseA1(arguments.Text(L"range"))) return range;
  const std::int32_t row = arguments.Integer(L"row");
  const std::int32_t col = arguments.Integer(L"col");
  if (row >= 1 && col >= 1) return RangeArgs{row, col, row, col};
  const RangeArgs range = Ordered({arguments.Integer(L"row1"), arguments.Integer(L"col1"),
                                   arguments.Integer(L"row2"), arguments.Integer(L"col2")});
  return range.row1 >= 1 && range.col1 >= 1 ? std::optional(range) : std::nullopt;
}

}  // namespace qv
