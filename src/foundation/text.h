#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace qv {

/// UTF-8 bytes of UTF-16 text. A lone surrogate becomes U+FFFD. Never fails.
[[nodiscard]] std::string ToUtf8(std::wstring_view text);

/// UTF-16 units of UTF-8 bytes; each malformed byte becomes U+FFFD. Never fails. Code points beyond the BMP
/// become a surrogate pair on every platform, whatever the width of `wchar_t`.
[[nodiscard]] std::wstring FromUtf8(std::string_view bytes);

/// ASCII text widened unit by unit.
[[nodiscard]] std::wstring Widen(std::string_view ascii);

/// Number wrapper that `Concat` writes as hexadecimal without a prefix; `digits` is the minimum width.
struct Hex {
  std::uint64_t value;
  int digits = 1;
  bool upper = false;
};

/// An HRESULT or other 32-bit code in the form "%08X".
[[nodiscard]] constexpr Hex Hex8(std::int64_t code) {
  return Hex{static_cast<std::uint32_t>(code), 8, true};
}

/// A number in the form "%0<digits>lld", for clock fields.
struct Padded {
  std::int64_t value;
  int digits;
};

/// A real number in the form "%.<digits>f", for heights and sizes in log lines.
struct Fixed {
  double value;
  int digits;
};

namespace detail {
void AppendTo(std::wstring& out, std::wstring_view part);
void AppendTo(std::wstring& out, wchar_t part);
void AppendTo(std::wstring& out, const Hex& part);
void AppendTo(std::wstring& out, const Padded& part);
void AppendTo(std::wstring& out, const Fixed& part);
void AppendSigned(std::wstring& out, std::int64_t value);
void AppendUnsigned(std::wstring& out, std::uint64_t value);

template <typename T>
requires(std::is_integral_v<T> && !std::is_same_v<T, wchar_t>) void AppendTo(std::wstring& out, T part) {
  if constexpr (std::is_signed_v<T>) {
    AppendSigned(out, part);
  } else {
    AppendUnsigned(out, part);
  }
}
}  // namespace detail

/// Joins texts, characters and numbers into one text. Integers are written in decimal, booleans as 0 or 1.
/// The type-safe replacement of wide printf, whose "%s" means different things on different C libraries.
template <typename... Parts>
[[nodiscard]] std::wstring Concat(const Parts&... parts) {
  std::wstring out;
  (detail::AppendTo(out, parts), ...);
  return out;
}

/// "true" or "false", as written in JSON and scripts.
[[nodiscard]] std::wstring_view BoolWord(bool value);

/// White space as trimmed from cell texts: space, U+0009–U+000D, U+0085, U+00A0, U+1680, U+2000–U+200A,
/// U+2028, U+2029, U+202F, U+205F and U+3000.
[[nodiscard]] bool IsSpace(wchar_t unit);

[[nodiscard]] std::wstring_view TrimRight(std::wstring_view text);
[[nodiscard]] std::wstring_view Trim(std::wstring_view text);

[[nodiscard]] bool Contains(std::wstring_view text, std::wstring_view part);

/// Equality without regard to the case of ASCII letters; other units must match exactly.
[[nodiscard]] bool EqualsIgnoreAsciiCase(std::wstring_view left, std::wstring_view right);

/// Every occurrence of `from` replaced by `to`; an empty `from` changes nothing.
[[nodiscard]] std::wstring ReplaceAll(std::wstring_view text, std::wstring_view from, std::wstring_view to);

/// What follows the last "\\" or "/", or the whole text.
[[nodiscard]] std::wstring FileNameOf(std::wstring_view path);

/// `value` limited to the range of a signed 32-bit integer.
[[nodiscard]] std::int32_t ClampToInt32(std::int64_t value);

}  // namespace qv
