#include "engines/memory/cell_value.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "engines/memory/a1.h"
#include "foundation/text.h"

namespace qv::devhost::memory {
namespace {

constexpr std::wstring_view kGeneral = L"General";
constexpr std::wstring_view kDateFormat = L"m/d/yyyy";
constexpr std::wstring_view kTimeFormat = L"h:mm:ss";

struct ErrorName {
  std::wstring_view word;
  long number;
};
constexpr std::array<ErrorName, 7> kErrors = {{{L"#NULL!", 2000},
                                               {L"#DIV/0!", 2007},
                                               {L"#VALUE!", 2015},
                                               {L"#REF!", 2023},
                                               {L"#NAME?", 2029},
                                               {L"#NUM!", 2036},
                                               {L"#N/A", 2042}}};
constexpr long kNameError = 2029;

bool IsDigit(wchar_t unit) {
  return unit >= L'0' && unit <= L'9';
}
bool IsOneOf(wchar_t unit, std::wstring_view set) {
  return set.find(unit) != std::wstring_view::npos;
}

std::optional<double> PlainNumber(std::wstring_view text) {
  std::string ascii;
  bool digit = false;
  for (const wchar_t unit : text) {
    if (!IsDigit(unit) && !IsOneOf(unit, L".+-eE")) return std::nullopt;
    digit = digit || IsDigit(unit);
    ascii += static_cast<char>(unit);
  }
  if (!digit) return std::nullopt;
  const char* begin = ascii.c_str();
  if (*begin == '+') ++begin;
  double number = 0;
  const auto [end, error] = std::from_chars(begin, ascii.c_str() + ascii.size(), number);
  if (error != std::errc() || end != ascii.c_str() + ascii.size()) return std::nullopt;
  return number;
}

/// "1,234.5": groups of three before the point.
std::optional<std::wstring> WithoutThousands(std::wstring_view text) {
  const size_t point = std::min(text.find(L'.'), text.size());
  std::wstring plain;
  size_t sinceComma = 0;
  bool comma = false;
  for (size_t i = 0; i < point; ++i) {
    if (text[i] == L',') {
      if (comma ? sinceComma != 3 : sinceComma == 0 || sinceComma > 3) return std::nullopt;
      comma = true;
      sinceComma = 0;
      continue;
    }
    if (IsDigit(text[i])) ++sinceComma;
    plain += text[i];
  }
  if (comma && sinceComma != 3) return std::nullopt;
  return plain + std::wstring(text.substr(point));
}

std::optional<Entry> ParseNumber(std::wstring_view text) {
  Entry entry;
  bool negative = false;
  if (text.size() > 2 && text.front() == L'(' && text.back() == L')') {
    negative = true;
    text = text.substr(1, text.size() - 2);
    if (IsOneOf(text.front(), L"+-")) return std::nullopt;
  }
  const bool percent = !text.empty() && text.back() == L'%';
  if (percent) text.remove_suffix(1);
  const auto plain = WithoutThousands(text);
  if (!plain) return std::nullopt;
  auto number = PlainNumber(*plain);
  if (!number) return std::nullopt;
  if (percent) {
    *number /= 100;
    entry.numberFormat = Contains(text, L".") ? L"0.00%" : L"0%";
  } else if (Contains(text, L",")) {
    entry.numberFormat = Contains(text, L".") ? L"#,##0.00" : L"#,##0";
  }
  entry.value = negative ? -*number : *number;
  return entry;
}

std::optional<std::vector<int>> SplitNumbers(std::wstring_view text, wchar_t separator) {
  std::vector<int> numbers{0};
  size_t digits = 0;
  for (const wchar_t unit : text) {
    if (unit == separator) {
      if (digits == 0) return std::nullopt;
      numbers.push_back(0);
      digits = 0;
    } else if (IsDigit(unit) && digits < 4) {
      numbers.back() = numbers.back() * 10 + (unit - L'0');
      ++digits;
    } else {
      return std::nullopt;
    }
  }
  if (digits == 0) return std::nullopt;
  return numbers;
}

int CurrentYear() {
  const std::chrono::year_month_day today(
      std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now()));
  return static_cast<int>(today.year());
}

/// Serial number of a day. Day 1 is 1 January 1900, and the host counts a 29 February 1900 that never was, so
/// from March 1900 on day 0 is 30 December 1899.
std::optional<double> DateSerial(int year, int month, int day) {
  using namespace std::chrono;
  if (year >= 0 && year < 30) year += 2000;
  if (year >= 30 && year < 100) year += 1900;
  // The calendar types keep only the low bits of what they are given.
  if (month > 12 || day > 31) return std::nullopt;
  const year_month_day date{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                            std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok() || year < 1900 || year > 9999) return std::nullopt;
  const auto zero = sys_days(std::chrono::year(1899) / 12 / 30);
  const auto serial = static_cast<double>((sys_days(date) - zero).count());
  return serial <= 60 ? serial - 1 : serial;
}

/// y/m/d, m/d/y and m/d (of this year) with "/" or "-".
std::optional<Entry> ParseDate(std::wstring_view text) {
  for (const wchar_t separator : {L'/', L'-'}) {
    const auto parts = SplitNumbers(text, separator);
    if (!parts || parts->size() < 2 || parts->size() > 3) continue;
    const auto& p = *parts;
    std::optional<double> serial;
    if (p.size() == 2) {
      serial = DateSerial(CurrentYear(), p[0], p[1]);
    } else {
      serial = p[0] > 31 ? DateSerial(p[0], p[1], p[2]) : DateSerial(p[2], p[0], p[1]);
    }
    if (serial) return Entry{*serial, L"", false, std::wstring(kDateFormat)};
  }
  return std::nullopt;
}

std::optional<Entry> ParseTime(std::wstring_view text) {
  const auto parts = SplitNumbers(text, L':');
  if (!parts || parts->size() < 2 || parts->size() > 3) return std::nullopt;
  const auto& p = *parts;
  const int seconds = p.size() == 3 ? p[2] : 0;
  if (p[1] > 59 || seconds > 59) return std::nullopt;
  return Entry{(p[0] * 3600 + p[1] * 60 + seconds) / 86400.0, L"", false, std::wstring(kTimeFormat)};
}

std::optional<CellValue> ParseWord(std::wstring_view text) {
  if (EqualsIgnoreAsciiCase(text, L"TRUE")) return true;
  if (EqualsIgnoreAsciiCase(text, L"FALSE")) return false;
  for (const ErrorName& error : kErrors) {
    if (EqualsIgnoreAsciiCase(text, error.word)) return ErrorValue{error.number};
  }
  return std::nullopt;
}

/// Whether the body of a formula (without "=") can be parsed, by the rules that the header states.
bool IsFormulaBody(std::wstring_view body) {
  if (body.empty() || IsSpace(body.front()) || IsOneOf(body.front(), L"=*/^&<>,;)%")) return false;
  int depth = 0;
  bool blank = false;
  bool operand = false;
  for (size_t i = 0; i < body.size(); ++i) {
    const wchar_t unit = body[i];
    if (IsSpace(unit)) {
      blank = true;
      continue;
    }
    if (unit == L'"' || unit == L'\'') {
      if (operand) return false;
      i = body.find(unit, i + 1);
      if (i == std::wstring_view::npos) return false;
      // A doubled quote inside a text simply starts the next piece of it; a quoted sheet name goes on with
      // "!".
      operand = unit == L'"' && !(i + 1 < body.size() && body[i + 1] == L'"');
    } else if (IsOneOf(unit, L"+-*/^&=<>,;:!")) {
      operand = false;
    } else if (unit == L'(') {
      if (operand && blank) return false;
      ++depth;
      operand = false;
    } else if (unit == L')') {
      if (--depth < 0) return false;
      operand = true;
    } else {
      if (operand && blank) return false;
      operand = true;
    }
    blank = false;
  }
  return depth == 0 && operand;
}

bool IsLoneWord(std::wstring_view body) {
  if (ParseAddress(body)) return false;
  return std::all_of(body.begin(), body.end(), [](wchar_t unit) {
    return unit > 0x7F || unit == L'_' || IsDigit(unit) || (unit >= L'A' && unit <= L'Z') ||
           (unit >= L'a' && unit <= L'z');
  });
}

CellValue FormulaResult(std::wstring_view body) {
  if (const auto number = PlainNumber(body)) return *number;
  if (const auto word = ParseWord(body)) return *word;
  const bool quoted = body.size() >= 2 && body.front() == L'"' && body.back() == L'"';
  if (quoted && body.substr(1, body.size() - 2).find(L'"') == std::wstring_view::npos) {
    return std::wstring(body.substr(1, body.size() - 2));
  }
  std::wstring_view word = body;
  while (!word.empty() && IsOneOf(word.front(), L"+-"))
    word.remove_prefix(1);
  if (IsLoneWord(word)) return ErrorValue{kNameError};
  return 0.0;
}

std::optional<Entry> ParseFormula(std::wstring_view body) {
  if (!IsFormulaBody(body)) return std::nullopt;
  return Entry{FormulaResult(body), Concat(L"=", body), false, L""};
}

std::wstring GroupThousands(std::wstring digits) {
  const size_t point = std::min(digits.find(L'.'), digits.size());
  const size_t first = !digits.empty() && digits.front() == L'-' ? 1 : 0;
  for (size_t i = point; i > first + 3; i -= 3)
    digits.insert(i - 3, 1, L',');
  return digits;
}

std::wstring FixedText(double number, int digits) {
  return Concat(Fixed{number, digits});
}

std::wstring DateText(double serial, std::wstring_view format) {
  using namespace std::chrono;
  const auto whole = static_cast<int>(std::floor(serial));
  const year_month_day date(sys_days(std::chrono::year(1899) / 12 / 30) +
                            days(whole < 60 ? whole + 1 : whole));
  const int year = static_cast<int>(date.year());
  const unsigned month = static_cast<unsigned>(date.month());
  const unsigned day = static_cast<unsigned>(date.day());
  if (format == L"yyyy-mm-dd") return Concat(year, L"-", Padded{month, 2}, L"-", Padded{day, 2});
  return Concat(month, L"/", day, L"/", year);
}

std::wstring TimeText(double serial) {
  const auto seconds = static_cast<long>(std::lround((serial - std::floor(serial)) * 86400.0)) % 86400;
  return Concat(seconds / 3600, L":", Padded{seconds / 60 % 60, 2}, L":", Padded{seconds % 60, 2});
}

std::wstring FormattedNumber(double number, std::wstring_view format) {
  if (format == L"0") return FixedText(number, 0);
  if (format == L"0.00") return FixedText(number, 2);
  if (format == L"#,##0") return GroupThousands(FixedText(number, 0));
  if (format == L"#,##0.00") return GroupThousands(FixedText(number, 2));
  if (format == L"0%") return FixedText(number * 100, 0) + L"%";
  if (format == L"0.00%") return FixedText(number * 100, 2) + L"%";
  if (format == kTimeFormat) return TimeText(number);
  if (IsDateFormat(format) && number >= 0 && number < 2958466) return DateText(number, format);
  return NumberText(number, 11);
}

}  // namespace

