#include <string>

#include "addin/tools/tools_fixture.h"
#include "tools/tool_table.h"

namespace qv::test {
namespace {

class UndoTools : public ToolsTest {
 protected:
  void Write(const std::wstring& cell, const std::wstring& value, const std::wstring& sheet = L"Sheet1") {
    EXPECT_EQ(Run(L"excelWriteRange", L"{\"range\":\"" + cell + L"\",\"sheetName\":\"" + sheet +
                                          L"\",\"values\":[[" + value + L"]]}")
                  .find(L"failed"),
              std::wstring::npos);
  }
  std::wstring Mark() { return Run(L"excelPushUndoMarker"); }
  std::wstring Undo() { return Run(L"excelUndoMessage"); }
  static std::wstring Restored(int count, int depth) {
    return L"{\"restored\":" + std::to_wstring(count) + L",\"depth\":" + std::to_wstring(depth) + L"}";
  }
};

TEST_F(UndoTools, WithoutAMarkerThereIsNothingToUndo) {
  Write(L"A1", L"\"new\"");
  EXPECT_EQ(Undo(), Restored(0, 0));
  EXPECT_EQ(CellAt("A1")["text"], "new");
}

TEST_F(UndoTools, AMessageTakesBackItsOwnEditsOnly) {
  SetText("A1", L"first");
  EXPECT_EQ(Mark(), LR"({"ok":true,"depth":1})");
  Write(L"A1", L"\"second\"");
  EXPECT_EQ(Mark(), LR"({"ok":true,"depth":2})");
  Write(L"A1", L"\"third\"");
  Write(L"B1", L"5", L"Data");
  Write(L"A1", L"\"fourth\"");
  EXPECT_EQ(Undo(), Restored(3, 1));
  EXPECT_EQ(CellAt("A1")["text"], "second");
  EXPECT_EQ(CellAt("B1", L"Data")["text"], "");
  EXPECT_EQ(Undo(), Restored(1, 0));
  EXPECT_EQ(CellAt("A1")["text"], "first");
  EXPECT_EQ(Undo(), Restored(0, 0));
}

TEST_F(UndoTools, EveryKindOfContentComesBackAsItWas) {
  engine.SetFormula(L"Sheet1", "A1", L"=1+1", 2.0);
  engine.Set(L"Sheet1", "B1", 1.0 / 3);
  engine.Set(L"Sheet1", "C1", true);
  SetText("D1", L"007");
  SetText("E1", L"=not a formula");
  engine.Set(L"Sheet1", "F1", devhost::memory::ErrorValue{2042});
  static_cast<void>(Mark());
  Write(L"A1:G1", LR"("a","b","c","d","e","f","g")");
  EXPECT_EQ(Undo(), Restored(7, 0));
  EXPECT_EQ(CellAt("A1")["formula"], "=1+1");
  EXPECT_EQ(CellAt("B1")["value"], 1.0 / 3);
  EXPECT_EQ(CellAt("C1")["value"], true);
  EXPECT_EQ(CellAt("D1")["value"], "007");
  EXPECT_EQ(CellAt("E1")["value"], "=not a formula");
  EXPECT_EQ(CellAt("E1")["formula"], "");
  EXPECT_EQ(CellAt("F1")["text"], "#N/A");
  EXPECT_EQ(CellAt("G1")["text"], "");
}

TEST_F(UndoTools, AWriteThatFailedIsNotTakenBack) {
  SetText("A1", L"kept");
  static_cast<void>(Mark());
  static_cast<void>(Run(L"excelWriteRange", LR"({"range":"A1:B1","values":[["=(","ok"]]})"));
  SetText("A1", L"the user's");
  EXPECT_EQ(Undo(), Restored(1, 0));
  EXPECT_EQ(CellAt("A1")["text"], "the user's");
}

TEST_F(UndoTools, ABusyHostLosesNothing) {
  SetText("A1", L"old");
  SetText("B1", L"old");
  static_cast<void>(Mark());
  Write(L"A1:B1", LR"("new","new")");
  engine.Faults().Fail({.member = "Range.Value2",
                        .error = {DISP_E_EXCEPTION, devhost::memory::kHostBusy},
                        .on = devhost::memory::kOnPut,
                        .after = 1});
  EXPECT_EQ(Undo(), Restored(1, 1));
  engine.Faults().Clear();
  EXPECT_EQ(Undo(), Restored(1, 0));
  EXPECT_EQ(CellAt("A1")["text"], "old");
  EXPECT_EQ(CellAt("B1")["text"], "old");
}

TEST_F(UndoTools, ACellThatCannotBeRestoredIsLoggedAndLeftOut) {
  static_cast<void>(Mark());
  Write(L"A1:B1", LR"("a","b")");
  ProtectAllBut("B1");
  const TraceTail trace;
  EXPECT_EQ(Undo(), Restored(1, 0));
  EXPECT_TRUE(trace.Has(L"Excel put_Value2 failed sheet=Sheet1 row=1 col=1 hr=0x80020009"));
  EXPECT_EQ(CellAt("A1")["text"], "a");
}

TEST_F(UndoTools, AHostThatCannotTellTheWorkbookLosesNothing) {
  SetText("A1", L"old");
  static_cast<void>(Mark());
  Write(L"A1", L"\"new\"");
  for (const char* member : {"Worksheet.Parent", "Workbook.FullName"}) {
    MakeBusy(member);
    EXPECT_EQ(Undo(), Restored(0, 1));
    engine.Faults().Clear();
  }
  EXPECT_EQ(Undo(), Restored(1, 0));
  EXPECT_EQ(CellAt("A1")["text"], "old");
}

TEST_F(UndoTools, ThePinAloneDoesNotMakeAWorkbookTheSame) {
  // A window whose workbook is not known leaves the sheets to the active one. The tools of the table take the
  // target as it is.
  ExcelWindow bare = target.Pinned();
  bare.workbook = nullptr;
  target.Pin(bare);
  UndoLog undo;
  AutofillUndo autofill;
  const auto run = [&](std::wstring_view action, const std::wstring& json) {
    return RunWorkbookTool({target, *pane, undo, autofill}, action, json);
  };
  static_cast<void>(run(L"excelPushUndoMarker", L"{}"));
  static_cast<void>(
      run(L"excelWriteRange", LR"({"range":"A1","sheetName":"Sheet1","values":[["written"]]})"));
  EXPECT_EQ(CellAt("A1")["text"], "written");
  engine.AddWorkbook(L"Other.xlsx", L"C:\\Books", {L"Sheet1"});
  engine.Set(L"Sheet1", "A1", std::wstring(L"another"));
  const TraceTail trace;
  EXPECT_EQ(run(L"excelUndoMessage", L"{}"), Restored(0, 0));
  EXPECT_EQ(CellAt("A1")["text"], "another");
  EXPECT_TRUE(trace.Has(L"Excel put_Value2 failed sheet=Sheet1 row=1 col=1 hr=0x80004005\r\n"));
}

TEST_F(UndoTools, WhatWasSavedUnderAnotherNameIsStillTheSame) {
  SetText("A1", L"old");
  static_cast<void>(Mark());
  Write(L"A1", L"\"new\"");
  book->name = L"Renamed.xlsx";
  EXPECT_EQ(Undo(), Restored(1, 0));
  EXPECT_EQ(CellAt("A1")["text"], "old");
}

TEST_F(UndoTools, TheNumberFormatComesBackUnlessTheUserChoseAnother) {
  static_cast<void>(Mark());
  Write(L"A1:C1", LR"("5%","5%","text")");
  EXPECT_NE(Look("A1", L"NumberFormat").Text(), L"General");
  const Variant chosen(L"0.000");
  EXPECT_EQ(PutDispProperty(engine.RangeObject(L"Sheet1", "B1").Get(), L"NumberFormat", &chosen), S_OK);
  EXPECT_EQ(Undo(), Restored(3, 0));
  EXPECT_EQ(Look("A1", L"NumberFormat").Text(), L"General");
  EXPECT_EQ(Look("B1", L"NumberFormat").Text(), L"0.000");
}

TEST_F(UndoTools, WithoutAMarkerTheHostIsNotAsked) {
  engine.ResetCounters();
  EXPECT_EQ(Undo(), Restored(0, 0));
  EXPECT_EQ(engine.Calls("Application.DisplayAlerts"), 0u);
}

TEST_F(UndoTools, AWriteThatMayHaveReachedTheCellIsTakenBack) {
  SetText("A1", L"old");
  static_cast<void>(Mark());
  engine.Faults().Fail({.member = "Range.*", .error = {RPC_E_SERVERFAULT, 0}, .on = devhost::memory::kOnPut});
  static_cast<void>(Run(L"excelWriteRange", LR"({"range":"A1","values":[["new"]]})"));
  engine.Faults().Clear();
  SetText("A1", L"new");
  EXPECT_EQ(Undo(), Restored(1, 0));
  EXPECT_EQ(CellAt("A1")["text"], "old");
}

TEST_F(UndoTools, AnotherWorkbookIsNeverTouched) {
  static_cast<void>(Mark());
  Write(L"A1", L"\"written\"");
  engine.AddWorkbook(L"Other.xlsx", L"C:\\Books", {L"Sheet1"});
  engine.Set(L"Sheet1", "A1", std::wstring(L"another"));
  Pin();
  EXPECT_EQ(Undo(), Restored(0, 0));
  EXPECT_EQ(CellAt("A1")["text"], "another");
}

}  // namespace
}  // namespace qv::test
