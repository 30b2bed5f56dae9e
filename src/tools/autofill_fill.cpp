#include "tools/autofill_fill.h"

#include <algorithm>
#include <utility>

#include "foundation/json_parts.h"
#include "tools/tool_arguments.h"

namespace qv {
namespace {

/// Hosts keep 15 digits of a number.
constexpr std::ptrdiff_t kMaxDigits = 15;

bool IsDigit(wchar_t unit) {
  return unit >= L'0' && unit <= L'9';
}

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

/// Whether the number would be shown with other digits: "007", a card's number.
bool LosesDigits(std::wstring_view number) {
  if (number.starts_with(L'-')) number.remove_prefix(1);
  const bool hasLeadingZero = number.size() > 1 && number[0] == L'0' && IsDigit(number[1]);
  return hasLeadingZero || std::ranges::count_if(number, IsDigit) > kMaxDigits;
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

std::wstring ValueTextOf(const ToolArguments& item) {
  const std::wstring_view value = item.Value(L"value");
  if (value == L"true") return L"TRUE";
  if (value == L"false") return L"FALSE";
  return NumberOfValue(value) ? std::wstring(value) : item.Text(L"value");
}

}  // namespace

std::vector<AutofillFill> ParseAutofillFills(std::wstring_view json) {
  std::vector<AutofillFill> fills;
  const std::optional<std::vector<std::wstring_view>> items = JsonElementsOf(json);
  if (!items) return fills;
  for (const std::wstring_view text : *items) {
    const ToolArguments item(text);
    AutofillFill fill{item.Integer(L"row"), item.Integer(L"col"), item.Text(L"action"), ValueTextOf(item),
                      NumberOfValue(item.Value(L"confidence")).value_or(0)};
    if (fill.row >= 1 && fill.col >= 1) fills.push_back(std::move(fill));
  }
  return fills;
}

std::optional<CellContent> ContentOfFill(const AutofillFill& fill) {
  if (fill.action == L"clear") return CellContent{};
  if (fill.action != L"fill") return std::nullopt;
  return CellContent{fill.value, KindOfText(fill.value)};
}

}  // namespace qv