std::optional<Entry> ParseEntry(std::wstring_view text, std::wstring_view numberFormat) {
  if (text.size() > kMaxCellText) return std::nullopt;
  if (text.empty()) return Entry{};
  if (text.front() == L'\'') return Entry{std::wstring(text.substr(1)), L"", true, L""};
  if (numberFormat == L"@") return Entry{std::wstring(text), L"", false, L""};
  if (text.front() == L'=' && text.size() > 1) return ParseFormula(text.substr(1));

  const std::wstring_view trimmed = Trim(text);
  if (auto number = ParseNumber(trimmed)) return number;
  if (auto date = ParseDate(trimmed)) return date;
  if (auto time = ParseTime(trimmed)) return time;
  if (const auto word = ParseWord(trimmed)) return Entry{*word, L"", false, L""};

  if (text.size() > 1 && IsOneOf(text.front(), L"+-")) return ParseFormula(text);
  if (text.size() > 1 && text.front() == L'@') {
    if (text.back() != L')') return std::nullopt;
    return ParseFormula(text.substr(1));
  }
  return Entry{std::wstring(text), L"", false, L""};
}

std::wstring DisplayText(const CellValue& value, std::wstring_view numberFormat) {
  if (const auto* number = std::get_if<double>(&value)) {
    if (numberFormat == kGeneral || numberFormat == L"@") return NumberText(*number, 11);
    return FormattedNumber(*number, numberFormat);
  }
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? L"TRUE" : L"FALSE";
  if (const auto* text = std::get_if<std::wstring>(&value)) return *text;
  if (const auto* error = std::get_if<ErrorValue>(&value)) return std::wstring(ErrorWord(error->number));
  return {};
}

std::wstring NumberText(double number, int digits) {
  std::array<char, 64> buffer{};
  const int length = std::snprintf(buffer.data(), buffer.size(), "%.*g", digits, number);
  return Widen(std::string_view(buffer.data(), static_cast<size_t>(length)));
}

std::wstring_view ErrorWord(long number) {
  for (const ErrorName& error : kErrors) {
    if (error.number == number) return error.word;
  }
  return L"#VALUE!";
}

bool IsDateFormat(std::wstring_view numberFormat) {
  return numberFormat.find_first_of(L"yd") != std::wstring_view::npos || Contains(numberFormat, L"h:mm");
}

}  // namespace qv::devhost::memory
