#include <fstream>
#include <string>
#include <vector>

#include "addin/tools/tools_fixture.h"
#include "tools/tool_table.h"
#include "workbook/workbook_busy_table.h"

namespace qv::test {
namespace {

using devhost::memory::ErrorValue;
using devhost::memory::kGeneralFailure;

TEST_F(ToolsTest, EveryToolIsFoundByItsExactNameOnly) {
  for (const WorkbookTool& tool : WorkbookToolTable())
    EXPECT_NE(Run(tool.action), Error(L"未知操作")) << std::string(tool.action.begin(), tool.action.end());
  for (const wchar_t* name : {L"ExcelReadRange", L"excelReadRange ", L"excelRead", L"", L"start"})
    EXPECT_EQ(Run(name), Error(L"未知操作"));
}

TEST_F(ToolsTest, TheProtocolsDocumentDescribesEveryToolInTheOrderOfTheTable) {
  std::vector<std::string> built;
  for (const WorkbookTool& tool : WorkbookToolTable())
    built.emplace_back(tool.action.begin(), tool.action.end());
  std::ifstream document(QV_PROTOCOL_DOCUMENT);
  std::vector<std::string> described;
  bool inside = false;
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with("## ")) inside = line.starts_with("## Workbook tools");
    if (inside && line.starts_with("| `")) described.push_back(line.substr(3, line.find('`', 3) - 3));
  }
  EXPECT_EQ(described, built);
}

TEST_F(ToolsTest, EveryToolSaysWhenThereIsNoHostOrNoSheet) {
  const std::wstring json = LR"({"range":"A1","values":[[1]]})";
  engine.Faults().Hide("Window.ActiveSheet");
  for (const wchar_t* name : {L"excelReadRange", L"excelWriteRange", L"excelFormatRange", L"excelMergeCells",
                              L"excelUnmergeCells", L"excelRangeHasContent", L"excelGetWriteContext"}) {
    EXPECT_EQ(Run(name, json), Error(L"未连接到工作表"));
  }
  EXPECT_EQ(Run(L"excelSetSize", json), Error(L"没有活动工作表"));
  engine.Faults().Clear();
  target.ReleaseReferences();
  for (const WorkbookTool& tool : WorkbookToolTable())
    EXPECT_EQ(Run(tool.action, json), Error(L"未连接到 Excel"));
}

TEST_F(ToolsTest, EveryToolWithARangeRefusesABadOne) {
  for (const wchar_t* name : {L"excelReadRange", L"excelWriteRange", L"excelFormatRange", L"excelMergeCells",
                              L"excelUnmergeCells", L"excelRangeHasContent"}) {
    for (const wchar_t* json :
         {LR"({"range":"$A$1"})", LR"({"range":"Sheet1!A1"})", LR"({"range":""})", L"{}", L""})
      EXPECT_EQ(Run(name, json), Error(L"range 参数缺失或无效"));
  }
}

TEST_F(ToolsTest, EveryToolWorksOnTheNamedSheetOfItsWorkbook) {
  const std::wstring json = LR"({"range":"A1","sheetName":"Nowhere","values":[[1]]})";
  for (const wchar_t* name : {L"excelReadRange", L"excelWriteRange", L"excelRangeHasContent"})
    EXPECT_EQ(Run(name, json), Error(L"找不到工作表"));
  EXPECT_EQ(Run(L"excelWriteRange", LR"({"range":"A1","sheetName":"Data","values":[["here"]]})"),
            LR"({"results":[{"row":1,"col":1,"status":"applied"}],"applied":1})");
  EXPECT_EQ(CellAt("A1", L"Data")["text"], "here");
  EXPECT_EQ(CellAt("A1")["text"], "");
  for (const wchar_t* active : {L"null", L"\"\""})
    EXPECT_EQ(Run(L"excelReadRange", L"{\"sheetName\":" + std::wstring(active) + L",\"range\":\"A1\"}"),
              LR"({"cells":[{"row":1,"col":1,"value":""}]})");
  for (const wchar_t* no : {L"true", L"[\"Data\"]", L"{\"name\":\"Data\"}", L"7"})
    EXPECT_EQ(Run(L"excelReadRange", L"{\"sheetName\":" + std::wstring(no) + L",\"range\":\"A1\"}"),
              Error(L"找不到工作表"));
  engine.AddWorkbook(L"Years.xlsx", L"C:\\Books", {L"2026"});
  engine.Set(L"2026", "A1", std::wstring(L"this year"));
  Pin();
  EXPECT_EQ(Run(L"excelReadRange", LR"({"sheetName":2026,"range":"A1"})"),
            LR"({"cells":[{"row":1,"col":1,"value":"this year"}]})");
  engine.ActivateWindow(1);
  Pin();
  // Another workbook may be active by then.
  engine.AddWorkbook(L"Other.xlsx", L"C:\\Books", {L"Data"});
  EXPECT_EQ(Run(L"excelReadRange", LR"({"range":"A1","sheetName":"Data"})"),
            LR"({"cells":[{"row":1,"col":1,"value":"here"}]})");
}

