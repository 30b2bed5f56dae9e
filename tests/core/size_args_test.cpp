#include "tools/size_args.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qv {

void PrintTo(const SizeChange& change, std::ostream* out) {
  *out << (change.axis == SizeAxis::kColumns ? "columns " : "rows ") << change.first << "-" << change.last
       << " " << change.size.value_or(-1);
}

namespace {

constexpr SizeAxis kColumns = SizeAxis::kColumns;
constexpr SizeAxis kRows = SizeAxis::kRows;

SizeArgs Parse(std::wstring_view json) {
  return ParseSizeArgs(ToolArguments(json));
}

TEST(SizeArguments, NameColumnsAndRowsInEveryShape) {
  struct Case {
    const wchar_t* json;
    std::vector<SizeChange> changes;
  };
  const Case cases[] = {
      {LR"({"range":"B2:D4","width":15,"height":20.5})", {{kColumns, 2, 4, 15.0}, {kRows, 2, 4, 20.5}}},
      {LR"({"range":"B:D","width":15,"height":20})", {{kColumns, 2, 4, 15.0}}},
      {LR"({"range":"2:4","width":15,"height":20})", {{kRows, 2, 4, 20.0}}},
      {LR"({"row1":4,"col1":3,"row2":2,"col2":1,"width":9})", {{kColumns, 1, 3, 9.0}}},
      {LR"({"columns":[1,"C","e:F","B2:D4","12"],"width":8})",
       {{kColumns, 1, 1, 8.0},
        {kColumns, 3, 3, 8.0},
        {kColumns, 5, 6, 8.0},
        {kColumns, 2, 4, 8.0},
        {kColumns, 12, 12, 8.0}}},
      {LR"({"columns":[{"col":"B","width":8},{"col":3},{"range":"E:F","width":2}],"width":5})",
       {{kColumns, 2, 2, 8.0}, {kColumns, 3, 3, 5.0}, {kColumns, 5, 6, 2.0}}},
      {LR"({"rows":[{"row":2,"height":30},{"range":"4:6","height":12}],"columns":[{"range":"B2:D4","width":1}]})",
       {{kColumns, 2, 4, 1.0}, {kRows, 2, 2, 30.0}, {kRows, 4, 6, 12.0}}},
      {LR"({"columns":[{"range":"B2:D4","width":10}],"height":30})", {{kColumns, 2, 4, 10.0}}},
      {LR"({"col":"AB","width":10,"row":7,"height":30})", {{kColumns, 28, 28, 10.0}, {kRows, 7, 7, 30.0}}},
      {LR"({"columns":"C","width":10})", {{kColumns, 3, 3, 10.0}}},
      {LR"({"columns":[2],"width":"10"})", {}},
      {L"{}", {}},
      {L"no object", {}},
  };
  for (const Case& each : cases) {
    const SizeArgs sizes = Parse(each.json);
    EXPECT_EQ(sizes.changes, each.changes) << ::testing::PrintToString(std::wstring(each.json));
    EXPECT_FALSE(sizes.fitsUsedColumns || sizes.fitsUsedRows);
  }
}

TEST(SizeArguments, RefuseATargetThatNamesNothing) {
  for (const wchar_t* json :
       {LR"({"range":"$A:$C","autofit":true})", LR"({"range":"","autofit":true})",
        LR"({"range":7,"width":9})", LR"({"columns":["$A"],"autofit":true})", LR"({"columns":["A",null]})",
        LR"({"columns":[[1]]})", LR"({"columns":[{}]})", LR"({"columns":[{"range":"2:4"}]})",
        LR"({"columns":"2:4","width":9})", LR"({"rows":[0],"height":9})", LR"({"rows":{},"height":9})",
        LR"({"col":"C1x","width":10})", LR"({"row":-1,"autofit":true})", LR"({"row1":3,"autofit":true})",
        LR"({"columns":["A"],"rows":["A"],"autofit":true})"}) {
    const SizeArgs sizes = Parse(json);
    EXPECT_EQ(sizes.error, L"range 参数缺失或无效") << ::testing::PrintToString(std::wstring(json));
    EXPECT_TRUE(sizes.changes.empty());
    EXPECT_FALSE(sizes.fitsUsedColumns || sizes.fitsUsedRows);
  }
}

TEST(SizeArguments, TakeAsManyEntriesAsTheirLimit) {
  const auto list = [](std::size_t count) {
    std::wstring json = LR"({"width":5,"columns":[1)";
    for (std::size_t i = 1; i < count; ++i)
      json += L",1";
    return json + L"]}";
  };
  EXPECT_EQ(Parse(list(kMaxSizeEntries)).changes.size(), kMaxSizeEntries);
  const SizeArgs more = Parse(list(kMaxSizeEntries + 1));
  EXPECT_TRUE(more.changes.empty());
  EXPECT_EQ(more.error, L"columns 或 rows 条目过多（>5000），请减少");
}

TEST(SizeArguments, FitWhatIsNamedWithoutASize) {
  EXPECT_EQ(Parse(LR"({"range":"B2:C3","autofit":true})").changes,
            (std::vector<SizeChange>{{kColumns, 2, 3, std::nullopt}, {kRows, 2, 3, std::nullopt}}));
  EXPECT_EQ(Parse(LR"({"range":"B2:C3","autofit":["rows"]})").changes,
            (std::vector<SizeChange>{{kRows, 2, 3, std::nullopt}}));
  EXPECT_EQ(Parse(LR"({"columns":[{"col":1,"width":9},2],"autofit":"columns"})").changes,
            (std::vector<SizeChange>{{kColumns, 1, 1, 9.0}, {kColumns, 2, 2, std::nullopt}}));
  EXPECT_TRUE(Parse(LR"({"range":"B2:C3","autofit":false})").changes.empty());
}

TEST(SizeArguments, FitTheUsedRangeWhenNothingIsNamed) {
  struct Case {
    const wchar_t* json;
    bool columns;
    bool rows;
  };
  for (const Case& each :
       {Case{LR"({"autofit":true})", true, true}, Case{LR"({"autofit":["columns"]})", true, false},
        Case{LR"({"autofit":["columns","rows"]})", true, true}, Case{LR"({"autofit":"rows"})", false, true},
        // A flag is about what is named; a list names the axis itself.
        Case{LR"({"columns":["A"],"autofit":true})", false, false},
        Case{LR"({"columns":[{"col":"A","width":5}],"autofit":["rows"]})", false, true},
        Case{LR"({"columns":[],"autofit":true})", false, false},
        Case{LR"({"columns":null,"range":null,"autofit":true})", true, true},
        Case{LR"({"range":"B:D","autofit":["rows"]})", false, false},
        Case{LR"({"autofit":["cells"]})", false, false}, Case{LR"({"autofit":"yes"})", false, false}}) {
    const SizeArgs sizes = Parse(each.json);
    EXPECT_EQ(sizes.fitsUsedColumns, each.columns) << ::testing::PrintToString(std::wstring(each.json));
    EXPECT_EQ(sizes.fitsUsedRows, each.rows) << ::testing::PrintToString(std::wstring(each.json));
  }
}

}  // namespace
}  // namespace qv
