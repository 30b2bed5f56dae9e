#include <gtest/gtest.h>

#include "engines/memory/a1.h"
#include "engines/memory/cell_value.h"

namespace qv::devhost::memory {
namespace {

TEST(Entry, ReadsTextsAsTheHostDoes) {
  struct Case {
    const wchar_t* text;
    CellValue value;
    const wchar_t* formula = L"";
    const wchar_t* format = L"General";
  };
  const Case cases[] = {
      // Numbers, percentages and groups of thousands.
      {L"12", 12.0},
      {L" -3.5 ", -3.5},
      {L"+1", 1.0},
      {L"1e3", 1000.0},
      {L"1,234.5", 1234.5},
      {L"50%", 0.5},
      {L"(5)", -5.0},
      {L"12,34", L"12,34"},
      {L"1 000", L"1 000"},
      // Dates and times; what only looks like one is text.
      {L"2024/01/02", 45293.0},
      {L"1/2/2024", 45293.0},
      {L"2024-13-01", L"2024-13-01"},
      {L"555-1234", L"555-1234"},
      {L"257-1", L"257-1"},
      {L"12:00", 0.5},
      // Words.
      {L"true", true},
      {L"#N/A", ErrorValue{2042}},
      // Texts, and what keeps a text a text.
      {L"Hello", L"Hello"},
      {L"'=1+1", L"=1+1"},
      {L"'12", L"12"},
      {L"=1+1", L"=1+1", L"", L"@"},
      {L"12", L"12", L"", L"@"},
      {L"=", L"="},
      {L"-", L"-"},
      // Formulas; only plain results are known.
      {L"=1+1", 0.0, L"=1+1"},
      {L"=\"a b\"", L"a b", L"=\"a b\""},
      {L"=IF(A1>0, \"x y\", B2)", 0.0, L"=IF(A1>0, \"x y\", B2)"},
      {L"='My sheet'!A1", 0.0, L"='My sheet'!A1"},
      {L"=hello", ErrorValue{2029}, L"=hello"},
      {L"-A1", 0.0, L"=-A1"},
      {L"@SUM(A1:A3)", 0.0, L"=SUM(A1:A3)"},
  };
  for (const Case& each : cases) {
    const auto entry = ParseEntry(each.text, each.format);
    ASSERT_TRUE(entry) << testing::PrintToString(each.text);
    EXPECT_EQ(entry->value, each.value) << testing::PrintToString(each.text);
    EXPECT_EQ(entry->formula, each.formula) << testing::PrintToString(each.text);
  }
}

TEST(Entry, RefusesWhatTheHostCannotParse) {
  for (const wchar_t* text : {L"=hello world", L"=(1", L"=1)", L"=\"open", L"= total", L"=== x ===", L"=1+",
                              L"- first point", L"+ see above now", L"@someone", L"@someone here"}) {
    EXPECT_FALSE(ParseEntry(text, L"General")) << testing::PrintToString(text);
  }
  EXPECT_TRUE(ParseEntry(std::wstring(kMaxCellText, L'x'), L"General"));
  EXPECT_FALSE(ParseEntry(std::wstring(kMaxCellText + 1, L'x'), L"General"));
}

TEST(Entry, ShowsValuesInTheirFormat) {
  EXPECT_EQ(DisplayText(0.1 + 0.2, L"General"), L"0.3");
  EXPECT_EQ(DisplayText(1234567.0, L"#,##0"), L"1,234,567");
  EXPECT_EQ(DisplayText(-123.0, L"#,##0"), L"-123");
  EXPECT_EQ(DisplayText(0.256, L"0%"), L"26%");
  EXPECT_EQ(DisplayText(45293.0, L"yyyy-mm-dd"), L"2024-01-02");
  EXPECT_EQ(DisplayText(ErrorValue{2007}, L"General"), L"#DIV/0!");
}

TEST(Address, IsReadAndWrittenBothWays) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {{L"b3:a1", L"$A$1:$B$3"},
                                                             {L"$C$2", L"$C$2"},
                                                             {L"A:C", L"$A:$C"},
                                                             {L"2:4", L"$2:$4"},
                                                             {L"XFD1048576", L"$XFD$1048576"},
                                                             {L"A1,C3:D4", L"$A$1,$C$3:$D$4"}};
  for (const auto& [text, address] : cases) {
    const auto areas = ParseAddress(text);
    ASSERT_TRUE(areas) << testing::PrintToString(text);
    EXPECT_EQ(FormatAddress(*areas, true, true), address);
  }
  for (const wchar_t* text : {L"", L"A", L"1", L"A0", L"XFE1", L"A1048577", L"A1:B", L"A1,", L"1A", L"A-1"})
    EXPECT_FALSE(ParseAddress(text)) << testing::PrintToString(text);
}

}  // namespace
}  // namespace qv::devhost::memory