TEST_F(ToolsTest, ReadGivesEveryCellRowByRowAsText) {
  SetText("A1", L"He said \"no\"\n");
  engine.Set(L"Sheet1", "B1", 1234.5);
  engine.Set(L"Sheet1", "A2", true);
  engine.Set(L"Sheet1", "B2", ErrorValue{2042});
  engine.SetFormula(L"Sheet1", "C2", L"=B1*2", 2469.0);
  EXPECT_EQ(
      Run(L"excelReadRange", LR"({"range":"c2:a1"})"),
      LR"({"cells":[{"row":1,"col":1,"value":"He said \"no\"\n"},{"row":1,"col":2,"value":"1234.5"},)"
      LR"({"row":1,"col":3,"value":""},{"row":2,"col":1,"value":"TRUE"},{"row":2,"col":2,"value":"#N/A"},)"
      LR"({"row":2,"col":3,"value":"2469","formula":"=B1*2"}]})");
  EXPECT_EQ(Run(L"excelReadRange", LR"({"row":2,"col":3})"),
            LR"({"cells":[{"row":2,"col":3,"value":"2469","formula":"=B1*2"}]})");
}

TEST_F(ToolsTest, ReadKeepsToItsLimits) {
  EXPECT_EQ(Run(L"excelReadRange", LR"({"range":"A:C"})"), Error(L"暂不支持整行/列读取"));
  EXPECT_EQ(Run(L"excelReadRange", LR"({"range":"2:4"})"), Error(L"暂不支持整行/列读取"));
  const std::wstring tooLarge = Error(L"读取范围过大（>5000 单元格），请缩小");
  EXPECT_EQ(Run(L"excelReadRange", LR"({"range":"A1:A5001"})"), tooLarge);
  EXPECT_EQ(Run(L"excelReadRange", LR"({"row1":1,"col1":1,"row2":2147483647,"col2":2147483647})"), tooLarge);
  engine.ResetCounters();
  EXPECT_TRUE(
      Run(L"excelReadRange", LR"({"range":"A1:CV50"})").ends_with(LR"({"row":50,"col":100,"value":""}]})"));
  EXPECT_EQ(engine.Calls("Range.Value2"), 1u);
  EXPECT_EQ(engine.Calls("Range.Formula"), 1u);
  EXPECT_LT(engine.Calls(), 20u) << "a few for the target, whatever the size";
}

TEST_F(ToolsTest, ReadSaysAlsoOfATextWhatTheHostGivesAsFormula) {
  SetText("A1", L"=not a formula");
  EXPECT_EQ(Run(L"excelReadRange", LR"({"range":"A1"})"),
            LR"({"cells":[{"row":1,"col":1,"value":"=not a formula","formula":"=not a formula"}]})");
}

TEST_F(ToolsTest, WhatTheSheetDoesNotHaveCostsOneCall) {
  const std::wstring json = LR"({"row1":2000000,"col1":1,"row2":2000099,"col2":50,"values":[[1,2]]})";
  const TraceTail trace;
  EXPECT_EQ(Run(L"excelReadRange", json), Error(L"无法读取区域"));
  EXPECT_TRUE(Run(L"excelWriteRange", json).ends_with(LR"("status":"failed"}],"applied":0})"));
  EXPECT_EQ(Run(L"excelReadRange", LR"({"row":2147483647,"col":2147483647})"), Error(L"无法读取区域"));
  EXPECT_EQ(engine.Calls("Worksheet.Cells"), 0u);
  EXPECT_FALSE(trace.Has(L"GetCellDispatch failed"));
}

