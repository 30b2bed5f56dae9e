#include <functional>
#include <string>
#include <vector>

#include "addin/tools/tools_fixture.h"

namespace qv::test {
namespace {

using devhost::memory::kAlways;

/// Four rows of every kind of content.
constexpr const wchar_t* kContents =
    LR"([["text",1.5,true,"12"],["2024-05-06",null,false,"5%"],["",-3e-7,"007","TRUE"],["a\nb",0,"#N/A","1/2"]])";

class BlockWrite : public ToolsTest {
 protected:
  std::wstring Write(const std::wstring& values, const std::wstring& range = L"A1:D4") {
    return Run(L"excelWriteRange", L"{\"range\":\"" + range + L"\",\"values\":" + values + L"}");
  }
  /// Every cell of A1:D4, with its number format.
  std::wstring Block() {
    std::wstring all;
    for (const char column : std::string("ABCD")) {
      for (const char row : std::string("1234")) {
        const std::string address{column, row};
        const std::string cell = CellAt(address).dump();
        all += std::wstring(cell.begin(), cell.end()) + Look(address, L"NumberFormat").Text() + L'\n';
      }
    }
    return all;
  }
  /// What the cells hold before a write.
  void Fill() {
    SetText("A1", L"former");
    engine.SetFormula(L"Sheet1", "B2", L"=2", 2.0);
    engine.Set(L"Sheet1", "C3", 7.0);
    engine.Set(L"Sheet1", "D4", true);
    SetText("D1", L"=text");
  }
  std::uint64_t Cells() const { return engine.Calls("Worksheet.Cells"); }
};

TEST_F(BlockWrite, LeavesTheSheetAndTheResultAsCellByCell) {
  // Column formats differ: one keeps texts, one is a format of the user's.
  const auto prepare = [this] {
    Fill();
    const Variant text(L"@");
    const Variant number(L"0.000");
    EXPECT_EQ(PutDispProperty(engine.RangeObject(L"Sheet1", "D1:D4").Get(), L"NumberFormat", &text), S_OK);
    EXPECT_EQ(PutDispProperty(engine.RangeObject(L"Sheet1", "B3").Get(), L"NumberFormat", &number), S_OK);
    static_cast<void>(Run(L"excelPushUndoMarker"));
  };
  prepare();
  const std::wstring former = Block();
  engine.ResetCounters();
  const TraceTail trace;
  const std::wstring result = Write(kContents);
  const std::wstring block = Block();
  EXPECT_EQ(Cells(), 0u);
  EXPECT_TRUE(trace.Has(L"Excel PutBlock ok sheet=Sheet1 row=1 col=1 rows=4 cols=4\r\n"));
  EXPECT_NE(block, former);
  EXPECT_EQ(Run(L"excelUndoMessage"), LR"({"restored":16,"depth":0})");
  EXPECT_EQ(Block(), former);

  static_cast<void>(Run(L"excelPushUndoMarker"));
  engine.Faults().failBulkPuts = kAlways;
  EXPECT_EQ(Write(kContents), result);
  EXPECT_EQ(Block(), block);
  EXPECT_GE(Cells(), 16u);
  EXPECT_TRUE(trace.Has(L"Excel PutBlock failed sheet=Sheet1 row=1 col=1 rows=4 cols=4 hr=0x80020009\r\n"));
  EXPECT_EQ(Run(L"excelUndoMessage"), LR"({"restored":16,"depth":0})") << "one record a cell";
  EXPECT_EQ(Block(), former);
}

TEST_F(BlockWrite, CostsAFewCallsWhateverTheSize) {
  std::wstring rows;
  for (int i = 0; i < 500; ++i)
    rows += (i == 0 ? L"" : L",") + std::wstring(LR"(["name",2,"7",true,null,"2024-05-06",1.5,"x","y","z"])");
  engine.ResetCounters();
  EXPECT_TRUE(Write(L'[' + rows + L']', L"A1:J500").ends_with(L"\"applied\":5000}"));
  EXPECT_LT(engine.Calls(), 90u) << "a few for the target, and for the formats that the dates change";
  EXPECT_EQ(CellAt("J500")["text"], "z");
  EXPECT_EQ(CellAt("C1")["value"], 7);
}

TEST_F(BlockWrite, SaysWhatLiesBesideAndBelowTheRangeLikeTheSingleWay) {
  const std::wstring row = L"[1,2,3,4,5]";
  const std::wstring values = L'[' + row + L',' + row + L',' + row + L',' + row + L',' + row + L']';
  const std::wstring result = Write(values);
  EXPECT_TRUE(result.starts_with(LR"({"results":[{"row":1,"col":1,"status":"applied"})")) << "in order";
  EXPECT_NE(result.find(LR"({"row":1,"col":5,"status":"skipped"},{"row":2,"col":1,"status":"applied"})"),
            std::wstring::npos);
  EXPECT_TRUE(result.ends_with(LR"({"row":4,"col":5,"status":"skipped"}],"applied":16})"));
  EXPECT_EQ(Cells(), 0u);
  EXPECT_EQ(CellAt("E1")["text"], "");
  EXPECT_EQ(CellAt("A5")["text"], "");
}

TEST_F(BlockWrite, BeginsAtSixteenCells) {
  const TraceTail trace;
  static_cast<void>(Write(L"[[1,2,3,4,5,6,7,8,9,10,11,12,13,14,15]]", L"A1:P1"));
  EXPECT_FALSE(trace.Has(L"PutBlock"));
  static_cast<void>(Write(L"[[1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16]]", L"A1:P1"));
  EXPECT_TRUE(trace.Has(L"PutBlock ok"));
}

TEST_F(BlockWrite, GoesCellByCellWhereAnArrayWouldNotDo) {
  const std::wstring numbers = L"[[1,2,3,4],[1,2,3,4],[1,2,3,4],[1,2,3,4]]";
  const auto withFirst = [&](const std::wstring& item) {
    return std::wstring(numbers).replace(2, 1, L'"' + item + L'"');
  };
  struct Case {
    const char* why;
    std::wstring values;
    std::function<void()> prepare = [] {};
  };
  const std::vector<Case> cases = {
      {"too few rows of one length", L"[[1,2,3,4],[1,2,3,4],[1,2,3,4],[1,2,3]]"},
      {"a formula", withFirst(L"=1+1")},
      {"a text that is refused alone", withFirst(L"@x")},
      {"a text that becomes a formula", withFirst(L"-x")},
      {"an apostrophe", withFirst(L"'1")},
      {"a long text", withFirst(std::wstring(912, L'x'))},
      {"a cell that cannot be read", numbers,
       [this] {
         engine.Faults().failBulkGets = kAlways;
         engine.Faults().Fail(
             {.member = "Range.Value2", .times = 1, .on = devhost::memory::kOnGet, .after = 2});
       }},
      {"hidden rows", numbers,
       [this] {
         const ComPtr<IDispatch> row =
             GetDispProperty(engine.RangeObject(L"Sheet1", "A2").Get(), L"EntireRow");
         const Variant yes(true);
         EXPECT_EQ(PutDispProperty(row.Get(), L"Hidden", &yes), S_OK);
       }},
      {"protection", numbers, [this] { ProtectAllBut("B1:D4"); }},
  };
  for (const Case& each : cases) {
    each.prepare();
    engine.ResetCounters();
    const TraceTail trace;
    static_cast<void>(Write(each.values));
    EXPECT_GT(Cells(), 3u) << each.why;
    EXPECT_FALSE(trace.Has(L"PutBlock")) << each.why;
    EXPECT_EQ(CellAt("D3")["value"], 4) << each.why;
    engine.Faults().Clear();
    const ComPtr<IDispatch> rows =
        GetDispProperty(engine.RangeObject(L"Sheet1", "A1:A4").Get(), L"EntireRow");
    const Variant no(false);
    static_cast<void>(PutDispProperty(rows.Get(), L"Hidden", &no));
  }
}

TEST_F(BlockWrite, TakesTheRowsBetweenFormulasTogether) {
  std::wstring rows = LR"(["=B1","=A1",1])";
  for (int i = 0; i < 6; ++i)
    rows += L",[1,2,\"x\"]";
  engine.ResetCounters();
  const TraceTail trace;
  EXPECT_TRUE(Write(L'[' + rows + LR"v(,["=SUM(A2:A7)",0,0]])v", L"A1:C8").ends_with(L"\"applied\":24}"));
  EXPECT_TRUE(trace.Has(L"Excel PutBlock ok sheet=Sheet1 row=2 col=1 rows=6 cols=3\r\n"));
  EXPECT_EQ(Cells(), 6u);
  EXPECT_EQ(CellAt("A8")["formula"], "=SUM(A2:A7)");
  EXPECT_EQ(CellAt("C7")["value"], "x");
}

TEST_F(BlockWrite, WritesOverMergedCellsLikeTheSingleWay) {
  engine.Merge(L"Sheet1", "B2:C3");
  const std::wstring result = Write(kContents);
  const std::wstring block = Block();
  engine.Faults().failBulkPuts = kAlways;
  EXPECT_EQ(Write(kContents), result);
  EXPECT_EQ(Block(), block);
  EXPECT_TRUE(Look("B2:C3", L"MergeCells").IsTrue());
}

TEST_F(BlockWrite, ABusyHostLeavesNoRecords) {
  Fill();
  const std::wstring former = Block();
  static_cast<void>(Run(L"excelPushUndoMarker"));
  engine.Faults().Fail({.member = "Range.*",
                        .error = {DISP_E_EXCEPTION, devhost::memory::kHostBusy},
                        .on = devhost::memory::kOnPut});
  EXPECT_TRUE(Write(kContents).ends_with(LR"("status":"failed"}],"applied":0})"));
  engine.Faults().Clear();
  EXPECT_EQ(Block(), former);
  EXPECT_EQ(Run(L"excelUndoMessage"), LR"({"restored":0,"depth":0})");
}

TEST_F(BlockWrite, WhatARefusedArrayHasChangedIsTakenBack) {
  Fill();
  const std::wstring former = Block();
  static_cast<void>(Run(L"excelPushUndoMarker"));
  // The host writes a part and gives up; then it does not take single cells either.
  engine.Faults().OnCall("Range.Value2", [this] {
    if (engine.Calls("Range.Formula") > 0) SetText("A1", L"half done");
  });
  engine.Faults().Fail({.member = "Range.*", .on = devhost::memory::kOnPut});
  engine.ResetCounters();
  EXPECT_TRUE(Write(kContents).ends_with(L"\"applied\":0}"));
  engine.Faults().Clear();
  EXPECT_EQ(CellAt("A1")["text"], "half done");
  EXPECT_EQ(Run(L"excelUndoMessage"), LR"({"restored":16,"depth":0})");
  EXPECT_EQ(Block(), former);
}

}  // namespace
}  // namespace qv::test
