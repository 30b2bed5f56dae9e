#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

// JSON is built by concatenation and read by small scanners that look for one quoted key anywhere in the
// text. The readers never fail: an absent, malformed or differently typed member reads as its documented
// default.

/// `text` with JSON escapes: \t \n \r \" \\ and \u00xx for other control characters; all else unchanged.
[[nodiscard]] std::wstring JsonEscape(std::wstring_view text);

/// The escaped text between quotation marks.
[[nodiscard]] std::wstring JsonQuote(std::wstring_view text);

/// "[" + the quoted texts joined by "," + "]".
[[nodiscard]] std::wstring JsonQuotedArray(const std::vector<std::wstring>& texts);

/// The string value of the first occurrence of the quoted key that a colon follows; empty when absent.
[[nodiscard]] std::wstring JsonGetString(std::wstring_view json, std::wstring_view key);

/// True when the value is the bare word true or begins with the digit 1; tabs before the value are not
/// skipped.
[[nodiscard]] bool JsonGetBool(std::wstring_view json, std::wstring_view key);

/// The leading decimal integer of the value, saturated to 32 bits; 0 when absent or no number.
[[nodiscard]] std::int32_t JsonGetInt(std::wstring_view json, std::wstring_view key);

/// The leading decimal or exponent number of the value; 0.0 when absent or no number.
[[nodiscard]] double JsonGetDouble(std::wstring_view json, std::wstring_view key);

/// Like `JsonGetString`, but the first occurrence of the quoted key counts even without a colon.
[[nodiscard]] std::wstring JsonFindString(std::wstring_view json, std::wstring_view key);

/// True unless the value after the next colon is the bare word false. A flag added later stays on in files
/// that were written before it existed.
[[nodiscard]] bool JsonGetFlagDefaultTrue(std::wstring_view json, std::wstring_view key);

/// What every reader looks for: the key between quotation marks, as it is.
[[nodiscard]] std::wstring JsonKeyNeedle(std::wstring_view key);

/// Whether the quoted key occurs anywhere; tells an absent member from an empty or false one.
[[nodiscard]] bool JsonHasKey(std::wstring_view json, std::wstring_view key);

/// Decodes a JSON string from just behind its opening quotation mark up to the first unescaped one or the end
/// of the text. `end`, when given, receives the index of the closing quotation mark (or the text's size).
[[nodiscard]] std::wstring JsonDecodeString(std::wstring_view json, std::size_t begin,
                                            std::size_t* end = nullptr);

/// The strings of the array that follows the first occurrence of the quoted key with a colon. Elements that
/// are no strings are skipped; nothing when there is no such array or it is not closed.
[[nodiscard]] std::optional<std::vector<std::wstring>> JsonGetStringArray(std::wstring_view json,
                                                                          std::wstring_view key);

}  // namespace qv
