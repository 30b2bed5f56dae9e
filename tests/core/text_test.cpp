#include "foundation/text.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

TEST(Text, Utf8RoundTripsEveryLength) {
  const std::string bytes = "a\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80";
  const std::wstring text = L"a\u00E9\u4E2D\xD83D\xDE00";
  EXPECT_EQ(FromUtf8(bytes), text);
  EXPECT_EQ(ToUtf8(text), bytes);
}

TEST(Text, MalformedInputBecomesReplacementCharacters) {
  struct Case {
    std::string bytes;
    std::wstring text;
  };
  const Case cases[] = {
      {"\x80", L"\uFFFD"},
      {"\xC3", L"\uFFFD"},
      {"\xC0\x80", L"\uFFFD\uFFFD"},            // overlong NUL
      {"\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},  // encoded surrogate
      {"\xF5\x80\x80\x80x", L"\uFFFD\uFFFD\uFFFD\uFFFDx"},
      {"\xE4\xB8"
       "a",
       L"\uFFFD\uFFFD"
       L"a"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(FromUtf8(c.bytes), c.text) << c.bytes;
  EXPECT_EQ(ToUtf8(std::wstring(L"x") + wchar_t(0xD83D)), "x\xEF\xBF\xBD");
}

TEST(Text, ConcatWritesNumbersAsTheLogsExpect) {
  EXPECT_EQ(Concat(L"hr=0x", Hex8(static_cast<std::int32_t>(0x80020009)), L" row=", -3L, L" n=", 7ULL),
            L"hr=0x80020009 row=-3 n=7");
  EXPECT_EQ(Concat(Padded{7, 2}, L':', Fixed{15.25, 1}, L' ', true, Hex{255}), L"07:15.2 1ff");
}

TEST(Text, TrimmingKnowsWideBlanks) {
  EXPECT_EQ(TrimRight(L"a b \u3000\u00A0\t\r\n"), L"a b");
  EXPECT_EQ(Trim(L" \u2003x "), L"x");
  EXPECT_EQ(TrimRight(L"\u200B"), L"\u200B");
}

TEST(Text, PathsAndReplacements) {
  EXPECT_EQ(FileNameOf(L"C:\\a/b\\c.xlsx"), L"c.xlsx");
  EXPECT_EQ(FileNameOf(L"c.xlsx"), L"c.xlsx");
  EXPECT_EQ(ReplaceAll(L"{n} of {n}", L"{n}", L"{n}{n}"), L"{n}{n} of {n}{n}");
  EXPECT_TRUE(EqualsIgnoreAsciiCase(L"WPS.exe", L"wps.EXE"));
  EXPECT_FALSE(EqualsIgnoreAsciiCase(L"\u00C9", L"\u00E9"));
}

}  // namespace
}  // namespace qv
