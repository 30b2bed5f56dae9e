#include <string>

#include "addin/tools/tools_fixture.h"
#include "foundation/text.h"
#include "tools/sheet_name.h"
#include "tools/sheet_tools.h"

namespace qv::test {
namespace {

using devhost::memory::kGeneralFailure;

constexpr std::wstring_view kBusyText = L"Excel 正忙，请稍后重试";
constexpr const wchar_t* kOk = LR"({"ok":true})";

class SheetTools : public ToolsTest {
 protected:
  /// Names of the pinned workbook's sheets, in their order.
  [[nodiscard]] std::wstring Names() const {
    std::wstring names;
    for (const auto& sheet : book->sheets)
      names += Concat(sheet->name, L'|');
    return names;
  }
  void Fail(const std::string& member) { engine.Faults().Fail({.member = member}); }
};

TEST_F(SheetTools, ListNamesEverySheetAndTheActiveOne) {
  const TraceTail trace;
  EXPECT_EQ(
      Run(L"excelListSheets"),
      LR"({"sheets":[{"index":1,"name":"Sheet1","active":true},{"index":2,"name":"Data","active":false}]})");
  for (const wchar_t* line :
       {L"ExcelListSheets: enter\r\n", L"ExcelListSheets: ActiveWorkbook hr=0x00000000 vt=9\r\n",
        L"ExcelListSheets: Worksheets hr=0x00000000 vt=9\r\n",
        L"ExcelListSheets: Count hr=0x00000000 vt=3 val=2\r\n", L"ExcelListSheets: enumerate begin\r\n",
        L"ExcelListSheets: Item(2) begin\r\n"}) {
    EXPECT_TRUE(trace.Has(line)) << ToUtf8(line);
  }
}

TEST_F(SheetTools, ListSaysWhatTheHostDoesNotGive) {
  struct {
    const char* member;
    const wchar_t* message;
  } const cases[] = {{"Application.ActiveWorkbook", L"无活动工作簿"},
                     {"Workbook.Worksheets", L"无 Worksheets"},
                     {"Worksheets.Count", L"无法读取 Count"}};
  for (const auto& [member, message] : cases) {
    Fail(member);
    EXPECT_EQ(Run(L"excelListSheets"), Error(message)) << member;
    engine.Faults().Clear();
    MakeBusy(member);
    EXPECT_EQ(Run(L"excelListSheets"), Error(kBusyText)) << member;
    engine.Faults().Clear();
  }
  const TraceTail trace;
  engine.Faults().Fail({.member = "Worksheet.Name", .times = 1, .after = 1});
  EXPECT_EQ(Run(L"excelListSheets"), LR"({"sheets":[{"index":2,"name":"Data","active":false}]})");
  EXPECT_TRUE(trace.Has(L"ExcelListSheets: sheet(1) Name failed hr=0x80020009 vt=0\r\n"));
}

TEST_F(SheetTools, ListWithoutAnApplicationLogsIt) {
  const TraceTail trace;
  const TargetContext unconnected;
  UndoLog undo;
  AutofillUndo autofill;
  EXPECT_EQ(ListSheets({unconnected, *pane, undo, autofill}, L"{}"), Error(L"未连接到 Excel"));
  EXPECT_TRUE(trace.Has(L"ExcelListSheets: m_appDisp null\r\n"));
}

TEST_F(SheetTools, ListAndSetActiveFollowTheActiveWorkbookTheOthersThePinnedOne) {
  const auto other = engine.AddWorkbook(L"Other.xlsx", L"C:\\Books", {L"One", L"Two"});
  EXPECT_EQ(
      Run(L"excelListSheets"),
      LR"({"sheets":[{"index":1,"name":"One","active":false},{"index":2,"name":"Two","active":false}]})");
  EXPECT_EQ(Run(L"excelSetActiveSheet", LR"({"name":"Two"})"), kOk);
  EXPECT_EQ(other->windows.front()->activeSheet->name, L"Two");
  EXPECT_EQ(Run(L"excelSetActiveSheet", LR"({"name":"Data"})"), Error(L"找不到工作表：Data"));

  EXPECT_EQ(Run(L"excelAddSheet", LR"({"name":"New"})"), LR"({"ok":true,"name":"New","index":3})");
  EXPECT_EQ(Run(L"excelRenameSheet", LR"({"name":"Data","new_name":"Facts"})"), kOk);
  EXPECT_EQ(Run(L"excelDeleteSheet", LR"({"index":1})"), kOk);
  EXPECT_EQ(Names(), L"Facts|New|");
  EXPECT_EQ(other->sheets.size(), 2U);
}

TEST_F(SheetTools, SetActiveTakesANameOrAnIndex) {
  EXPECT_EQ(Run(L"excelSetActiveSheet", LR"({"index":2})"), kOk);
  EXPECT_EQ(book->windows.front()->activeSheet->name, L"Data");
  EXPECT_EQ(Run(L"excelSetActiveSheet", LR"({"name":"sheet1","index":2})"), kOk);
  EXPECT_EQ(book->windows.front()->activeSheet->name, L"Sheet1");
}

TEST_F(SheetTools, SetActiveSaysWhatIsWrong) {
  const struct {
    const wchar_t* json;
    const wchar_t* message;
  } cases[] = {{L"{}", L"需提供 name 或 index"},
               {LR"({"name":""})", L"需提供 name 或 index"},
               {LR"({"index":null})", L"需提供 name 或 index"},
               {LR"({"index":0})", L"索引越界"},
               {LR"({"index":1.5})", L"索引越界"},
               {LR"({"index":3})", L"索引越界"},
               {LR"({"index":-1})", L"索引越界"},
               {LR"({"index":99999999999})", L"索引越界"},
               {LR"({"name":"a\"b"})", L"找不到工作表：a\"b"}};
  for (const auto& [json, message] : cases)
    EXPECT_EQ(Run(L"excelSetActiveSheet", json), Error(message)) << ToUtf8(json);
  engine.Sheet(L"Data").visible = 0;
  EXPECT_EQ(Run(L"excelSetActiveSheet", LR"({"name":"Data"})"), Error(L"激活失败"));
  Fail("Application.ActiveWorkbook");
  EXPECT_EQ(Run(L"excelSetActiveSheet", LR"({"name":"Data"})"), Error(L"无活动工作簿"));
  engine.Faults().Clear();
  Fail("Workbook.Worksheets");
  EXPECT_EQ(Run(L"excelSetActiveSheet", LR"({"name":"Data"})"), Error(L"无 Worksheets"));
}

