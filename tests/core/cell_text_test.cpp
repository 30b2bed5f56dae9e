#include "workbook/cell_text.h"

#include <gtest/gtest.h>

#include <string>

namespace qv {
namespace {

/// Stands for the platform's character types: Latin-1 and Cyrillic letters only.
bool IsAlphabetic(wchar_t unit) {
  return (unit >= 0xC0 && unit <= 0xFF && unit != 0xD7 && unit != 0xF7) || (unit >= 0x410 && unit <= 0x44F);
}

TEST(CellText, TextsWithoutALetterNeedNoTranslation) {
  for (const wchar_t* text : {L"", L"   ", L"12,345.6", L"-3", L"+1 000", L"2024/01/02", L"12:30", L"50 %",
                              L"---", L"\u2026", L"\u20AC 5", L"\u0664\u0662", L"\xD83D\xDE00"})
    EXPECT_TRUE(IsUntranslatable(text, &IsAlphabetic)) << testing::PrintToString(std::wstring(text));
}

TEST(CellText, OneLetterOfAnyScriptIsEnough) {
  for (const wchar_t* text : {L"abc", L"Z", L"12 kg", L"\u00E9", L"\u0416", L"\u4E2D", L"\u9FFF", L"\u3400",
                              L"\u4DBF", L"\u3042", L"\u30FF", L"\uAC00", L"\uD7AF", L"1. \u4E2D"})
    EXPECT_FALSE(IsUntranslatable(text, &IsAlphabetic)) << testing::PrintToString(std::wstring(text));
}

TEST(CellText, LetterBlocksEndWhereTheyEnd) {
  for (const wchar_t unit :
       {L'\u33FF', L'\u4DC0', L'\u303F', L'\u3100', L'\uABFF', L'\uD7B0', L'\uA000', L'@', L'[', L'`', L'{'})
    EXPECT_TRUE(IsUntranslatable(std::wstring(1, unit), &IsAlphabetic))
        << std::hex << static_cast<unsigned>(unit);
}

TEST(CellText, CollectsWithoutTrailingBlanksAndWithoutTheLastOfSeveralLines) {
  struct Case {
    const wchar_t* raw;
    const wchar_t* text;
  };
  const Case cases[] = {
      {L"Hello", L"Hello"},
      {L"  Hello \t\u3000", L"  Hello"},
      {L"one\ntwo", L"one"},
      {L"one\ntwo\nthree", L"one\ntwo"},
      {L"one\r\ntwo", L"one"},
      {L"one \n\ntwo", L"one"},
      // The end of the text is trimmed first, so a final line feed starts no line.
      {L"one\n", L"one"},
      {L"one\n42", L"one"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(CollectableText(c.raw, &IsAlphabetic), c.text) << testing::PrintToString(std::wstring(c.raw));
}

TEST(CellText, SkipsWhatHasNoLetterBeforeOrAfterTheCut) {
  // In the last three only the line that is cut off has letters.
  for (const wchar_t* raw : {L"", L" \n ", L"42", L"42\nanswer", L"\nanswer", L"1\n2\nanswer"})
    EXPECT_EQ(CollectableText(raw, &IsAlphabetic), std::nullopt) << testing::PrintToString(std::wstring(raw));
}

}  // namespace
}  // namespace qv
