#include "tools/autofill_field.h"

#include <algorithm>
#include <array>

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

/// Words that begin an example, each with a colon behind it; compared with ASCII letters lower-cased.
constexpr std::array<std::wstring_view, 6> kExampleWords = {L"example", L"eg",   L"e.g.",
                                                            L"示例",    L"范例", L"例如"};
constexpr std::wstring_view kColons = L":：";
constexpr std::size_t kLongestWord = 7;
constexpr std::ptrdiff_t kFewestLines = 2;

bool IsLine(wchar_t unit) {
  constexpr wchar_t kEnDash = 0x2013;
  constexpr wchar_t kEmDash = 0x2014;
  return unit == L'_' || unit == L'-' || unit == kEnDash || unit == kEmDash;
}

bool IsExample(std::wstring_view text) {
  const std::size_t colon = text.substr(0, kLongestWord + 1).find_first_of(kColons);
  if (colon == std::wstring_view::npos) return false;
  const std::wstring_view word = text.substr(0, colon);
  return std::ranges::any_of(kExampleWords,
                             [word](std::wstring_view known) { return EqualsIgnoreAsciiCase(word, known); });
}

bool IsUnderline(std::wstring_view text) {
  return std::ranges::all_of(text, [](wchar_t unit) { return IsLine(unit) || IsSpace(unit); }) &&
         std::ranges::count_if(text, IsLine) >= kFewestLines;
}

std::wstring_view KindName(AutofillKind kind) {
  switch (kind) {
    case AutofillKind::kExamplePlaceholder:
      return L"example_placeholder";
    case AutofillKind::kUnderlinePlaceholder:
      return L"underline_placeholder";
    default:
      return L"empty";
  }
}

/// Texts are appended one after the other: there may be a hundred thousand fields.
void AppendText(std::wstring& out, std::wstring_view name, std::wstring_view text) {
  out += name;
  out += JsonQuote(text);
}

/// `rowText` is quoted already: fields of one row share it.
void AppendField(std::wstring& out, const AutofillField& field, const std::wstring& rowText) {
  AppendText(out, L"{\"id\":", field.id);
  AppendText(out, L",\"kind\":", KindName(field.kind));
  AppendText(out, L",\"label\":", field.label);
  AppendText(out, L",\"placeholderText\":", field.placeholderText);
  AppendText(out, L",\"currentValue\":", field.currentValue);
  out += Concat(L",\"row\":", field.row, L",\"col\":", field.col);
  AppendText(out, L",\"address\":", field.address);
  AppendText(out, L",\"context\":{\"left\":", field.context.left);
  AppendText(out, L",\"above\":", field.context.above);
  out += L",\"rowText\":";
  out += rowText;
  out += L"}}";
}

}  // namespace

std::optional<AutofillKind> ClassifyAutofillText(std::wstring_view text) {
  const std::wstring_view trimmed = Trim(text);
  if (trimmed.empty()) return AutofillKind::kEmpty;
  if (IsExample(trimmed)) return AutofillKind::kExamplePlaceholder;
  if (IsUnderline(trimmed)) return AutofillKind::kUnderlinePlaceholder;
  return std::nullopt;
}

std::wstring AutofillScanResult(std::span<const AutofillField> fields, const RangeGeometry& usedRange,
                                bool holdsData) {
  std::wstring out = L"{\"fields\":[";
  const std::wstring* rowText = nullptr;
  std::wstring quoted;
  for (const AutofillField& field : fields) {
    if (&field != &fields.front()) out += L',';
    if (rowText == nullptr || *rowText != field.context.rowText) quoted = JsonQuote(field.context.rowText);
    rowText = &field.context.rowText;
    AppendField(out, field, quoted);
  }
  out += Concat(L"],\"usedRange\":{\"rows\":", usedRange.rows, L",\"cols\":", usedRange.cols, L",\"row0\":",
                usedRange.firstRow, L",\"col0\":", usedRange.firstCol, L'}');
  if (fields.empty() && holdsData) out += L",\"fieldsEmptyButUsedRangePopulated\":true";
  return out += L'}';
}

std::wstring AutofillUnavailableResult(std::wstring_view reason) {
  return Concat(L"{\"fields\":[],\"scanUnavailable\":true,\"scanError\":", JsonQuote(reason), L'}');
}

}  // namespace qv