TEST_F(SheetTools, SheetsThatCannotBeCountedAreToldOf) {
  Fail("Worksheets.Count");
  EXPECT_EQ(Run(L"excelSetActiveSheet", LR"({"index":1})"), Error(L"无法读取 Count"));
  EXPECT_EQ(Run(L"excelSetActiveSheet", LR"({"name":"Data"})"), kOk);
  EXPECT_EQ(Run(L"excelAddSheet"), Error(L"无法读取 Count"));
  EXPECT_EQ(Run(L"excelAddSheet", LR"({"before":"Data","name":"New"})"),
            LR"({"ok":true,"name":"New","index":2})");
}

TEST_F(SheetTools, AnIndexOfItsOwnGoesBeforeANameElsewhere) {
  EXPECT_EQ(Run(L"excelDeleteSheet", LR"({"index":2,"reason":{"name":"Sheet1"}})"), kOk);
  EXPECT_EQ(Names(), L"Sheet1|");
}

TEST_F(SheetTools, AddPutsTheSheetWhereItIsWanted) {
  EXPECT_EQ(Run(L"excelAddSheet", LR"({"name":"Last"})"), LR"({"ok":true,"name":"Last","index":3})");
  EXPECT_EQ(Run(L"excelAddSheet", LR"({"name":"First","before":"Sheet1"})"),
            LR"({"ok":true,"name":"First","index":1})");
  EXPECT_EQ(Run(L"excelAddSheet", LR"({"name":"Mid","after":"Sheet1"})"),
            LR"({"ok":true,"name":"Mid","index":3})");
  EXPECT_EQ(Names(), L"First|Sheet1|Mid|Data|Last|");
  EXPECT_EQ(Run(L"excelAddSheet"), LR"({"ok":true,"name":"Sheet6","index":6})");
}

TEST_F(SheetTools, AddCleansTheNameAndNumbersATakenOne) {
  EXPECT_EQ(Run(L"excelAddSheet", LR"({"name":"Data"})"), LR"q({"ok":true,"name":"Data (2)","index":3})q");
  EXPECT_EQ(Run(L"excelAddSheet", LR"({"name":" 'a/b:c' "})"), LR"({"ok":true,"name":"abc","index":4})");
  const std::wstring longest(31, L'x');
  const std::wstring json = Concat(LR"({"name":")", longest, LR"(xxxxxxxxx"})");
  EXPECT_EQ(Run(L"excelAddSheet", json), Concat(LR"({"ok":true,"name":")", longest, LR"(","index":5})"));
  EXPECT_EQ(Run(L"excelAddSheet", json),
            Concat(LR"({"ok":true,"name":")", longest.substr(4), LR"q( (2)","index":6})q"));
}

TEST_F(SheetTools, AddTriesFiftyNumbersAndThenLeavesTheHostsName) {
  for (int number = 2; number < kLastNameNumber; ++number)
    engine.Host().AddSheet(book, NumberedSheetName(L"Data", number), book->sheets.size());
  EXPECT_EQ(Run(L"excelAddSheet", LR"({"name":"Data"})"), LR"q({"ok":true,"name":"Data (51)","index":52})q");
  EXPECT_EQ(Run(L"excelAddSheet", LR"({"name":"Data"})"), LR"({"ok":true,"name":"Sheet53","index":53})");
}

