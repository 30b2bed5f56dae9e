#include "tools/range_args.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

namespace qv {
namespace {

std::optional<RangeArgs> Parse(std::wstring_view json) {
  return ParseRangeArgs(ToolArguments(json));
}

TEST(A1Text, NamesCellsBlocksAndWholeRowsAndColumns) {
  const std::vector<std::pair<std::wstring, RangeArgs>> cases = {
      {L"B3", {3, 2, 3, 2}},
      {L"a1", {1, 1, 1, 1}},
      {L"A1:B3", {1, 1, 3, 2}},
      {L"B3:A1", {1, 1, 3, 2}},
      {L"A3:B1", {1, 1, 3, 2}},
      {L"aa10:Z2", {2, 26, 10, 27}},
      {L"XFD1048576", {1048576, 16384, 1048576, 16384}},
      {L"A:C", {-1, 1, -1, 3}},
      {L"C:A", {-1, 1, -1, 3}},
      {L"D", {-1, 4, -1, 4}},
      {L"2:4", {2, -1, 4, -1}},
      {L"4:2", {2, -1, 4, -1}},
      {L"7", {7, -1, 7, -1}},
      {L"B3:D", {3, 2, 3, 4}},
      {L"A007", {7, 1, 7, 1}},
  };
  for (const auto& [text, range] : cases) {
    const std::optional<RangeArgs> parsed = ParseA1(text);
    ASSERT_TRUE(parsed) << std::string(text.begin(), text.end());
    EXPECT_EQ(*parsed, range) << std::string(text.begin(), text.end());
  }
}

TEST(A1Text, IsRefusedWhenItIsAnythingElse) {
  for (const std::wstring text :
       {L"",    L":",    L"A1:",  L":A1",  L"$A$1", L"$A1",          L"Sheet1!A1", L"A 1",
        L" A1", L"A1 ",  L"1A",   L"A1B",  L"A-1",  L"A1:B2:C3",     L"A1,B2",     L"R1C1:",
        L"A0",  L"A:C5", L"B3:4", L"3:D4", L"B:3",  L"A99999999999", L"É1",        L"ZZZZZZZZZZZZ1",
        L"Ａ1", L"A１",  L"A1\n"}) {
    EXPECT_FALSE(ParseA1(text)) << ::testing::PrintToString(text);
  }
}

TEST(A1Text, NeverGivesAnUnorderedOrHalfOpenRange) {
  std::mt19937 random(20261121);
  const std::wstring alphabet = L"AZaz019:$ !\"";
  for (int round = 0; round < 20000; ++round) {
    std::wstring text;
    for (auto length = random() % 9; length > 0; --length)
      text += alphabet[random() % alphabet.size()];
    const std::optional<RangeArgs> range = ParseA1(text);
    if (!range) continue;
    EXPECT_LE(range->row1, range->row2);
    EXPECT_LE(range->col1, range->col2);
    EXPECT_EQ(range->row1 == -1, range->row2 == -1);
    EXPECT_EQ(range->col1 == -1, range->col2 == -1);
    EXPECT_FALSE(range->IsWholeRows() && range->IsWholeColumns());
  }
}

TEST(RangeArguments, AreTriedInTheirOrder) {
  EXPECT_EQ(Parse(LR"({"range":"B2:C3","row":9,"col":9})"), (RangeArgs{2, 2, 3, 3}));
  EXPECT_EQ(Parse(LR"({"range":"$B$2","row":9,"col":8})"), (RangeArgs{9, 8, 9, 8}));
  EXPECT_EQ(Parse(LR"({"row":0,"col":8,"row1":5,"col1":4,"row2":2,"col2":6})"), (RangeArgs{2, 4, 5, 6}));
  EXPECT_FALSE(Parse(LR"({"row1":5,"col1":4,"row2":2})"));
  EXPECT_FALSE(Parse(LR"({"row":"3","col":"4"})"));
  EXPECT_FALSE(Parse(LR"({"row":-1,"col":4})"));
  EXPECT_FALSE(Parse(L"{}"));
  EXPECT_FALSE(Parse(L""));
}

TEST(RangeArguments, AreTheObjectsOwnMembersBeforeAnyNestedOnes) {
  EXPECT_EQ(Parse(LR"({"values":[["\"range\":\"Z9\""]],"columns":[{"range":"F:G"}],"range":"A1"})"),
            (RangeArgs{1, 1, 1, 1}));
  EXPECT_EQ(Parse(LR"({"font":{"row":7,"col":7},"row":2,"col":3})"), (RangeArgs{2, 3, 2, 3}));
  // A text that is no object is searched as any message.
  EXPECT_EQ(Parse(LR"({"args":{"range":"C4"},)"), (RangeArgs{4, 3, 4, 3}));
  EXPECT_EQ(Parse(LR"({"args":{"range":"C4"}})"), (RangeArgs{4, 3, 4, 3}));
}

TEST(RangeArguments, OfTheWholeSheetHaveTheirNumberOfCells) {
  EXPECT_EQ(Parse(LR"({"row1":1,"col1":1,"row2":2147483647,"col2":2147483647})")->Cells(),
            2147483647LL * 2147483647LL);
  EXPECT_EQ(Parse(LR"({"range":"A1:CV50"})")->Cells(), kMaxToolCells);
}

TEST(ToolArguments, FindMembersInATextThatIsNoObject) {
  const ToolArguments arguments(LR"({"values":[["say \"fill\": 1"]],"fill":{"color":"#102030"},"width":5,)");
  EXPECT_EQ(arguments.Value(L"fill"), LR"({"color":"#102030"})");
  EXPECT_EQ(arguments.Value(L"values"), LR"([["say \"fill\": 1"]])");
  EXPECT_EQ(arguments.Value(L"width"), L"5");
  EXPECT_EQ(arguments.Value(L"height"), L"");
  // In an object only its own members count, and null is none.
  EXPECT_EQ(ToolArguments(LR"({"a":{"fill":1},"b":null})").Value(L"fill"), L"");
  EXPECT_EQ(ToolArguments(LR"({"a":{"fill":1},"b":null})").Value(L"b"), L"");
  EXPECT_EQ(ToolArguments(LR"({"sheetName":null,"range":"A1"})").Text(L"sheetName"), L"");
}

TEST(ToolArguments, SurviveHostileTexts) {
  const std::wstring deep(200000, L'[');
  for (const std::wstring& text :
       {L"{\"values\":" + deep, L"{\"values\":" + deep + std::wstring(200000, L']') + L"}",
        L"{\"row\":" + std::wstring(100000, L'9') + L",\"col\":1e999999}",
        std::wstring(L"{\"range\":\"\xD800\"}"), std::wstring(L"{\"range\":null,\"row\":null}"),
        std::wstring(L"{\"range\":\"\\u00"), std::wstring(10, L'\0')}) {
    const ToolArguments arguments(text);
    static_cast<void>(ParseRangeArgs(arguments));
    static_cast<void>(NumberOfValue(arguments.Value(L"row")));
    static_cast<void>(arguments.Text(L"sheetName"));
  }
  EXPECT_EQ(ToolArguments(L"{\"row\":99999999999999999999}").Integer(L"row"), 2147483647);
  EXPECT_FALSE(NumberOfValue(L"1e999"));
  EXPECT_FALSE(NumberOfValue(L"\"12\""));
  EXPECT_EQ(NumberOfValue(L"-1.5e2"), -150.0);
}

}  // namespace
}  // namespace qv
