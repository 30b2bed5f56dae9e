#include <gtest/gtest.h>

#include <string>

#include "foundation/text.h"
#include "tools/calculation_mode.h"
#include "tools/chart_args.h"
#include "tools/duplicate_args.h"
#include "tools/line_args.h"
#include "tools/sheet_choice.h"
#include "tools/sheet_name.h"

namespace qv {
namespace {

TEST(SheetName, IsCleanedOfWhatHostsRefuse) {
  const std::wstring x31(31, L'x');
  const std::pair<std::wstring, std::wstring> cases[] = {
      {L"Data", L"Data"},
      {L"a/b:c", L"abc"},
      {L":\\/?*[]", L"Sheet"},
      {L"", L"Sheet"},
      {L" ' ' ", L"Sheet"},
      {L"  'Q1' ", L"Q1"},
      {L"it's  fine", L"it's  fine"},
      {L"[ 'a' ]", L"a"},
      {std::wstring(40, L'x'), x31},
      {x31.substr(1) + L"'x", x31.substr(1)},
      {x31.substr(1) + L" x", x31.substr(1) + L" "},
      {x31.substr(1) + L"\xD83D\xDE00", x31.substr(1)},
      {std::wstring(40, L'\''), L"Sheet"},
  };
  for (const auto& [given, wanted] : cases)
    EXPECT_EQ(CleanSheetName(given), wanted);
}

TEST(SheetName, WithANumberIsNeverTooLong) {
  EXPECT_EQ(NumberedSheetName(L"Data", 2), L"Data (2)");
  EXPECT_EQ(NumberedSheetName(std::wstring(27, L'x'), 9), std::wstring(27, L'x') + L" (9)");
  EXPECT_EQ(NumberedSheetName(std::wstring(31, L'x'), 51), std::wstring(26, L'x') + L" (51)");
}

TEST(CalculationMode, WordsAreExact) {
  EXPECT_EQ(CalculationModeOf(L"manual"), -4135);
  EXPECT_EQ(CalculationModeOf(L"automatic"), -4105);
  EXPECT_EQ(CalculationModeOf(L"semiautomatic"), 2);
  for (const wchar_t* word : {L"Manual", L"", L"manual ", L"auto"})
    EXPECT_FALSE(CalculationModeOf(word).has_value());
  EXPECT_EQ(CalculationWordOf(2), L"semiautomatic");
  EXPECT_EQ(CalculationWordOf(0), L"unknown");
}

TEST(LineArgs, IndicesAreSortedFromTheHighestDown) {
  using Indices = std::vector<std::int32_t>;
  const std::pair<const wchar_t*, Indices> cases[] = {
      {LR"({"indices":[2,9,2,0,-4]})", {9, 2, 2}},
      {LR"({"indices":[99999999999,3.7,1e3,2.0,"4",null,[5],{"a":6},true]})", {2147483647, 1000, 2}},
      {LR"({"indices":[]})", {}},
      {LR"({"indices":7})", {}},
      {LR"({"indices":[1,2)", {}},
      {L"", {}},
  };
  for (const auto& [json, wanted] : cases)
    EXPECT_EQ(ParseLineIndices(ToolArguments(json)).numbers, wanted);
  EXPECT_EQ(ParseLineIndices(ToolArguments(LR"({"indices":[0,"x"]})")).given, 2U);
}

TEST(LineArgs, OnlyAWholeRangeGoesBeforeIndices) {
  const std::pair<const wchar_t*, bool> cases[] = {
      {LR"({"range":"A1"})", true},
      {LR"({"range":"nonsense"})", true},
      {LR"({"range":"","row":1})", false},
      {LR"({"range":null,"row":1,"col":1})", true},
      {LR"({"range":7})", false},
      {LR"({"row1":1,"col1":1})", false},
      {LR"({"row1":1,"col1":1,"row2":2,"col2":2})", true},
  };
  for (const auto& [json, named] : cases)
    EXPECT_EQ(NamesRange(ToolArguments(json)), named) << ToUtf8(json);
}

TEST(SheetChoice, WhatIsTheObjectsOwnGoesBeforeWhatIsNot) {
  const struct {
    const wchar_t* json;
    const wchar_t* name;
    std::optional<std::int32_t> index;
  } cases[] = {
      {LR"({"name":"A","index":2})", L"A", {}},
      {LR"({"index":2,"from":{"name":"A"}})", L"", 2},
      {LR"({"name":"","index":2})", L"", 2},
      {LR"({"from":{"name":"A"}})", L"A", {}},
      {LR"({"from":{"index":3}})", L"", 3},
      {LR"({"index":1e0})", L"", 1},
      {LR"({"index":1.5})", L"", 0},
      {LR"({"index":"2"})", L"", 0},
      {LR"({"index":null})", L"", {}},
      {L"{}", L"", {}},
  };
  for (const auto& [json, name, index] : cases) {
    const SheetChoice choice = ParseSheetChoice(ToolArguments(json));
    EXPECT_EQ(choice.name, name) << ToUtf8(json);
    EXPECT_EQ(choice.index, index) << ToUtf8(json);
  }
}

TEST(LineArgs, ARangeMustEndInTheModesDirection) {
  const auto parsed = [](const wchar_t* range, LineMode mode) {
    const std::wstring json = std::wstring(LR"({"range":")") + range + L"\"}";
    return ParseLineRange(ToolArguments(json), mode).has_value();
  };
  EXPECT_TRUE(parsed(L"B2:C3", LineMode::kRows));
  EXPECT_TRUE(parsed(L"2:3", LineMode::kRows));
  EXPECT_FALSE(parsed(L"B:C", LineMode::kRows));
  EXPECT_TRUE(parsed(L"B:C", LineMode::kColumns));
  EXPECT_FALSE(parsed(L"2:3", LineMode::kColumns));
  EXPECT_EQ(LineAt(LineMode::kColumns, 3), (RangeArgs{-1, 3, -1, 3}));
}

TEST(DuplicateArgs, ColumnsAreCheckedAgainstTheRange) {
  using Columns = std::vector<std::int32_t>;
  const struct {
    const wchar_t* json;
    Columns columns;
    std::wstring_view error;
  } cases[] = {
      {L"{}", {1, 2, 3}, L""},
      {LR"({"columns":[]})", {1, 2, 3}, L""},
      {LR"({"columns":null,"compare_columns":[3,1,3]})", {3, 1}, L""},
      {LR"({"columns":[2],"compare_columns":[1]})", {2}, L""},
      {LR"({"columns":2})", {2}, L""},
      {LR"({"columns":[4]})", {}, L"columns 超出范围列数"},
      {LR"({"columns":[1.5]})", {}, L"columns 参数无效"},
      {LR"({"columns":[-1]})", {}, L"columns 参数无效"},
      {LR"({"columns":"B"})", {}, L"columns 参数无效"},
      {LR"({"columns":[[1]]})", {}, L"columns 参数无效"},
      {LR"({"columns":{"a":1}})", {}, L"columns 参数无效"},
  };
  for (const auto& [json, columns, error] : cases) {
    const CompareColumns result = ParseCompareColumns(ToolArguments(json), 3);
    EXPECT_EQ(result.columns, columns);
    EXPECT_EQ(result.error, error);
  }
  EXPECT_TRUE(HasHeader(ToolArguments(L"{}")));
  EXPECT_FALSE(HasHeader(ToolArguments(LR"({"has_header":false})")));
}

TEST(ChartArgs, WhatIsNotAboveZeroStaysTheDefault) {
  EXPECT_EQ(ParseChartPlace(ToolArguments(L"{}")), (ChartPlace{300, 50, 400, 300}));
  EXPECT_EQ(ParseChartPlace(ToolArguments(LR"({"left":0,"top":-1,"width":1e999,"height":"9"})")),
            ChartPlace());
  EXPECT_EQ(ParseChartPlace(ToolArguments(LR"({"left":1,"top":2.5,"width":3,"height":4})")),
            (ChartPlace{1, 2.5, 3, 4}));
}

}  // namespace
}  // namespace qv
