#include "tools/autofill_fill.h"

#include <algorithm>
#include <utility>

#include "foundation/json_parts.h"
#include "tools/tool_arguments.h"
#include "tools/whole_number.h"

namespace qv {
namespace {

/// Hosts keep 15 digits of a number; longer ones in front of the point are a card's or an account's.
constexpr std::size_t kMaxIntegerDigits = 15;

/// What is behind the digits at the front.
std::wstring_view BehindDigits(std::wstring_view text) {
  text.remove_prefix(std::min(text.size(), text.find_first_not_of(L"0123456789")));
  return text;
}

/// An optional minus, digits, and perhaps a point and more digits.
bool IsPlainNumber(std::wstring_view text) {
  if (text.starts_with(L'-')) text.remove_prefix(1);
  const std::wstring_view rest = BehindDigits(text);
  if (rest.size() == text.size()) return false;
  return rest.empty() || (rest.front() == L'.' && rest.size() > 1 && BehindDigits(rest.substr(1)).empty());
}

/// Whether a plain number would be shown with other digits in front of its point: "007", a card's number. The
/// many digits behind the point of what was calculated are no reason.
bool LosesDigits(std::wstring_view number) {
  if (number.starts_with(L'-')) number.remove_prefix(1);
  const std::size_t digits = number.size() - BehindDigits(number).size();
  return (digits > 1 && number.front() == L'0') || digits > kMaxIntegerDigits;
}

/// Digits with a single "E" among them, as in a part number: hosts read 12E3 as 12000.
bool IsExponentForm(std::wstring_view text) {
  const std::wstring_view rest = BehindDigits(text);
  return rest.size() > 1 && rest.size() < text.size() && (rest.front() == L'e' || rest.front() == L'E') &&
         BehindDigits(rest.substr(1)).empty();
}

CellContentKind KindOfText(std::wstring_view text) {
  if (text.empty()) return CellContentKind::kText;
  if (IsFormulaText(text)) return CellContentKind::kFormula;
  if (IsPlainNumber(text)) return LosesDigits(text) ? CellContentKind::kText : CellContentKind::kNumber;
  const bool needsCare = std::wstring_view(L"+-@'").find(text.front()) != std::wstring_view::npos;
  return needsCare || IsExponentForm(text) ? CellContentKind::kText : CellContentKind::kTyped;
}

/// What a value that is a text, a number or a flag puts into a cell; nothing for any other.
std::optional<CellContent> ContentOf(std::wstring_view value) {
  if (value == L"true") return CellContent{L"TRUE", CellContentKind::kFlag};
  if (value == L"false") return CellContent{L"FALSE", CellContentKind::kFlag};
  if (const std::optional<double> number = NumberOfValue(value))
    return CellContent{NumberText(*number), CellContentKind::kNumber};
  std::optional<std::wstring> text = TextOfValue(value);
  if (!text) return std::nullopt;
  const CellContentKind kind = KindOfText(*text);
  return CellContent{*std::move(text), kind};
}

}  // namespace

std::vector<AutofillFill> ParseAutofillFills(std::wstring_view json) {
  std::vector<AutofillFill> fills;
  const std::optional<std::vector<std::wstring_view>> items = JsonElementsOf(json);
  if (!items) return fills;
  for (const std::wstring_view text : *items) {
    const ToolArguments item(text);
    AutofillFill fill{WholeNumberOfValue(item.Value(L"row")).value_or(0),
                      WholeNumberOfValue(item.Value(L"col")).value_or(0), item.Text(L"action"),
                      ContentOf(item.Value(L"value")), NumberOfValue(item.Value(L"confidence")).value_or(0)};
    if (fill.row >= 1 && fill.col >= 1) fills.push_back(std::move(fill));
  }
  return fills;
}

std::optional<CellContent> ContentOfFill(const AutofillFill& fill) {
  if (fill.action == L"clear") return CellContent{};
  return fill.action == L"fill" ? fill.value : std::nullopt;
}

}  // namespace qv
