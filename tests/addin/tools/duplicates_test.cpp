#include <string>

#include "addin/tools/tools_fixture.h"
#include "foundation/text.h"

namespace qv::test {
namespace {

/// Fruits and sizes under a header in B2:C7, and something beside them.
class Duplicates : public ToolsTest {
 protected:
  void SetUp() override {
    ToolsTest::SetUp();
    const wchar_t* const rows[][2] = {{L"Fruit", L"Size"}, {L"apple", L"1"}, {L"Apple", L"1"},
                                      {L"pear", L"1"},     {L"apple", L"2"}, {L"fruit", L"size"}};
    for (int i = 0; i < 6; ++i) {
      SetText("B" + std::to_string(i + 2), rows[i][0]);
      SetText("C" + std::to_string(i + 2), rows[i][1]);
    }
    SetText("D7", L"beside");
  }
  [[nodiscard]] std::wstring Fruits() {
    std::wstring fruits;
    for (long row = 2; row <= 7; ++row) {
      const auto* const cell = engine.Sheet(L"Sheet1").Find(row, 2);
      fruits += cell == nullptr ? L"" : devhost::memory::DisplayText(cell->value, L"General");
      fruits += L'|';
    }
    return fruits;
  }
  void ExpectUnchanged() { EXPECT_EQ(Fruits(), L"Fruit|apple|Apple|pear|apple|fruit|"); }
};

constexpr const wchar_t* kTool = L"excelRemoveDuplicates";

TEST_F(Duplicates, RowsThatRepeatAnEarlierOneGo) {
  const TraceTail trace;
  EXPECT_EQ(Run(kTool, LR"({"range":"B2:C7","confirm":true})"),
            LR"({"ok":true,"removed":1,"rowsBefore":5,"rowsAfter":4})");
  EXPECT_EQ(Fruits(), L"Fruit|apple|pear|apple|fruit||");
  EXPECT_NE(engine.Sheet(L"Sheet1").Find(7, 4), nullptr);
  EXPECT_TRUE(trace.Has(L"ExcelRemoveDuplicates enter json={\"range\":\"B2:C7\",\"confirm\":true}\r\n"));
  EXPECT_TRUE(trace.Has(L"ExcelRemoveDuplicates try header=1 params=2 hr=0x00000000\r\n"));
  EXPECT_TRUE(trace.Has(L"ExcelRemoveDuplicates done removed=1\r\n"));
}

TEST_F(Duplicates, OnlyTheNamedColumnsAreCompared) {
  EXPECT_EQ(Run(kTool, LR"({"range":"B2:C7","confirm":true,"compare_columns":[1]})"),
            LR"({"ok":true,"removed":2,"rowsBefore":5,"rowsAfter":3})");
  EXPECT_EQ(Fruits(), L"Fruit|apple|pear|fruit|||");
}

TEST_F(Duplicates, WithoutAHeaderTheFirstRowIsDataToo) {
  EXPECT_EQ(Run(kTool, LR"({"range":"B2:C7","confirm":true,"columns":[1,2,2],"has_header":false})"),
            LR"({"ok":true,"removed":2,"rowsBefore":6,"rowsAfter":4})");
  EXPECT_EQ(Fruits(), L"Fruit|apple|pear|apple|||");
}

TEST_F(Duplicates, WholeColumnsAreCountedAsFarAsTheyAreInUse) {
  EXPECT_EQ(Run(kTool, LR"({"range":"B:B","confirm":true,"has_header":false})"),
            LR"({"ok":true,"removed":3,"rowsBefore":6,"rowsAfter":3})");
  EXPECT_EQ(Run(kTool, LR"({"range":"F1:G9","confirm":true})"),
            LR"({"ok":true,"removed":0,"rowsBefore":0,"rowsAfter":0})");
}

TEST_F(Duplicates, BadArgumentsHaveTheirOwnTextsAndChangeNothing) {
  const struct {
    const wchar_t* json;
    const wchar_t* message;
  } cases[] = {
      {LR"({"range":"B2:C7"})", L"confirm 必须为 true"},
      {LR"({"range":"B2:C7","confirm":false})", L"confirm 必须为 true"},
      {LR"({"range":"B2:C7","confirm":"true"})", L"confirm 必须为 true"},
      {LR"({"confirm":true})", L"range 必填"},
      {LR"({"confirm":true,"range":"Sheet1!A1"})", L"invalid range"},
      {LR"({"confirm":true,"range":"A1048577"})", L"无法读取范围大小"},
      {LR"({"confirm":true,"range":"B2:C7","columns":[3]})", L"columns 超出范围列数"},
      {LR"({"confirm":true,"range":"B2:C7","columns":[0]})", L"columns 参数无效"},
      {LR"({"confirm":true,"range":"B2:C7","compare_columns":["B"]})", L"columns 参数无效"},
      {LR"({"confirm":true,"range":"B2:C7","sheetName":"None"})", L"找不到工作表"},
  };
  for (const auto& [json, message] : cases)
    EXPECT_EQ(Run(kTool, json), Error(message)) << ToUtf8(json);
  ExpectUnchanged();
}

TEST_F(Duplicates, TheHostsRefusalIsToldWithItsNumber) {
  const auto failure = [](const wchar_t* hr) {
    return Error(Concat(L"去重失败（hr=0x", hr,
                        L"）。请确认已安装最新 Quorvantis Excel 插件，或使用 Microsoft Excel 重试"));
  };
  const std::wstring json = LR"({"range":"B2:C7","confirm":true,"columns":[1]})";
  engine.Faults().Hide("Range.RemoveDuplicates");
  EXPECT_EQ(Run(kTool, json), failure(L"80020006"));
  engine.Faults().Clear();
  engine.Sheet(L"Sheet1").isProtected = true;
  const TraceTail trace;
  EXPECT_EQ(Run(kTool, json), failure(L"80020009"));
  EXPECT_TRUE(trace.Has(L"ExcelRemoveDuplicates failed hr=0x80020009\r\n"));
  engine.Sheet(L"Sheet1").isProtected = false;
  // A busy host is not asked in another form.
  engine.ResetCounters();
  MakeBusy("Range.RemoveDuplicates");
  EXPECT_EQ(Run(kTool, json), failure(L"80020009"));
  EXPECT_EQ(engine.Calls("Range.RemoveDuplicates"), 1U);
  engine.Faults().Clear();
  MakeBusy("Range.Value2");
  EXPECT_EQ(Run(kTool, json), Error(L"无法读取区域"));
  engine.Faults().Clear();
  engine.Faults().Fail({.member = "Range.Columns"});
  EXPECT_EQ(Run(kTool, json), Error(L"无法读取范围大小"));
  ExpectUnchanged();
}

TEST_F(Duplicates, OneColumnIsOfferedAsANumberToo) {
  engine.Faults().Fail({.member = "Range.RemoveDuplicates", .times = 1});
  EXPECT_EQ(Run(kTool, LR"({"range":"B2:C7","confirm":true,"columns":1})"),
            LR"({"ok":true,"removed":2,"rowsBefore":5,"rowsAfter":3})");
}

TEST_F(Duplicates, WhereCaseIsToCountNothingIsRemovedThatDiffersInIt) {
  EXPECT_NE(Run(kTool, LR"({"range":"B2:C7","confirm":true,"match_case":true})").find(L"0x80004001"),
            std::wstring::npos);
  ExpectUnchanged();
  EXPECT_EQ(
      Run(kTool, LR"({"range":"B4:C7","confirm":true,"match_case":true,"columns":[2],"has_header":true})"),
      LR"({"ok":true,"removed":0,"rowsBefore":3,"rowsAfter":3})");
}

TEST_F(Duplicates, EqualErrorsAndEmptyTextsBesideWordsDoNotHideThatCaseMatters) {
  constexpr const wchar_t* kJson =
      LR"({"range":"B3:C4","confirm":true,"match_case":true,"has_header":false})";
  for (const char* address : {"C3", "C4"})
    engine.Set(L"Sheet1", address, devhost::memory::ErrorValue{2042});
  EXPECT_NE(Run(kTool, kJson).find(L"0x80004001"), std::wstring::npos);
  engine.Set(L"Sheet1", "C3", L"");
  engine.Sheet(L"Sheet1").ClearContents({4, 3, 4, 3});
  EXPECT_NE(Run(kTool, kJson).find(L"0x80004001"), std::wstring::npos);
  ExpectUnchanged();
}

TEST_F(Duplicates, ACountThatFailsOnceIsTakenAgain) {
  constexpr const wchar_t* kJson = LR"({"range":"B2:C7","confirm":true})";
  const auto failCounts = [this](long times) {
    engine.Faults().OnCall("Range.RemoveDuplicates", [this, times] {
      engine.Faults().Fail({.member = "Worksheet.UsedRange", .times = times});
    });
  };
  failCounts(1);
  EXPECT_EQ(Run(kTool, kJson), LR"({"ok":true,"removed":1,"rowsBefore":5,"rowsAfter":4})");
  engine.Faults().Clear();
  failCounts(2);
  const TraceTail trace;
  EXPECT_EQ(Run(kTool, kJson), Error(L"无法读取区域"));
  EXPECT_TRUE(trace.Has(L"ExcelRemoveDuplicates removed, count unreadable\r\n"));
}

}  // namespace
}  // namespace qv::test
