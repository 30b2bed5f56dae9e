#include "foundation/json_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "foundation/text.h"

namespace qv {
namespace {

constexpr std::size_t kNone = std::wstring_view::npos;
constexpr std::wstring_view kHexDigits = L"0123456789abcdef";

std::size_t SkipAny(std::wstring_view text, std::size_t at, std::wstring_view units) {
  return std::min(text.find_first_not_of(units, at), text.size());
}

/// Index behind the first occurrence of the quoted key, or kNone.
std::size_t FindBehindKey(std::wstring_view json, std::wstring_view key) {
  const std::wstring needle = JsonKeyNeedle(key);
  const std::size_t at = json.find(needle);
  return at == kNone ? kNone : at + needle.size();
}

/// Index behind the colon of the first occurrence of the quoted key that a colon follows, or kNone.
std::size_t FindBehindColon(std::wstring_view json, std::wstring_view key) {
  const std::wstring needle = JsonKeyNeedle(key);
  for (std::size_t at = json.find(needle); at != kNone; at = json.find(needle, at)) {
    at += needle.size();
    const std::size_t colon = SkipAny(json, at, L" \t");
    if (colon < json.size() && json[colon] == L':') return colon + 1;
  }
  return kNone;
}

/// What follows the first occurrence of the quoted key behind spaces and colons; empty when the key is
/// absent.
std::wstring_view ScalarText(std::wstring_view json, std::wstring_view key) {
  const std::size_t behind = FindBehindKey(json, key);
  return behind == kNone ? std::wstring_view() : json.substr(SkipAny(json, behind, L" :"));
}

std::wstring DecodeFrom(std::wstring_view json, std::size_t at) {
  const std::size_t quote = at == kNone ? kNone : json.find(L'"', at);
  return quote == kNone ? std::wstring() : JsonDecodeString(json, quote + 1);
}

bool IsDigit(wchar_t unit) {
  return unit >= L'0' && unit <= L'9';
}

int HexValue(wchar_t unit) {
  if (IsDigit(unit)) return unit - L'0';
  if (unit >= L'a' && unit <= L'f') return unit - L'a' + 10;
  if (unit >= L'A' && unit <= L'F') return unit - L'A' + 10;
  return -1;
}

/// Removes leading white space and one sign; true for a minus. The C number parsers begin like this.
bool TakeSign(std::wstring_view& text) {
  text.remove_prefix(SkipAny(text, 0, L" \t\n\v\f\r"));
  if (text.empty() || (text.front() != L'-' && text.front() != L'+')) return false;
  const bool negative = text.front() == L'-';
  text.remove_prefix(1);
  return negative;
}

/// Four units read as the C library reads a hexadecimal number, its sign and "0x" prefix included.
wchar_t ReadHexUnit(std::wstring_view digits) {
  const bool negative = TakeSign(digits);
  const bool prefixed = digits.size() > 2 && digits[0] == L'0' && (digits[1] == L'x' || digits[1] == L'X') &&
                        HexValue(digits[2]) >= 0;
  if (prefixed) digits.remove_prefix(2);
  std::uint32_t value = 0;
  for (const wchar_t unit : digits) {
    const int digit = HexValue(unit);
    if (digit < 0) break;
    value = value * 16 + static_cast<std::uint32_t>(digit);
  }
  return static_cast<wchar_t>((negative ? 0U - value : value) & 0xFFFF);
}

/// Decodes the escape whose backslash stands at `at`; returns the index behind it.
std::size_t DecodeEscape(std::wstring_view json, std::size_t at, std::wstring& out) {
  if (at + 1 >= json.size()) {
    out += L'\\';
    return at + 1;
  }
  const wchar_t unit = json[at + 1];
  // Four digits and at least one more unit, which a complete string has in its closing quotation mark.
  if (unit == L'u' && json.size() - (at + 2) >= 5) {
    out += ReadHexUnit(json.substr(at + 2, 4));
    return at + 6;
  }
  switch (unit) {
    case L'n':
      out += L'\n';
      break;
    case L'r':
      out += L'\r';
      break;
    case L't':
      out += L'\t';
      break;
    default:
      out += unit;
      break;
  }
  return at + 2;
}

/// Index behind the object or array that begins at `at`, or the text's size when it is not closed.
std::size_t SkipNested(std::wstring_view json, std::size_t at) {
  std::size_t depth = 0;
  for (; at < json.size(); ++at) {
    const wchar_t unit = json[at];
    if (unit == L'"') {
      std::size_t end = 0;
      static_cast<void>(JsonDecodeString(json, at + 1, &end));
      at = end;
    } else if (unit == L'[' || unit == L'{') {
      ++depth;
    } else if ((unit == L']' || unit == L'}') && --depth == 0) {
      return at + 1;
    }
  }
  return json.size();
}

}  // namespace

std::wstring JsonEscape(std::wstring_view text) {
  std::wstring out;
  out.reserve(text.size() + 8);
  for (const wchar_t unit : text) {
    switch (unit) {
      case L'\t':
        out += L"\\t";
        break;
      case L'\n':
        out += L"\\n";
        break;
      case L'\r':
        out += L"\\r";
        break;
      case L'"':
        out += L"\\\"";
        break;
      case L'\\':
        out += L"\\\\";
        break;
      default:
        if (const auto code = static_cast<std::uint32_t>(unit); code < 0x20) {
          out += L"\\u00";
          out += kHexDigits[code >> 4];
          out += kHexDigits[code & 15];
        } else {
          out += unit;
        }
    }
  }
  return out;
}

std::wstring JsonQuote(std::wstring_view text) {
  return Concat(L'"', JsonEscape(text), L'"');
}

std::wstring JsonQuotedArray(const std::vector<std::wstring>& texts) {
  std::wstring out = L"[";
  for (const std::wstring& text : texts) {
    if (out.size() > 1) out += L',';
    out += JsonQuote(text);
  }
  out += L']';
  return out;
}

std::wstring JsonGetString(std::wstring_view json, std::wstring_view key) {
  return DecodeFrom(json, FindBehindColon(json, key));
}

bool JsonGetBool(std::wstring_view json, std::wstring_view key) {
  const std::wstring_view value = ScalarText(json, key);
  return value.starts_with(L"true") || value.starts_with(L'1');
}

std::int32_t JsonGetInt(std::wstring_view json, std::wstring_view key) {
  constexpr std::int64_t kBeyondInt32 = 0x1'0000'0000;
  std::wstring_view value = ScalarText(json, key);
  const bool negative = TakeSign(value);
  std::int64_t number = 0;
  for (const wchar_t unit : value) {
    if (!IsDigit(unit)) break;
    number = std::min(number * 10 + (unit - L'0'), kBeyondInt32);
  }
  return ClampToInt32(negative ? -number : number);
}

double JsonGetDouble(std::wstring_view json, std::wstring_view key) {
  std::wstring_view value = ScalarText(json, key);
  const bool negative = TakeSign(value);
  // The charconv reader also knows "inf" and "nan", which are no JSON; it never looks at the locale.
  value = value.substr(0, value.find_first_not_of(L"0123456789.eE+-"));
  std::string digits;
  for (const wchar_t unit : value)
    digits += static_cast<char>(unit);
  double number = 0.0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error == std::errc::result_out_of_range) {
    const bool tiny = digits.find("e-") != std::string::npos || digits.find("E-") != std::string::npos;
    number = tiny ? 0.0 : HUGE_VAL;
  } else if (error != std::errc{} || digits.starts_with('-')) {
    number = 0.0;
  }
  return negative ? -number : number;
}