TEST_F(SheetTools, AddSaysWhatIsWrongAndAddsNothing) {
  EXPECT_EQ(Run(L"excelAddSheet", LR"({"before":"None"})"), Error(L"找不到 before 工作表"));
  EXPECT_EQ(Run(L"excelAddSheet", LR"({"after":"None"})"), Error(L"找不到 after 工作表"));
  engine.Faults().Hide("Worksheets.Add");
  EXPECT_EQ(Run(L"excelAddSheet"), Error(L"无法获取 Add DISPID"));
  engine.Faults().Clear();
  MakeBusy("Worksheets.Add");
  EXPECT_EQ(Run(L"excelAddSheet"), Error(L"创建工作表失败"));
  engine.Faults().Clear();
  book->isStructureProtected = true;
  EXPECT_EQ(Run(L"excelAddSheet", LR"({"name":"New"})"), Error(L"创建工作表失败"));
  EXPECT_EQ(Names(), L"Sheet1|Data|");
}

TEST_F(SheetTools, DeleteKeepsTheLastVisibleSheetAndAnswersNoBoxes) {
  EXPECT_EQ(Run(L"excelDeleteSheet", LR"({"name":"None"})"), Error(L"找不到工作表"));
  EXPECT_EQ(Run(L"excelDeleteSheet"), Error(L"找不到工作表"));
  book->isStructureProtected = true;
  EXPECT_EQ(Run(L"excelDeleteSheet", LR"({"name":"Data"})"), Error(L"删除失败"));
  book->isStructureProtected = false;
  EXPECT_EQ(Run(L"excelDeleteSheet", LR"({"name":"Data"})"), kOk);
  EXPECT_EQ(Run(L"excelDeleteSheet", LR"({"index":1})"), Error(L"删除失败"));
  EXPECT_EQ(Names(), L"Sheet1|");
}

TEST_F(SheetTools, DeleteOfAHostThatAsksAfterAllIsNoSuccess) {
  // Alerts that cannot be read are left on; the host then asks, and nobody says yes.
  Fail("Application.DisplayAlerts");
  EXPECT_EQ(Run(L"excelDeleteSheet", LR"({"name":"Data"})"), Error(L"删除失败"));
  EXPECT_EQ(Names(), L"Sheet1|Data|");
}

TEST_F(SheetTools, RenameCleansTheNameAndRefusesATakenOne) {
  EXPECT_EQ(Run(L"excelRenameSheet", LR"({"name":"Data"})"), Error(L"new_name 必填"));
  EXPECT_EQ(Run(L"excelRenameSheet", LR"({"name":"None","new_name":"x"})"), Error(L"找不到工作表"));
  EXPECT_EQ(Run(L"excelRenameSheet", LR"({"index":2,"new_name":"SHEET1"})"), Error(L"重命名失败"));
  EXPECT_EQ(Run(L"excelRenameSheet", LR"({"index":2,"new_name":"[Q1]"})"), kOk);
  EXPECT_EQ(Run(L"excelRenameSheet", LR"({"index":1,"new_name":"???"})"), kOk);
  EXPECT_EQ(Names(), L"Sheet|Q1|");
  book->isStructureProtected = true;
  EXPECT_EQ(Run(L"excelRenameSheet", LR"({"index":2,"new_name":"x"})"), Error(L"重命名失败"));
}

TEST_F(SheetTools, ABusyHostIsToldOfAsSuch) {
  for (const char* member : {"Workbook.Worksheets", "Worksheets.Item"}) {
    MakeBusy(member);
    EXPECT_EQ(Run(L"excelSetActiveSheet", LR"({"name":"Data"})"), Error(kBusyText)) << member;
    EXPECT_EQ(Run(L"excelAddSheet", LR"({"name":"New"})"), Error(kBusyText)) << member;
    EXPECT_EQ(Run(L"excelDeleteSheet", LR"({"name":"Data"})"), Error(kBusyText)) << member;
    EXPECT_EQ(Run(L"excelRenameSheet", LR"({"index":2,"new_name":"x"})"), Error(kBusyText)) << member;
    engine.Faults().Clear();
  }
  EXPECT_EQ(Names(), L"Sheet1|Data|");
}

TEST_F(SheetTools, EveryFormOfACollectionsItemsWillDo) {
  for (const auto form : {devhost::memory::ItemForm::kMethodOnly, devhost::memory::ItemForm::kDefaultOnly}) {
    engine.Faults().SetItemForm("Worksheets", form);
    EXPECT_NE(Run(L"excelListSheets").find(L"\"Data\""), std::wstring::npos);
    EXPECT_EQ(Run(L"excelSetActiveSheet", LR"({"name":"Data"})"), kOk);
    engine.Faults().Clear();
  }
}

}  // namespace
}  // namespace qv::test
