#include "foundation/text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>

namespace qv {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(std::uint32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(std::uint32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

void AppendUtf8(std::string& out, std::uint32_t point) {
  const auto put = [&out](std::uint32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (point < 0x80) {
    put(point);
  } else if (point < 0x800) {
    put(0xC0 | point >> 6);
    put(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    put(0xE0 | point >> 12);
    put(0x80 | (point >> 6 & 0x3F));
    put(0x80 | (point & 0x3F));
  } else {
    put(0xF0 | point >> 18);
    put(0x80 | (point >> 12 & 0x3F));
    put(0x80 | (point >> 6 & 0x3F));
    put(0x80 | (point & 0x3F));
  }
}

void AppendUtf16(std::wstring& out, std::uint32_t point) {
  if (point < 0x10000) {
    out.push_back(static_cast<wchar_t>(point));
    return;
  }
  out.push_back(static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10)));
  out.push_back(static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
}

/// Length and payload bits of a lead byte, or length 0 for a byte that cannot lead.
struct Lead {
  std::size_t length;
  std::uint32_t bits;
  std::uint32_t smallest;
};

Lead ReadLead(unsigned char byte) {
  if (byte < 0x80) return {1, byte, 0};
  if ((byte & 0xE0) == 0xC0) return {2, byte & 0x1FU, 0x80};
  if ((byte & 0xF0) == 0xE0) return {3, byte & 0x0FU, 0x800};
  if ((byte & 0xF8) == 0xF0) return {4, byte & 0x07U, 0x10000};
  return {0, 0, 0};
}

/// One code point at `at`; a malformed sequence gives U+FFFD and a length of one byte.
std::pair<std::uint32_t, std::size_t> ReadPoint(std::string_view bytes, std::size_t at) {
  const Lead lead = ReadLead(static_cast<unsigned char>(bytes[at]));
  if (lead.length == 0 || at + lead.length > bytes.size()) return {kReplacement, 1};
  std::uint32_t point = lead.bits;
  for (std::size_t i = 1; i < lead.length; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[at + i]);
    if ((byte & 0xC0) != 0x80) return {kReplacement, 1};
    point = point << 6 | (byte & 0x3FU);
  }
  const bool valid = point >= lead.smallest && point <= 0x10FFFF && !(point >= 0xD800 && point <= 0xDFFF);
  return valid ? std::pair{point, lead.length} : std::pair{kReplacement, std::size_t{1}};
}

wchar_t LowerAscii(wchar_t unit) {
  return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + (L'a' - L'A')) : unit;
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 2);
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto point = static_cast<std::uint32_t>(text[i]);
    if (IsHighSurrogate(point) && i + 1 < text.size() &&
        IsLowSurrogate(static_cast<std::uint32_t>(text[i + 1]))) {
      point = 0x10000 + ((point - 0xD800) << 10) + (static_cast<std::uint32_t>(text[i + 1]) - 0xDC00);
      ++i;
    } else if (IsHighSurrogate(point) || IsLowSurrogate(point)) {
      point = kReplacement;
    }
    AppendUtf8(out, point);
  }
  return out;
}

std::wstring FromUtf8(std::string_view bytes) {
  std::wstring out;
  out.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size();) {
    const auto [point, length] = ReadPoint(bytes, i);
    AppendUtf16(out, point);
    i += length;
  }
  return out;
}

std::wstring Widen(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}

namespace detail {

void AppendTo(std::wstring& out, std::wstring_view part) {
  out += part;
}

void AppendTo(std::wstring& out, wchar_t part) {
  out += part;
}

void AppendTo(std::wstring& out, const Hex& part) {
  std::array<char, 24> buffer{};
  std::snprintf(buffer.data(), buffer.size(), part.upper ? "%0*llX" : "%0*llx", part.digits,
                static_cast<unsigned long long>(part.value));
  out += Widen(buffer.data());
}

void AppendTo(std::wstring& out, const Padded& part) {
  std::array<char, 32> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%0*lld", part.digits, static_cast<long long>(part.value));
  out += Widen(buffer.data());
}

void AppendTo(std::wstring& out, const Fixed& part) {
  std::array<char, 352> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.*f", part.digits, part.value);
  out += Widen(buffer.data());
}

void AppendSigned(std::wstring& out, std::int64_t value) {
  out += std::to_wstring(value);
}

void AppendUnsigned(std::wstring& out, std::uint64_t value) {
  out += std::to_wstring(value);
}

}  // namespace detail

std::wstring_view BoolWord(bool value) {
  return value ? L"true" : L"false";
}

bool IsSpace(wchar_t unit) {
  const auto code = static_cast<std::uint32_t>(unit);
  if (code == 0x20 || (code >= 0x09 && code <= 0x0D)) return true;
  if (code < 0x80) return false;
  return code == 0x85 || code == 0xA0 || code == 0x1680 || (code >= 0x2000 && code <= 0x200A) ||
         code == 0x2028 || code == 0x2029 || code == 0x202F || code == 0x205F || code == 0x3000;
}

std::wstring_view TrimRight(std::wstring_view text) {
  while (!text.empty() && IsSpace(text.back()))
    text.remove_suffix(1);
  return text;
}

std::wstring_view Trim(std::wstring_view text) {
  text = TrimRight(text);
  while (!text.empty() && IsSpace(text.front()))
    text.remove_prefix(1);
  return text;
}

bool Contains(std::wstring_view text, std::wstring_view part) {
  return text.find(part) != std::wstring_view::npos;
}

bool EqualsIgnoreAsciiCase(std::wstring_view left, std::wstring_view right) {
  return std::ranges::equal(left, right, [](wchar_t a, wchar_t b) { return LowerAscii(a) == LowerAscii(b); });
}

std::wstring ReplaceAll(std::wstring_view text, std::wstring_view from, std::wstring_view to) {
  if (from.empty()) return std::wstring(text);
  std::wstring out;
  std::size_t at = 0;
  for (std::size_t hit = text.find(from); hit != std::wstring_view::npos; hit = text.find(from, at)) {
    out += text.substr(at, hit - at);
    out += to;
    at = hit + from.size();
  }
  out += text.substr(at);
  return out;
}

std::wstring FileNameOf(std::wstring_view path) {
  const std::size_t slash = path.find_last_of(L"\\/");
  return std::wstring(slash == std::wstring_view::npos ? path : path.substr(slash + 1));
}

std::int32_t ClampToInt32(std::int64_t value) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

}  // namespace qv
