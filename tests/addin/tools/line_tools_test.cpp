#include <string>

#include "addin/tools/tools_fixture.h"
#include "foundation/text.h"

namespace qv::test {
namespace {

constexpr const wchar_t* kOk = LR"({"ok":true})";
constexpr std::wstring_view kMissingText = L"range 或 indices 必填";

/// A sheet with the row number in column A and the column number in row 1, ten of each.
class LineTools : public ToolsTest {
 protected:
  void SetUp() override {
    ToolsTest::SetUp();
    for (int i = 1; i <= 10; ++i) {
      engine.Set(L"Sheet1", "A" + std::to_string(i), static_cast<double>(i));
      engine.Set(L"Sheet1", std::string(1, static_cast<char>('A' + i - 1)) + "1", static_cast<double>(i));
    }
  }
  /// What column A holds from the top on, or row 1 from the left.
  [[nodiscard]] std::wstring Numbers(bool rows) {
    std::wstring numbers;
    for (long i = 1; i <= 12; ++i) {
      const auto* const cell = engine.Sheet(L"Sheet1").Find(rows ? i : 1, rows ? 1 : i);
      numbers += cell == nullptr ? L"-" : devhost::memory::DisplayText(cell->value, L"General");
      numbers += L' ';
    }
    return numbers;
  }
  [[nodiscard]] std::wstring Rows() { return Numbers(true); }
  [[nodiscard]] std::wstring Columns() { return Numbers(false); }
};

TEST_F(LineTools, DeleteTakesTheRowsOfARangeAndWhatIsBelowMovesUp) {
  const TraceTail trace;
  EXPECT_EQ(Run(L"excelDeleteRowsCols", LR"({"mode":"rows","range":"B3:D5"})"), kOk);
  EXPECT_EQ(Rows(), L"1 2 6 7 8 9 10 - - - - - ");
  EXPECT_TRUE(trace.Has(L"ExcelDeleteRowsCols enter json={\"mode\":\"rows\",\"range\":\"B3:D5\"}\r\n"));
  EXPECT_EQ(Run(L"excelDeleteRowsCols", LR"({"mode":"columns","range":"C:D"})"), kOk);
  EXPECT_EQ(Columns(), L"1 2 5 6 7 8 9 10 - - - - ");
}

TEST_F(LineTools, DeleteTakesEachIndexForWhatItWasBefore) {
  EXPECT_EQ(Run(L"excelDeleteRowsCols", LR"({"mode":"rows","indices":[2,9,2,0,-4,4]})"),
            LR"({"ok":true,"applied":3})");
  EXPECT_EQ(Rows(), L"1 3 5 6 7 8 10 - - - - - ");
  EXPECT_EQ(Run(L"excelDeleteRowsCols", LR"({"mode":"columns","indices":[1,10]})"),
            LR"({"ok":true,"applied":2})");
  EXPECT_EQ(Columns(), L"2 3 4 5 6 7 8 9 - - - - ");
  EXPECT_EQ(engine.Calls("Range.Delete"), 5U);
}

TEST_F(LineTools, DeleteCountsOnlyWhatTheHostDeleted) {
  EXPECT_EQ(Run(L"excelDeleteRowsCols", LR"({"mode":"rows","indices":[1048577,2147483648,3]})"),
            LR"({"ok":true,"applied":1})");
  EXPECT_EQ(Run(L"excelDeleteRowsCols", LR"({"mode":"rows","indices":[0]})"), LR"({"ok":true,"applied":0})");
  engine.Sheet(L"Sheet1").isProtected = true;
  EXPECT_EQ(Run(L"excelDeleteRowsCols", LR"({"mode":"rows","indices":[1,2]})"),
            LR"({"ok":true,"applied":0})");
  EXPECT_EQ(Run(L"excelDeleteRowsCols", LR"({"mode":"rows","range":"1:2"})"), Error(L"删除失败"));
  EXPECT_EQ(Rows(), L"1 2 4 5 6 7 8 9 10 - - - ");
}

TEST_F(LineTools, DeleteStopsWhereTheHostGetsBusyAndTellsHowFarItCame) {
  const auto makeBusyAfter = [this](long calls) {
    engine.Faults().Fail(
        {.member = "Range.Delete", .error = {DISP_E_EXCEPTION, devhost::memory::kHostBusy}, .after = calls});
  };
  engine.ResetCounters();
  makeBusyAfter(1);
  EXPECT_EQ(Run(L"excelDeleteRowsCols", LR"({"mode":"rows","indices":[2,4,6]})"),
            Error(L"Excel 正忙，请稍后重试（已从最大编号起删除 1）"));
  EXPECT_EQ(engine.Calls("Range.Delete"), 2U);
  EXPECT_EQ(Rows(), L"1 2 3 4 5 7 8 9 10 - - - ");
  engine.Faults().Clear();
  makeBusyAfter(0);
  for (const wchar_t* json : {LR"({"mode":"rows","indices":[2,4]})", LR"({"mode":"rows","range":"1:2"})"})
    EXPECT_EQ(Run(L"excelDeleteRowsCols", json), Error(L"Excel 正忙，请稍后重试")) << ToUtf8(json);
}

TEST_F(LineTools, IndicesWithoutALineDoNothing) {
  const TraceTail trace;
  book->windows.front()->ViewOf(*book->sheets.front()).scrollRow = 500;
  EXPECT_EQ(Run(L"excelInsertRowsCols", LR"({"mode":"rows","indices":[0,"2"]})"), kOk);
  EXPECT_TRUE(trace.Has(L"ExcelInsertRowsCols indicesMode count=2\r\n"));
  EXPECT_EQ(engine.Calls("Range.Insert"), 0U);
  EXPECT_EQ(book->windows.front()->ViewOf(*book->sheets.front()).scrollRow, 500);
}

TEST_F(LineTools, MoreIndicesThanACallTakesChangeNothing) {
  std::wstring json = LR"({"mode":"rows","indices":[1)";
  for (int i = 0; i < 5000; ++i)
    json += L",0";
  json += L"]}";
  for (const wchar_t* tool : {L"excelDeleteRowsCols", L"excelInsertRowsCols"})
    EXPECT_EQ(Run(tool, json), Error(L"indices 过多（>5000），请分批")) << ToUtf8(tool);
  EXPECT_EQ(Rows(), L"1 2 3 4 5 6 7 8 9 10 - - ");
  json.replace(json.rfind(L",0"), 2, L"");
  EXPECT_EQ(Run(L"excelDeleteRowsCols", json), LR"({"ok":true,"applied":1})");
}

TEST_F(LineTools, InsertEndsTheCopyModeFirst) {
  long modeAtInsert = -1;
  engine.Faults().OnCall("Range.Insert", [&] { modeAtInsert = engine.Host().cutCopyMode; });
  engine.Host().cutCopyMode = 1;
  EXPECT_EQ(Run(L"excelInsertRowsCols", LR"({"mode":"rows","indices":[2]})"), kOk);
  EXPECT_EQ(modeAtInsert, 0);
  // A host that keeps the marked cells would insert them.
  engine.Host().cutCopyMode = 2;
  engine.Faults().Fail({.member = "Application.CutCopyMode", .on = devhost::memory::kOnPut});
  engine.ResetCounters();
  EXPECT_EQ(Run(L"excelInsertRowsCols", LR"({"mode":"rows","range":"2:2"})"), Error(L"插入失败"));
  EXPECT_EQ(engine.Calls("Range.Insert"), 0U);
}

TEST_F(LineTools, WhatIsInsertedIsShownByMovingInItsOwnDirectionOnly) {
  auto& view = book->windows.front()->ViewOf(*book->sheets.front());
  view.scrollColumn = 30;
  EXPECT_EQ(Run(L"excelInsertRowsCols", LR"({"mode":"rows","range":"B900:D900"})"), kOk);
  EXPECT_EQ(view.scrollRow, 900);
  EXPECT_EQ(view.scrollColumn, 30);
  EXPECT_EQ(Run(L"excelInsertRowsCols", LR"({"mode":"columns","indices":[300]})"), kOk);
  EXPECT_EQ(view.scrollRow, 900);
  EXPECT_EQ(view.scrollColumn, 300);
}

TEST_F(LineTools, BadArgumentsHaveTheirOwnTextsAndChangeNothing) {
  const struct {
    const wchar_t* json;
    std::wstring_view message;
  } cases[] = {
      {L"{}", L"mode 必须是 columns 或 rows"},
      {LR"({"mode":"Rows","indices":[1]})", L"mode 必须是 columns 或 rows"},
      {LR"({"mode":"rows"})", kMissingText},
      {LR"({"mode":"rows","indices":[]})", kMissingText},
      {LR"({"mode":"rows","indices":"1"})", kMissingText},
      {LR"({"mode":"rows","range":"","indices":null})", kMissingText},
      {LR"({"mode":"rows","range":"$A$1"})", L"invalid range"},
      {LR"({"mode":"rows","range":"nonsense","indices":[1]})", L"invalid range"},
      // The rows of whole columns are all rows.
      {LR"({"mode":"rows","range":"A:B"})", L"invalid range"},
      {LR"({"mode":"columns","range":"2:3"})", L"invalid range"},
      {LR"({"mode":"rows","range":"A1048577"})", L"无法获取整列/整行"},
      {LR"({"mode":"rows","range":"A1","sheetName":"None"})", L"找不到工作表"},
  };
  for (const wchar_t* tool : {L"excelDeleteRowsCols", L"excelInsertRowsCols"}) {
    for (const auto& [json, message] : cases)
      EXPECT_EQ(Run(tool, json), Error(message)) << ToUtf8(tool) << ToUtf8(json);
  }
  EXPECT_EQ(Rows(), L"1 2 3 4 5 6 7 8 9 10 - - ");
}

TEST_F(LineTools, AHostWithoutAnActiveSheetOrEntireLinesIsToldOf) {
  for (const wchar_t* tool : {L"excelDeleteRowsCols", L"excelInsertRowsCols"}) {
    engine.Faults().Fail({.member = "Range.EntireRow"});
    EXPECT_EQ(Run(tool, LR"({"mode":"rows","range":"A1"})"), Error(L"无法获取整列/整行"));
    engine.Faults().Clear();
    engine.Faults().Fail({.member = "Window.ActiveSheet"});
    EXPECT_EQ(Run(tool, LR"({"mode":"rows","range":"A1"})"), Error(L"未连接到工作表"));
    engine.Faults().Clear();
  }
}

TEST_F(LineTools, InsertOpensARangesRowsAndShowsThem) {
  const TraceTail trace;
  const std::wstring json = LR"({"mode":"rows","range":"B3:D4"})";
  EXPECT_EQ(Run(L"excelInsertRowsCols", json), kOk);
  EXPECT_EQ(Rows(), L"1 2 - - 3 4 5 6 7 8 9 10 ");
  for (const std::wstring& line :
       {Concat(L"ExcelInsertRowsCols enter mode=rows jsonLen=", json.size(), L"\r\n"),
        std::wstring(L"ExcelInsertRowsCols rangeMode range=B3:D4\r\n"),
        std::wstring(L"ExcelInsertRowsCols calling EntireRow/Column.Insert\r\n"),
        std::wstring(L"ExcelInsertRowsCols Insert succeeded\r\n"),
        std::wstring(L"ScrollActiveWindowToExtents skip already visible\r\n")}) {
    EXPECT_TRUE(trace.Has(line)) << ToUtf8(line);
  }
  EXPECT_EQ(Run(L"excelInsertRowsCols", LR"({"mode":"columns","range":"AZ1"})"), kOk);
  EXPECT_EQ(book->windows.front()->ViewOf(*book->sheets.front()).scrollColumn, 52);
}

TEST_F(LineTools, InsertOpensEachIndexWhereItWasBefore) {
  const TraceTail trace;
  EXPECT_EQ(Run(L"excelInsertRowsCols", LR"({"mode":"rows","indices":[2,5]})"), kOk);
  EXPECT_EQ(Rows(), L"1 - 2 3 4 - 5 6 7 8 9 10 ");
  EXPECT_TRUE(trace.Has(L"ExcelInsertRowsCols indicesMode count=2\r\n"));
  EXPECT_TRUE(trace.Has(L"ExcelInsertRowsCols inserting idx=5\r\n"));
  EXPECT_EQ(Run(L"excelInsertRowsCols", LR"({"mode":"columns","indices":[1,1]})"), kOk);
  EXPECT_EQ(Columns(), L"- - 1 2 3 4 5 6 7 8 9 10 ");
}

TEST_F(LineTools, InsertStopsAtTheFirstRefusal) {
  const TraceTail trace;
  engine.Faults().Fail({.member = "Range.Insert", .after = 1});
  EXPECT_EQ(Run(L"excelInsertRowsCols", LR"({"mode":"rows","indices":[1,2,3]})"), Error(L"插入失败"));
  EXPECT_EQ(Rows(), L"1 2 - 3 4 5 6 7 8 9 10 - ");
  EXPECT_TRUE(trace.Has(L"ExcelInsertRowsCols error: Insert failed hr=0x80020009\r\n"));
  EXPECT_TRUE(trace.Has(L"ExcelInsertRowsCols insert failed idx=2\r\n"));
}

TEST_F(LineTools, InsertPushesNothingOverTheEdge) {
  engine.Set(L"Sheet1", "A1048576", 1.0);
  EXPECT_EQ(Run(L"excelInsertRowsCols", LR"({"mode":"rows","range":"A1"})"), Error(L"插入失败"));
  engine.Sheet(L"Sheet1").isProtected = true;
  EXPECT_EQ(Run(L"excelInsertRowsCols", LR"({"mode":"columns","indices":[1]})"), Error(L"插入失败"));
}

TEST_F(LineTools, ANamedSheetIsTheOneThatChanges) {
  engine.Set(L"Data", "A2", 2.0);
  EXPECT_EQ(Run(L"excelDeleteRowsCols", LR"({"mode":"rows","range":"A1","sheetName":"Data"})"), kOk);
  EXPECT_NE(engine.Sheet(L"Data").Find(1, 1), nullptr);
  EXPECT_EQ(Rows(), L"1 2 3 4 5 6 7 8 9 10 - - ");
}

}  // namespace
}  // namespace qv::test
