#include <string>
#include <vector>

#include "addin/tools/tools_fixture.h"
#include "foundation/text.h"
#include "workbook/cell_text.h"

namespace qv::test {
namespace {

using devhost::memory::kAlways;

class AutofillTools : public ToolsTest {
 protected:
  std::wstring Scan() { return Run(L"autofillScan"); }
  std::wstring Undo() { return Run(L"autofillUndo"); }
  std::wstring Apply(const std::wstring& items) {
    return Run(L"autofillApply", L"{\"fills\":[" + items + L"]}");
  }
  /// Fills a cell, which has to take it.
  void Fill(int row, int col, const std::wstring& value) {
    EXPECT_TRUE(Apply(Item(row, col, value)).ends_with(L"\"applied\":1}"));
  }
  static std::wstring Item(int row, int col, const std::wstring& value,
                           const std::wstring& action = L"fill") {
    return Concat(L"{\"row\":", row, L",\"col\":", col, L",\"action\":\"", action, L"\",\"value\":\"", value,
                  L"\",\"confidence\":0.5}");
  }
  /// Addresses and labels of the scan's fields.
  std::vector<std::wstring> Fields() {
    const nlohmann::json result = nlohmann::json::parse(ToUtf8(Scan()));
    std::vector<std::wstring> fields;
    for (const auto& field : result.at("fields")) {
      fields.push_back(FromUtf8(field.at("address").get<std::string>()) + L"=" +
                       FromUtf8(field.at("label").get<std::string>()));
    }
    return fields;
  }
  void Put(const std::string& address, const wchar_t* property, const Variant& value) {
    EXPECT_EQ(PutDispProperty(engine.RangeObject(L"Sheet1", address).Get(), property, &value), S_OK);
  }
  void HideLines(const std::string& address, const wchar_t* whole) {
    const ComPtr<IDispatch> lines = GetDispProperty(engine.RangeObject(L"Sheet1", address).Get(), whole);
    const Variant hidden(true);
    EXPECT_EQ(PutDispProperty(lines.Get(), L"Hidden", &hidden), S_OK);
  }
  /// Labels in A, inputs in B, and something in C that keeps them in the used range.
  void MakeForm() {
    int row = 1;
    for (const wchar_t* label : {L"Name", L"Town", L"Age", L"Note"}) {
      SetText("A" + std::to_string(row), label);
      SetText("C" + std::to_string(row++), L"*");
    }
  }
  /// 500 labels among `cols` columns of 500 rows.
  void MakeLargeForm(int cols) {
    for (int row = 1; row <= 500; ++row)
      SetText("B" + std::to_string(row), L"Label");
    engine.Set(L"Sheet1", ToUtf8(A1Address(500, cols)), 1.0);
    engine.Set(L"Sheet1", "A1", 1.0);
  }
};

using List = std::vector<std::wstring>;

TEST_F(AutofillTools, AScanTellsFieldsAndUsedRange) {
  SetText("B2", L"Name");
  SetText("C3", L"E.G.: Ann");
  const TraceTail trace;
  EXPECT_EQ(
      Scan(),
      LR"({"fields":[{"id":"R2C3","kind":"empty","label":"Name","placeholderText":"","currentValue":"","row":2,)"
      LR"("col":3,"address":"C2","context":{"left":"Name","above":"","rowText":"Name"}},)"
      LR"({"id":"R3C2","kind":"empty","label":"Name","placeholderText":"","currentValue":"","row":3,"col":2,)"
      LR"("address":"B3","context":{"left":"","above":"Name","rowText":"E.G.: Ann"}},)"
      LR"({"id":"R3C3","kind":"example_placeholder","label":"","placeholderText":"E.G.: Ann",)"
      LR"("currentValue":"E.G.: Ann","row":3,"col":3,"address":"C3",)"
      LR"("context":{"left":"","above":"","rowText":"E.G.: Ann"}}],)"
      LR"("usedRange":{"rows":2,"cols":2,"row0":2,"col0":2}})");
  EXPECT_TRUE(trace.Has(L"Excel CollectAutofillCells (UsedRange)\r\n"));
}

TEST_F(AutofillTools, AUsedRangeOfOneCellIsScannedToo) {
  EXPECT_EQ(Scan(), LR"({"fields":[],"usedRange":{"rows":1,"cols":1,"row0":1,"col0":1}})");
  engine.Set(L"Sheet1", "D4", 5.0);
  EXPECT_TRUE(Scan().ends_with(L"\"fieldsEmptyButUsedRangePopulated\":true}"));
  SetText("D4", L"__");
  EXPECT_EQ(Fields(), (List{L"D4="}));
}

TEST_F(AutofillTools, OnlyCellsThatTheUserSeesAndMayFillAreFields) {
  MakeForm();
  EXPECT_EQ(Fields(), (List{L"B1=Name", L"B2=Town", L"B3=Age", L"B4=Note"}));
  engine.SetFormula(L"Sheet1", "B1", L"=IF(A9,\"\",\"\")", std::wstring());
  EXPECT_EQ(Fields(), (List{L"B2=Town", L"B3=Age", L"B4=Note"})) << "a formula that shows nothing";
  HideLines("A3", L"EntireRow");
  EXPECT_EQ(Fields(), (List{L"B2=Town", L"B4=Note"}));
  ProtectAllBut("B4");
  EXPECT_EQ(Fields(), (List{L"B4=Note"}));
  engine.Sheet(L"Sheet1").isProtected = false;
  HideLines("B1", L"EntireColumn");
  EXPECT_EQ(Fields(), List{});
}

TEST_F(AutofillTools, MergedCellsAreOneFieldAndOneLabelHoweverTheHostTells) {
  MakeForm();
  SetText("F6", L"*");
  engine.Merge(L"Sheet1", "B1:B2");
  SetText("D1", L"Address");
  engine.Merge(L"Sheet1", "D1:E2");
  const List seen = {L"B1=Name",    L"F1=Address", L"F2=Address", L"B3=Age",
                     L"D3=Address", L"E3=Address", L"B4=Note",    L"A5=Note"};
  EXPECT_EQ(Fields(), seen);
  engine.Faults().arrayAnswers = true;
  EXPECT_EQ(Fields(), seen);
}

TEST_F(AutofillTools, AScanWithoutBulkReadsFindsTheSame) {
  MakeForm();
  engine.Set(L"Sheet1", "C2", 7.0);
  const std::wstring together = Scan();
  engine.Faults().failBulkGets = kAlways;
  EXPECT_EQ(Scan(), together);
}

TEST_F(AutofillTools, AScanTakesTwoHundredThousandCellsAndNoMore) {
  MakeLargeForm(400);
  engine.ResetCounters();
  const nlohmann::json result = nlohmann::json::parse(ToUtf8(Scan()));
  EXPECT_EQ(result.at("fields").size(), 500u);
  EXPECT_EQ(result.at("usedRange").at("cols"), 400);
  EXPECT_LT(engine.Calls(), 60u) << "whatever the size";
  engine.Set(L"Sheet1", ToUtf8(A1Address(500, 401)), 1.0);
  EXPECT_EQ(Scan(), LR"({"fields":[],"scanUnavailable":true,"scanError":"已用区域过大，请缩小填写范围"})");
}

TEST_F(AutofillTools, AProtectedFormCostsFewCallsAField) {
  MakeLargeForm(400);
  ProtectAllBut("C100:C200");
  engine.ResetCounters();
  EXPECT_EQ(Fields().size(), 101u);
  EXPECT_LT(engine.Calls(), 200u) << "no call a cell";
}

TEST_F(AutofillTools, ASheetThatCannotBeScannedIsNoError) {
  const auto unavailable = [](std::wstring_view reason) {
    return Concat(L"{\"fields\":[],\"scanUnavailable\":true,\"scanError\":\"", reason, L"\"}");
  };
  MakeForm();
  engine.Faults().Hide("Worksheet.UsedRange");
  EXPECT_EQ(Scan(), unavailable(L"无法读取已用区域"));
  engine.Faults().Clear();
  engine.Faults().Hide("Window.ActiveSheet");
  EXPECT_EQ(Scan(), unavailable(L"未连接到工作表"));
  engine.Faults().Clear();
  EXPECT_EQ(Run(L"autofillScan", LR"({"sheetName":"Nowhere"})"), unavailable(L"找不到工作表"));
  EXPECT_EQ(Run(L"autofillScan", LR"({"sheetName":"Data"})"),
            LR"({"fields":[],"usedRange":{"rows":1,"cols":1,"row0":1,"col0":1}})");
  MakeBusy("Worksheets.Item");
  EXPECT_EQ(Run(L"autofillScan", LR"({"sheetName":"Data"})"), unavailable(L"Excel 正忙，请稍后重试"));
  engine.Faults().Clear();
  engine.Sheet(L"Sheet1").isProtected = true;
  for (const char* member :
       {"Worksheet.UsedRange", "Range.Row", "Range.Value2", "Range.MergeCells", "Range.Hidden",
        "Range.HasFormula", "Worksheet.ProtectContents", "Range.Locked"}) {
    MakeBusy(member);
    EXPECT_EQ(Scan(), unavailable(L"Excel 正忙，请稍后重试")) << member;
    engine.Faults().Clear();
  }
  engine.Faults().Hide("Range.Value2");
  EXPECT_EQ(Scan(), unavailable(L"无法读取区域"));
  engine.Faults().Clear();
  target.ReleaseReferences();
  EXPECT_EQ(Scan(), Error(L"未连接到 Excel"));
}

TEST_F(AutofillTools, WhatTheHostDoesNotTellKeepsNoFieldOut) {
  MakeForm();
  engine.Sheet(L"Sheet1").isProtected = true;
  for (const char* member :
       {"Range.MergeCells", "Range.EntireRow", "Range.EntireColumn", "Range.HasFormula", "Range.Locked"})
    engine.Faults().Hide(member);
  EXPECT_EQ(Fields().size(), 4u);
}

TEST_F(AutofillTools, ItemsAreAppliedInOrderEachWithItsStatus) {
  MakeForm();
  ProtectAllBut("B1:B3");
  EXPECT_EQ(
      Apply(Item(1, 2, L"Ann") + L',' + Item(4, 2, L"locked") + L',' + Item(2, 2, L"x", L"FILL") + L',' +
            Item(0, 2, L"dropped") + L',' + Item(3, 2, L"41") + L',' + Item(9999999, 2, L"beyond") + L',' +
            Item(1, 2, L"", L"clear")),
      LR"({"results":[{"row":1,"col":2,"status":"applied"},{"row":4,"col":2,"status":"skipped"},)"
      LR"({"row":2,"col":2,"status":"skipped"},{"row":3,"col":2,"status":"applied"},)"
      LR"({"row":9999999,"col":2,"status":"failed"},{"row":1,"col":2,"status":"applied"}],"applied":3})");
  EXPECT_EQ(CellAt("B1")["text"], "");
  EXPECT_EQ(CellAt("B3")["value"], 41);
  EXPECT_EQ(Undo(), LR"({"restored":3})");
  EXPECT_EQ(CellAt("B3")["text"], "");
}

TEST_F(AutofillTools, WithoutAnItemNothingHappens) {
  MakeForm();
  Fill(1, 2, L"Ann");
  for (const wchar_t* json :
       {L"{}", L"", LR"({"fills":[]})", LR"({"fills":"x"})", LR"({"fills":[{"row":1}]})"})
    EXPECT_EQ(Run(L"autofillApply", json), LR"({"results":[],"applied":0})");
  for (const std::wstring& item : {Item(1, 2, L"x", L"FILL"), Item(9999999, 2, L"beyond"),
                                   std::wstring(LR"({"row":1,"col":2,"action":"fill"})")})
    EXPECT_TRUE(Apply(item).ends_with(L"\"applied\":0}"));
  EXPECT_EQ(CellAt("B1")["text"], "Ann");
  EXPECT_EQ(Undo(), LR"({"restored":1})") << "and what was done before can be taken back";
}

TEST_F(AutofillTools, ACellThatWasWrittenAndNotReadBackIsTakenBack) {
  SetText("A1", L"old");
  engine.Faults().OnCall("Range.Value2", [&, puts = 0]() mutable {
    // A digit has the host look at what it made of the text; that is where it is busy.
    if (CellAt("A1")["text"] != "old" && puts++ == 0) MakeBusy("Range.Value2");
  });
  const std::wstring result = Apply(Item(1, 1, L"007"));
  engine.Faults().Clear();
  EXPECT_TRUE(result.find(L"failed") != std::wstring::npos);
  EXPECT_NE(CellAt("A1")["text"], "old");
  EXPECT_EQ(Undo(), LR"({"restored":1})");
  EXPECT_EQ(CellAt("A1")["text"], "old");
}

TEST_F(AutofillTools, AHostThatCannotTellTheProtectionWritesNothing) {
  MakeBusy("Worksheet.ProtectContents");
  EXPECT_EQ(Apply(Item(1, 1, L"x")), Error(L"Excel 正忙，请稍后重试"));
  engine.Faults().Clear();
  EXPECT_EQ(CellAt("A1")["text"], "");
}

TEST_F(AutofillTools, UndoWaitsUntilTheUserComesBackToTheWorkbook) {
  Fill(1, 1, L"new");
  const ExcelWindow form = target.Pinned();
  engine.AddWorkbook(L"Other.xlsx", L"C:\\Books", {L"Sheet1"});
  engine.Set(L"Sheet1", "A1", std::wstring(L"another"));
  Pin();
  EXPECT_EQ(Undo(), LR"({"restored":0})");
  EXPECT_EQ(CellAt("A1")["text"], "another");
  target.Pin(form);
  EXPECT_EQ(Undo(), LR"({"restored":1})");
}

TEST_F(AutofillTools, UndoPutsEveryKindOfContentBackOnce) {
  SetText("A1", L"____");
  engine.SetFormula(L"Sheet1", "B1", L"=1+1", 2.0);
  engine.Set(L"Sheet1", "C1", 1.0 / 3);
  SetText("D1", L"007");
  EXPECT_TRUE(Apply(Item(1, 1, L"a") + L',' + Item(1, 2, L"b") + L',' + Item(1, 3, L"5%") + L',' +
                    Item(1, 4, L"", L"clear") + L',' + Item(1, 5, L"00123") + L',' + Item(1, 1, L"again"))
                  .ends_with(L"\"applied\":6}"));
  EXPECT_EQ(CellAt("E1")["value"], "00123");
  EXPECT_NE(Look("C1", L"NumberFormat").Text(), L"General");
  EXPECT_EQ(Undo(), LR"({"restored":6})");
  EXPECT_EQ(CellAt("A1")["value"], "____");
  EXPECT_EQ(CellAt("B1")["formula"], "=1+1");
  EXPECT_EQ(CellAt("C1")["value"], 1.0 / 3);
  EXPECT_EQ(Look("C1", L"NumberFormat").Text(), L"General");
  EXPECT_EQ(CellAt("D1")["value"], "007");
  EXPECT_EQ(CellAt("E1")["text"], "");
  EXPECT_EQ(Undo(), LR"({"restored":0})");
}

TEST_F(AutofillTools, UndoTakesBackTheLastApplyOnlyAndLeavesTheChatsMarkersAlone) {
  static_cast<void>(Run(L"excelPushUndoMarker"));
  static_cast<void>(Run(L"excelWriteRange", LR"({"range":"A1","values":[["chat"]]})"));
  Fill(1, 2, L"first");
  Fill(1, 3, L"second");
  EXPECT_EQ(Undo(), LR"({"restored":1})");
  EXPECT_EQ(CellAt("B1")["text"], "first");
  EXPECT_EQ(CellAt("C1")["text"], "");
  EXPECT_EQ(CellAt("A1")["text"], "chat");
  EXPECT_EQ(Run(L"excelUndoMessage"), LR"({"restored":1,"depth":0})");
  EXPECT_EQ(Undo(), LR"({"restored":0})");
}

TEST_F(AutofillTools, ABusyHostLosesNothingOfTheUndo) {
  Fill(1, 1, L"new");
  MakeBusy("Range.Value2");
  EXPECT_EQ(Undo(), LR"({"restored":0})");
  engine.Faults().Clear();
  EXPECT_EQ(Undo(), LR"({"restored":1})");
  EXPECT_EQ(CellAt("A1")["text"], "");
}

TEST_F(AutofillTools, TheNamedSheetIsFilledAlthoughTheUserHasGoneElsewhere) {
  EXPECT_EQ(Run(L"autofillApply", L"{\"sheetName\":\"Data\",\"fills\":[" + Item(2, 2, L"there") + L"]}"),
            LR"({"results":[{"row":2,"col":2,"status":"applied"}],"applied":1})");
  EXPECT_EQ(CellAt("B2", L"Data")["text"], "there");
  EXPECT_EQ(CellAt("B2")["text"], "");
  EXPECT_EQ(Undo(), LR"({"restored":1})");
  EXPECT_EQ(CellAt("B2", L"Data")["text"], "");
}

TEST_F(AutofillTools, WhatCannotBeTakenBackIsNotWritten) {
  SetText("A1", L"kept");
  engine.Faults().Hide("Range.Formula");
  EXPECT_TRUE(Apply(Item(1, 1, L"x")).find(L"\"failed\"") != std::wstring::npos);
  EXPECT_EQ(CellAt("A1")["text"], "kept");
  engine.Faults().Clear();
  engine.Merge(L"Sheet1", "A1:B1");
  EXPECT_TRUE(Apply(Item(1, 2, L"x")).find(L"\"failed\"") != std::wstring::npos) << "nobody would see it";
  engine.Faults().Hide("Window.ActiveSheet");
  EXPECT_EQ(Apply(Item(1, 1, L"x")), Error(L"未连接到工作表"));
}

TEST_F(AutofillTools, TheHostsAlertsAreOffWhileCellsAreWritten) {
  std::vector<bool> seen;
  engine.Faults().OnCall("Range.Value2", [&] { seen.push_back(engine.Host().displayAlerts); });
  Fill(1, 1, L"x");
  ASSERT_FALSE(seen.empty());
  EXPECT_FALSE(seen.back());
  EXPECT_TRUE(engine.Host().displayAlerts);
}

}  // namespace
}  // namespace qv::test