std::wstring JsonFindString(std::wstring_view json, std::wstring_view key) {
  return DecodeFrom(json, FindBehindKey(json, key));
}

bool JsonGetFlagDefaultTrue(std::wstring_view json, std::wstring_view key) {
  const std::size_t behind = FindBehindKey(json, key);
  const std::size_t colon = behind == kNone ? kNone : json.find(L':', behind);
  if (colon == kNone) return true;
  return !json.substr(SkipAny(json, colon + 1, L" \t")).starts_with(L"false");
}

std::wstring JsonKeyNeedle(std::wstring_view key) {
  return Concat(L'"', key, L'"');
}

bool JsonHasKey(std::wstring_view json, std::wstring_view key) {
  return Contains(json, JsonKeyNeedle(key));
}

std::wstring JsonDecodeString(std::wstring_view json, std::size_t begin, std::size_t* end) {
  std::wstring out;
  std::size_t at = std::min(begin, json.size());
  while (at < json.size() && json[at] != L'"') {
    if (json[at] == L'\\') {
      at = DecodeEscape(json, at, out);
    } else {
      const std::size_t plainEnd = std::min(json.find_first_of(L"\"\\", at), json.size());
      out += json.substr(at, plainEnd - at);
      at = plainEnd;
    }
  }
  if (end != nullptr) *end = at;
  return out;
}

std::optional<std::vector<std::wstring>> JsonGetStringArray(std::wstring_view json, std::wstring_view key) {
  std::size_t at = FindBehindColon(json, key);
  if (at == kNone) return std::nullopt;
  at = SkipAny(json, at, L" \t\r\n");
  if (at >= json.size() || json[at] != L'[') return std::nullopt;

  std::vector<std::wstring> texts;
  for (++at; at < json.size(); ++at) {
    const wchar_t unit = json[at];
    if (unit == L']') return texts;
    if (unit == L'"') {
      std::size_t end = 0;
      texts.push_back(JsonDecodeString(json, at + 1, &end));
      at = end;
    } else if (unit == L'[' || unit == L'{') {
      at = SkipNested(json, at) - 1;
    }
  }
  return std::nullopt;
}

}  // namespace qv
