#include "workbook/cell_text.h"

#include <algorithm>
#include <array>

#include "foundation/text.h"

namespace qv {
namespace {

/// Ideographs, kana and Hangul syllables count as letters whatever the platform's character types say.
struct Block {
  wchar_t first;
  wchar_t last;
};
constexpr std::array<Block, 4> kLetterBlocks = {
    {{0x4E00, 0x9FFF}, {0x3400, 0x4DBF}, {0x3040, 0x30FF}, {0xAC00, 0xD7AF}}};

bool IsLetter(wchar_t unit, AlphabeticTest isAlphabetic) {
  // Most texts are decided here, without asking the platform.
  if (unit < 0x80) return (unit >= L'a' && unit <= L'z') || (unit >= L'A' && unit <= L'Z');
  const auto holds = [unit](const Block& block) { return unit >= block.first && unit <= block.last; };
  return std::ranges::any_of(kLetterBlocks, holds) || isAlphabetic(unit);
}

/// Writes a number so that it ends before `end`; the position of its first character.
wchar_t* WriteNumberBefore(wchar_t* end, std::int32_t value) {
  std::int64_t rest = value < 0 ? -std::int64_t{value} : value;
  do {
    *--end = static_cast<wchar_t>(L'0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  if (value < 0) *--end = L'-';
  return end;
}

}  // namespace

bool IsUntranslatable(std::wstring_view text, AlphabeticTest isAlphabetic) {
  // Numeric texts ("-1,234.5") need no test of their own: digits, signs and blanks are no letters.
  return std::ranges::none_of(text, [isAlphabetic](wchar_t unit) { return IsLetter(unit, isAlphabetic); });
}

std::optional<std::wstring_view> CollectableText(std::wstring_view raw, AlphabeticTest isAlphabetic) {
  std::wstring_view text = TrimRight(raw);
  if (IsUntranslatable(text, isAlphabetic)) return std::nullopt;
  const std::size_t lastBreak = text.rfind(L'\n');
  if (lastBreak == std::wstring_view::npos) return text;
  // In a bilingual cell the last line is the translation of an earlier run.
  text = TrimRight(text.substr(0, lastBreak));
  if (IsUntranslatable(text, isAlphabetic)) return std::nullopt;
  return text;
}

std::wstring UnitIdOf(std::int32_t row, std::int32_t col) {
  // Called for every collected cell: one allocation at most, unlike the general joining of texts.
  std::array<wchar_t, 2 * (1 + 11)> buffer;
  wchar_t* const end = buffer.data() + buffer.size();
  wchar_t* at = WriteNumberBefore(end, col);
  *--at = L'C';
  at = WriteNumberBefore(at, row);
  *--at = L'R';
  return {at, end};
}

std::wstring ColumnLetters(std::int32_t col) {
  std::wstring letters;
  for (std::int64_t rest = col; rest > 0; rest = (rest - 1) / 26)
    letters.push_back(static_cast<wchar_t>(L'A' + (rest - 1) % 26));
  std::ranges::reverse(letters);
  return letters;
}

std::wstring A1Address(std::int32_t row, std::int32_t col) {
  const std::wstring letters = ColumnLetters(col);
  return letters.empty() ? UnitIdOf(row, col) : Concat(letters, row);
}

}  // namespace qv