TEST_F(ToolsTest, ReadGoesFromCellToCellWhereTheHostRefusesThemTogether) {
  SetText("A1", L"one");
  engine.SetFormula(L"Sheet1", "B2", L"=A1", std::wstring(L"one"));
  const std::wstring together = Run(L"excelReadRange", LR"({"range":"A1:B2"})");
  engine.Faults().failBulkGets = devhost::memory::kAlways;
  EXPECT_EQ(Run(L"excelReadRange", LR"({"range":"A1:B2"})"), together);
  engine.ResetCounters();
  MakeBusy("Worksheet.Cells");
  EXPECT_EQ(Run(L"excelReadRange", LR"({"range":"A1:B2"})"), Error(L"Excel 正忙，请稍后重试"));
  EXPECT_EQ(engine.Calls("Worksheet.Cells"), 1u);
  engine.Faults().Clear();
  engine.Faults().Fail({.member = "Range.Value2"});
  EXPECT_EQ(Run(L"excelReadRange", LR"({"range":"A1:B2"})"), Error(L"无法读取区域"));
  engine.Faults().Clear();
  MakeBusy("Range.Formula");
  EXPECT_EQ(Run(L"excelReadRange", LR"({"range":"A1:B2"})"), Error(L"Excel 正忙，请稍后重试"));
}

TEST_F(ToolsTest, WritePutsEveryKindOfValue) {
  EXPECT_EQ(Run(L"excelWriteRange", LR"({"range":"A1:F1","values":[["Hi",1.5,true,"=A1","12",null]]})"),
            LR"({"results":[{"row":1,"col":1,"status":"applied"},{"row":1,"col":2,"status":"applied"},)"
            LR"({"row":1,"col":3,"status":"applied"},{"row":1,"col":4,"status":"applied"},)"
            LR"({"row":1,"col":5,"status":"applied"},{"row":1,"col":6,"status":"applied"}],"applied":6})");
  EXPECT_EQ(CellAt("A1")["value"], "Hi");
  EXPECT_EQ(CellAt("B1")["value"], 1.5);
  EXPECT_EQ(CellAt("C1")["value"], true);
  EXPECT_EQ(CellAt("D1")["formula"], "=A1");
  EXPECT_EQ(CellAt("E1")["value"], 12);
  EXPECT_EQ(CellAt("F1")["text"], "");
}

TEST_F(ToolsTest, WriteSkipsWhatLiesBesideTheRangeAndForgetsWhatLiesBelow) {
  EXPECT_EQ(Run(L"excelWriteRange", LR"({"range":"B2:C2","values":[["a","b","c"],["d"]]})"),
            LR"({"results":[{"row":2,"col":2,"status":"applied"},{"row":2,"col":3,"status":"applied"},)"
            LR"({"row":2,"col":4,"status":"skipped"}],"applied":2})");
  EXPECT_EQ(CellAt("D2")["text"], "");
  EXPECT_EQ(CellAt("B3")["text"], "");
  // A plain list goes down a single column.
  EXPECT_EQ(
      Run(L"excelWriteRange", LR"({"range":"E1:E2","values":["x","y"]})"),
      LR"({"results":[{"row":1,"col":5,"status":"applied"},{"row":2,"col":5,"status":"applied"}],"applied":2})");
}

TEST_F(ToolsTest, WriteSkipsLockedCellsOfAProtectedSheet) {
  SetText("A1", L"locked");
  ProtectAllBut("B1");
  EXPECT_EQ(
      Run(L"excelWriteRange", LR"({"range":"A1:B1","values":[["x","y"]]})"),
      LR"({"results":[{"row":1,"col":1,"status":"skipped"},{"row":1,"col":2,"status":"applied"}],"applied":1})");
  EXPECT_EQ(CellAt("A1")["text"], "locked");
  EXPECT_EQ(CellAt("B1")["text"], "y");
}

