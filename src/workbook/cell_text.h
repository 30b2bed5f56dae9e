#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qv {

/// Longest text of a cell that is translated, in UTF-16 units.
inline constexpr std::size_t kMaxCellTextLength = 20000;

/// Whether a unit counts as a letter: alphabetic by `isAlphabetic` (the platform's character types), or in
/// the CJK, kana and Hangul blocks.
using AlphabeticTest = bool (*)(wchar_t unit);

/// Whether a text needs no translation: empty, numeric, or without any letter.
[[nodiscard]] bool IsUntranslatable(std::wstring_view text, AlphabeticTest isAlphabetic);

/// The part of a cell's raw text to collect (trailing blanks and the last of several lines cut off), or
/// nothing when the cell is skipped.
[[nodiscard]] std::optional<std::wstring_view> CollectableText(std::wstring_view raw,
                                                               AlphabeticTest isAlphabetic);

/// "R3C2".
[[nodiscard]] std::wstring UnitIdOf(std::int32_t row, std::int32_t col);

/// "AB" for column 28; empty below 1.
[[nodiscard]] std::wstring ColumnLetters(std::int32_t col);

/// "B3" for row 3, column 2 (both 1-based); "R3C0" where the column has no letters.
[[nodiscard]] std::wstring A1Address(std::int32_t row, std::int32_t col);

}  // namespace qv
