#include "translation/row_height.h"

#include <gtest/gtest.h>

#include "translation/bilingual_text.h"

namespace qv {
namespace {

TEST(RowHeight, GrowsByMoreThanFourTenthsOnly) {
  EXPECT_EQ(GrownRowHeight(15.0, 15.3), std::nullopt);
  EXPECT_EQ(GrownRowHeight(15.0, 15.5), 15.5);
  EXPECT_EQ(GrownRowHeight(30.0, 15.0), std::nullopt);
  EXPECT_EQ(GrownRowHeight(15.0, 600.0), 409.0);
  EXPECT_EQ(GrownRowHeight(0.0, 0.9), std::nullopt);  // a hidden row stays hidden
}

TEST(RowHeight, EstimateCountsPiecesAndOverflow) {
  // 0.55 × 10 = 5.5 points a letter: 4 fit into 22.
  EXPECT_EQ(CountWrappedLines(L"abcd", 22.0, 10.0), 1);
  EXPECT_EQ(CountWrappedLines(L"abcde", 22.0, 10.0), 2);
  EXPECT_EQ(CountWrappedLines(L"abcdefghi", 22.0, 10.0), 3);
  EXPECT_EQ(CountWrappedLines(L"", 22.0, 10.0), 1);
  EXPECT_EQ(CountWrappedLines(L"a\nb\r\nc", 22.0, 10.0), 4);
  EXPECT_EQ(CountWrappedLines(L"ab\u200B\u200Bcd", 22.0, 10.0), 1);
  // 10.5 points an ideograph: 2 fit.
  EXPECT_EQ(CountWrappedLines(L"中文字", 22.0, 10.0), 2);
  // Never narrower than 8 points, and a character wider than the line still takes one line.
  EXPECT_EQ(CountWrappedLines(L"ab", 0.0, 10.0), 2);
}

TEST(RowHeight, EstimateFallsBackWhereTheHostIsSilent) {
  const double line = 11.0 * 1.35;
  EXPECT_DOUBLE_EQ(EstimateRowHeight(L"a\nb", {}), line * 2 + 6.0);
  EXPECT_DOUBLE_EQ(EstimateRowHeight(L"a\nb", {5.0, std::nullopt, std::nullopt}), line * 2 + 6.0);
  EXPECT_DOUBLE_EQ(EstimateRowHeight(L"a", {6.0, std::nullopt, std::nullopt}), 15.0);
  EXPECT_DOUBLE_EQ(EstimateRowHeight(std::wstring(100, L'\n'), {}), 409.0);
  // 12 letters of 6.05 points: one line of 80 × 0.94, two of 10 columns × 7 × 0.94.
  const std::wstring text(12, L'x');
  EXPECT_DOUBLE_EQ(EstimateRowHeight(text, {}), line + 6.0);
  EXPECT_DOUBLE_EQ(EstimateRowHeight(text, {11.0, std::nullopt, 10.0}), line * 2 + 6.0);
  EXPECT_DOUBLE_EQ(EstimateRowHeight(text, {11.0, 7.0, 10.0}), line * 2 + 6.0);
  EXPECT_DOUBLE_EQ(EstimateRowHeight(text, {11.0, 200.0, 10.0}), line + 6.0);
}

TEST(RowHeight, WideCharactersAreKnownAtTheirEdges) {
  for (const wchar_t unit : std::wstring(L"\u1100\u115F\u2E80\uA4CF\uAC00\uD7AF\uFE6F\uFF60\uFFE6"))
    EXPECT_TRUE(IsWideCharacter(unit)) << static_cast<int>(unit);
  for (const wchar_t unit : std::wstring(L"a\u10FF\u1160\u2E7F\uA4D0\uFE70\uFF61"))
    EXPECT_FALSE(IsWideCharacter(unit)) << static_cast<int>(unit);
}

TEST(BilingualText, TranslationStartsBehindTheTrimmedSource) {
  const BilingualValue value = MakeBilingualValue(L"Hello  ", L"ho");
  EXPECT_EQ(value.text, L"Hello\nho");
  EXPECT_EQ(value.originalLength, 7U);
  EXPECT_EQ(value.trimmedLength, 5U);
  EXPECT_EQ(value.start, 7);
  EXPECT_EQ(value.length, 2);
}

}  // namespace
}  // namespace qv