TEST_F(ToolsTest, WriteGoesOnAfterACellThatTheHostRefuses) {
  SetText("A1", L"kept");
  EXPECT_EQ(
      Run(L"excelWriteRange", LR"({"range":"A1:B1","values":[["=(",2]]})"),
      LR"({"results":[{"row":1,"col":1,"status":"failed"},{"row":1,"col":2,"status":"applied"}],"applied":1})");
  EXPECT_EQ(CellAt("A1")["text"], "kept");
  // What cannot be read could not be put back, so it is not overwritten.
  MakeBusy("Range.Value2");
  EXPECT_EQ(Run(L"excelWriteRange", LR"({"range":"A1","values":[["x"]]})"),
            LR"({"results":[{"row":1,"col":1,"status":"failed"}],"applied":0})");
  engine.Faults().Clear();
  EXPECT_EQ(CellAt("A1")["text"], "kept");
  // Nor what could not be told apart from another workbook's.
  MakeBusy("Workbook.FullName");
  EXPECT_EQ(Run(L"excelWriteRange", LR"({"range":"A1","values":[["x"]]})"), Error(L"Excel 正忙，请稍后重试"));
}

TEST_F(ToolsTest, ToolsFollowTheWindowToAnotherWorkbook) {
  // The window that the pane is bound to is closed; the one that is left takes its place.
  const auto other = engine.AddWorkbook(L"Other.xlsx", L"C:\\Books", {L"Sheet1"});
  engine.Set(L"Sheet1", "A1", std::wstring(L"other"));
  engine.CloseWorkbook(book);
  EXPECT_EQ(Run(L"excelReadRange", LR"({"range":"A1"})"),
            LR"({"cells":[{"row":1,"col":1,"value":"other"}]})");
  EXPECT_EQ(target.WorkbookKey(), L"C:\\Books\\Other.xlsx");
}

TEST_F(ToolsTest, APaneThatIsNotBoundStaysSo) {
  target.Pin({});
  SetText("A1", L"x");
  static_cast<void>(Run(L"excelReadRange", LR"({"range":"A1"})"));
  EXPECT_FALSE(target.Pinned().IsValid());
}

TEST_F(ToolsTest, ATargetInUseIsNotExchanged) {
  const std::wstring key = target.WorkbookKey();
  ASSERT_TRUE(WorkbookBusyTable::TryClaimWorkbook(key, this));
  engine.AddWorkbook(L"Other.xlsx", L"C:\\Books", {L"Sheet1"});
  engine.CloseWorkbook(book);
  static_cast<void>(Run(L"excelReadRange", LR"({"range":"A1"})"));
  EXPECT_EQ(target.WorkbookKey(), key);
  WorkbookBusyTable::ReleaseWorkbook(key, this);
}

TEST_F(ToolsTest, WriteKeepsToItsLimits) {
  EXPECT_EQ(Run(L"excelWriteRange", LR"({"range":"A:A","values":[[1]]})"), Error(L"暂不支持整行/列写入"));
  EXPECT_EQ(Run(L"excelWriteRange", LR"({"range":"A1:A5001","values":[[1]]})"),
            Error(L"写入范围过大（>5000 单元格），请缩小"));
  for (const wchar_t* values : {L"", L",\"values\":[]", L",\"values\":\"x\"", L",\"values\":[[1],2]"}) {
    EXPECT_EQ(Run(L"excelWriteRange", L"{\"range\":\"A1\"" + std::wstring(values) + L"}"),
              Error(L"values 参数缺失或格式无效"));
  }
  std::wstring items = L"1";
  for (int i = 1; i < 100000; ++i)
    items += L",1";
  EXPECT_NE(
      Run(L"excelWriteRange", L"{\"range\":\"A1\",\"values\":[[" + items + L"]]}").find(L"\"applied\":1}"),
      std::wstring::npos);
  EXPECT_EQ(Run(L"excelWriteRange", L"{\"range\":\"A1\",\"values\":[[1],[" + items + L"]]}"),
            Error(L"values 过大（>100000 项），请缩小"));
  engine.ResetCounters();
  std::wstring rows;
  for (int i = 0; i < 5000; ++i)
    rows += i == 0 ? L"[7]" : L",[7]";
  const std::wstring result = Run(L"excelWriteRange", L"{\"range\":\"A1:A5000\",\"values\":[" + rows + L"]}");
  EXPECT_TRUE(result.ends_with(LR"({"row":5000,"col":1,"status":"applied"}],"applied":5000})"));
  EXPECT_EQ(engine.Calls("Range.Formula"), 1u) << "former contents are read in one go";
}

TEST_F(ToolsTest, WriteBringsWhatItWroteIntoView) {
  const TraceTail trace;
  static_cast<void>(Run(L"excelWriteRange", LR"({"range":"A1","values":[[1]]})"));
  EXPECT_TRUE(trace.Has(L"ScrollActiveWindowToExtents skip already visible\r\n"));
  static_cast<void>(Run(L"excelWriteRange", LR"({"range":"C900:D901","values":[[1]]})"));
  EXPECT_TRUE(trace.Has(L"ScrollActiveWindowToExtents r=900-901 c=3-4 target=900,3 visible=0\r\n"));
  const ComPtr<IDispatch> shown = target.GetTargetWindowDrv();
  EXPECT_EQ(GetIntProperty(shown.Get(), L"ScrollRow"), 900);
  EXPECT_EQ(GetIntProperty(shown.Get(), L"ScrollColumn"), 3);
  // Nothing was written, or on a sheet that nobody sees.
  static_cast<void>(Run(L"excelWriteRange", LR"({"range":"A1","values":[["=("]]})"));
  static_cast<void>(Run(L"excelWriteRange", LR"({"range":"A1","sheetName":"Data","values":[[1]]})"));
  EXPECT_EQ(GetIntProperty(shown.Get(), L"ScrollRow"), 900);
}

TEST_F(ToolsTest, ContentIsCountedWhereTheRangeMeetsTheUsedRange) {
  const auto content = [](const wchar_t* has, int count) {
    return L"{\"hasContent\":" + std::wstring(has) + L",\"nonEmptyCount\":" + std::to_wstring(count) +
           L",\"sheetName\":\"Sheet1\"}";
  };
  engine.Set(L"Sheet1", "B2", 0.0);
  SetText("C3", L"");
  SetText("D4", L"x");
  EXPECT_EQ(Run(L"excelRangeHasContent", LR"({"range":"A1:Z100"})"), content(L"true", 2));
  EXPECT_EQ(Run(L"excelRangeHasContent", LR"({"range":"B:C"})"), content(L"true", 1));
  EXPECT_EQ(Run(L"excelRangeHasContent", LR"({"range":"3:3"})"), content(L"false", 0));
  EXPECT_EQ(Run(L"excelRangeHasContent", LR"({"range":"D4"})"), content(L"true", 1));
  engine.ResetCounters();
  EXPECT_EQ(Run(L"excelRangeHasContent", LR"({"range":"E5:F9"})"), content(L"false", 0));
  EXPECT_EQ(engine.Calls("Range.Value2"), 0u);
  SetText("A5000", L"end");
  EXPECT_EQ(Run(L"excelRangeHasContent", LR"({"range":"B1:B5000"})"), content(L"true", 1));
  // The used range begins in row 2 until here.
  engine.Set(L"Sheet1", "A1", 1.0);
  engine.Set(L"Sheet1", "A5001", 1.0);
  engine.ResetCounters();
  EXPECT_EQ(Run(L"excelRangeHasContent", LR"({"range":"B:B"})"), content(L"true", -1));
  EXPECT_EQ(engine.Calls("Range.Value2"), 0u);
  engine.Faults().Hide("Worksheet.UsedRange");
  EXPECT_EQ(Run(L"excelRangeHasContent", LR"({"range":"A1"})"), Error(L"无法读取已用区域"));
}

TEST_F(ToolsTest, TheWriteContextIsWhereTheUserWorks) {
  engine.Select(L"Sheet1", "B2:C4");
  EXPECT_EQ(Run(L"excelGetWriteContext"),
            LR"({"workbookKey":"C:\\Books\\Book.xlsx","sheetName":"Sheet1","row":2,"col":2,)"
            LR"("rangeAddress":"$B$2:$C$4"})");
}

TEST_F(ToolsTest, MergingSaysWhenItIsDoneAlready) {
  SetText("A1", L"a");
  SetText("B1", L"b");
  const std::wstring range = LR"({"range":"A1:B2"})";
  EXPECT_EQ(Run(L"excelUnmergeCells", range), LR"({"ok":true,"alreadyUnmerged":true})");
  EXPECT_EQ(Run(L"excelMergeCells", range), LR"({"ok":true})");
  EXPECT_TRUE(Look("A1:B2", L"MergeCells").IsTrue());
  EXPECT_EQ(Run(L"excelMergeCells", range), LR"({"ok":true,"alreadyMerged":true})");
  // Merged in parts is neither.
  EXPECT_EQ(Run(L"excelUnmergeCells", LR"({"range":"A1:C2"})"), LR"({"ok":true})");
  EXPECT_FALSE(Look("A1:B2", L"MergeCells").IsTrue());
  engine.Sheet(L"Sheet1").isProtected = true;
  EXPECT_EQ(Run(L"excelMergeCells", range), Error(L"合并失败"));
  engine.Sheet(L"Sheet1").isProtected = false;
  engine.Merge(L"Sheet1", "A1:B2");
  MakeBusy("Range.MergeCells");
  EXPECT_EQ(Run(L"excelUnmergeCells", range), Error(L"解除合并失败"));
}

}  // namespace
}  // namespace qv::test
