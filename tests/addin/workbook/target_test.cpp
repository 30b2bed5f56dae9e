#include "addin/workbook/workbook_fixture.h"
#include "workbook/automation.h"
#include "workbook/workbook_busy_table.h"

namespace qv::test {
namespace {

using devhost::memory::kHostBusy;
using devhost::memory::MemberFault;

class Target : public WorkbookTest {};

TEST_F(Target, WithoutAPinTheActiveOnesAreUsedAndTheLogSaysSo) {
  const TraceTail trace;
  EXPECT_NE(target.GetTargetWindowDrv(), nullptr);
  EXPECT_EQ(GetStringProperty(target.GetTargetActiveSheetDrv().Get(), L"Name"), L"Sheet1");
  EXPECT_EQ(target.GetActiveSheetName(), L"Sheet1");
  EXPECT_NE(target.GetActiveSheetDispatch(), nullptr);
  EXPECT_EQ(GetIntProperty(target.GetActiveWorkbookSheets().Get(), L"Count"), 2);
  EXPECT_EQ(GetIntProperty(target.GetActiveWorkbookWorksheets().Get(), L"Count"), 2);
  for (const wchar_t* line : {L"GetTargetWindowDrv: degraded ActiveWindow (no pinned window)\r\n",
                              L"GetTargetActiveSheetDrv: degraded ActiveSheet (no pinned window)\r\n",
                              L"GetActiveSheetDispatch: degraded App.ActiveSheet (no pinned window)\r\n",
                              L"GetActiveSheetDispatch: OK\r\n",
                              L"GetActiveWorkbookSheets: degraded ActiveWorkbook (no pinned workbook)\r\n",
                              L"GetActiveWorkbookWorksheets: degraded ActiveWorkbook (no pinned book)\r\n"})
    EXPECT_TRUE(trace.Has(line)) << testing::PrintToString(std::wstring(line));
}

TEST_F(Target, ThePinWinsOverWhatIsActive) {
  Pin();
  engine.AddWorkbook(L"Other.xlsx", L"C:\\Books", {L"Elsewhere"});
  const TraceTail trace;
  EXPECT_EQ(target.GetActiveSheetName(), L"Sheet1");
  EXPECT_EQ(GetIntProperty(target.GetActiveWorkbookSheets().Get(), L"Count"), 2);
  EXPECT_EQ(GetStringProperty(target.GetTargetSelectionDrv().Get(), L"Address"), L"$A$1");
  EXPECT_FALSE(trace.Has(L"degraded"));
  EXPECT_EQ(target.WorkbookKey(), L"C:\\Books\\Book.xlsx");
}

TEST_F(Target, AnUnsavedWorkbookHasItsNameAsKey) {
  engine.AddWorkbook(L"Book1", L"");
  Pin();
  EXPECT_EQ(target.WorkbookKey(), L"Book1");
}

TEST_F(Target, TheParentDecidesWhereTheCaptionIsNoWorkbookName) {
  engine.AddWindow(book);
  engine.AddWorkbook(L"Other.xlsx");
  engine.ActivateWindow(book->windows[1]);
  const TraceTail trace;
  const ExcelWindow window = ExcelWindow::ResolveForInvocation(engine.Application(), nullptr);
  EXPECT_EQ(window.caption, L"Book.xlsx:2");
  EXPECT_EQ(window.workbookName, L"Book.xlsx");
  EXPECT_TRUE(trace.Has(
      L"ExcelWindow FromWindowDisp: Window.Workbook unavailable, name-match hits=0 caption=Book.xlsx:2\r\n"));
  EXPECT_FALSE(trace.Has(L"unavailable caption="));
}

TEST_F(Target, AWindowWhoseWorkbookNobodyTellsStaysWithoutOne) {
  book->windows[0]->ownCaption = L"Something else";
  engine.Faults().Hide("Window.Parent");
  const TraceTail trace;
  const ExcelWindow window = ExcelWindow::ResolveForInvocation(engine.Application(), nullptr);
  EXPECT_TRUE(window.IsValid());
  EXPECT_EQ(window.workbook, nullptr);
  EXPECT_TRUE(
      trace.Has(L"ExcelWindow FromWindowDisp: Window.Workbook unavailable caption=Something else\r\n"));
}

TEST_F(Target, TheNameMatchIgnoresCase) {
  book->windows[0]->ownCaption = L"BOOK.XLSX";
  engine.Faults().Hide("Window.Parent");
  EXPECT_EQ(ExcelWindow::ResolveForInvocation(engine.Application(), nullptr).workbookName, L"Book.xlsx");
}

TEST_F(Target, AClosedWindowIsReboundOnlyWhenAllowed) {
  engine.AddWindow(book);
  Pin();
  engine.AddWorkbook(L"Other.xlsx");
  engine.CloseWindow(book->windows.back());
  ExcelWindow pinned = target.Pinned();
  EXPECT_FALSE(RefreshIfDocumentSwapped(pinned, engine.Application(), false));
  EXPECT_EQ(pinned.workbookName, L"Book.xlsx");
  const TraceTail trace;
  EXPECT_TRUE(target.RefreshPin());
  EXPECT_EQ(target.Pinned().workbookName, L"Other.xlsx");
  EXPECT_EQ(target.WorkbookKey(), L"C:\\Books\\Other.xlsx");
  EXPECT_TRUE(trace.Has(L"pinned window dead, rebound from \"Book.xlsx:2\" to \"Other.xlsx\"\r\n"));
}

TEST_F(Target, TheFirstLiveWindowStandsInForAMissingActiveOne) {
  Pin();
  engine.AddWorkbook(L"Other.xlsx");
  engine.CloseWindow(book->windows[0]);
  engine.Faults().Hide("Application.ActiveWindow");
  const TraceTail trace;
  EXPECT_TRUE(target.RefreshPin());
  EXPECT_EQ(target.Pinned().workbookName, L"Other.xlsx");
  EXPECT_TRUE(
      trace.Has(L"ExcelWindow RefreshIfDocumentSwapped: ActiveWindow unavailable, windows=1 live=1\r\n"));
}

TEST_F(Target, ABusyHostDoesNotCostThePaneItsWindow) {
  Pin();
  engine.AddWorkbook(L"Other.xlsx");
  engine.Faults().Fail({.member = "Window.Caption", .error = {DISP_E_EXCEPTION, kHostBusy}, .times = 1});
  EXPECT_TRUE(target.RefreshPin());
  EXPECT_EQ(target.Pinned().workbookName, L"Book.xlsx");
}

TEST_F(Target, AnotherDocumentInTheSameWindowIsFollowed) {
  Pin();
  const auto other = engine.AddWorkbook(L"Other.xlsx");
  book->windows[0]->workbook = other;
  const TraceTail trace;
  EXPECT_TRUE(target.RefreshPin());
  EXPECT_EQ(target.WorkbookKey(), L"C:\\Books\\Other.xlsx");
  EXPECT_TRUE(trace.Has(L"workbook changed from \"Book.xlsx\" to \"Other.xlsx\"\r\n"));
  ExcelWindow pinned = target.Pinned();
  EXPECT_FALSE(RefreshIfDocumentSwapped(pinned, engine.Application(), true));
}

TEST_F(Target, APaneWhoseWindowsAreAllClosedIsLeftWithoutATarget) {
  Pin();
  engine.CloseWindow(book->windows[0]);
  const TraceTail trace;
  EXPECT_FALSE(target.RefreshPin());
  EXPECT_FALSE(target.Pinned().IsValid());
  EXPECT_EQ(target.WorkbookKey(), L"");
  EXPECT_TRUE(trace.Has(L"pinned window dead, rebound from \"Book.xlsx\" to \"\"\r\n"));
}

TEST_F(Target, ASaveUnderAnotherNameChangesTheKey) {
  Pin();
  book->path = L"D:\\Moved";
  EXPECT_TRUE(target.RefreshPin());
  EXPECT_EQ(target.WorkbookKey(), L"D:\\Moved\\Book.xlsx");
  engine.Faults().Fail({.member = "Workbook.*", .error = {DISP_E_EXCEPTION, kHostBusy}});
  EXPECT_TRUE(target.RefreshPin());
  EXPECT_EQ(target.WorkbookKey(), L"D:\\Moved\\Book.xlsx") << "a busy host does not cost the names";
}

TEST_F(Target, APaneWithoutAPinKeepsTheActiveWindowForOneRunOnly) {
  EXPECT_TRUE(target.RefreshPin());
  EXPECT_EQ(target.Pinned().workbookName, L"Book.xlsx");
  EXPECT_EQ(target.Pinned().hwnd, book->windows[0]->hwnd);
  const auto other = engine.AddWorkbook(L"Other.xlsx", L"C:\\Books", {L"Elsewhere"});
  EXPECT_EQ(target.GetActiveSheetName(), L"Sheet1") << "the run goes on where it began";
  EXPECT_TRUE(target.RefreshPin());
  EXPECT_EQ(target.Pinned().workbookName, L"Other.xlsx") << "the next run begins where the user is";
  target.DropImplicitPin();
  EXPECT_FALSE(target.Pinned().IsValid());
  EXPECT_EQ(target.WorkbookKey(), L"");
  engine.ActivateWindow(book->windows[0]);
  EXPECT_EQ(target.GetActiveSheetName(), L"Sheet1");

  EXPECT_TRUE(target.RefreshPin());
  Pin();
  engine.ActivateWindow(other->windows[0]);
  target.DropImplicitPin();
  EXPECT_TRUE(target.RefreshPin());
  EXPECT_EQ(target.Pinned().workbookName, L"Book.xlsx") << "what was pinned on purpose stays";
}

TEST_F(Target, SheetsBelongToTheWorkbookWhoseNameTheyShare) {
  Pin();
  const ComPtr<IDispatch> own = engine.SheetObject(L"Data");
  engine.AddWorkbook(L"Book.xlsx", L"D:\\Copies", {L"Data"});
  const ComPtr<IDispatch> foreign = engine.SheetObject(L"Data");
  EXPECT_TRUE(SheetBelongsToTarget(own.Get(), target.Pinned()));
  EXPECT_FALSE(SheetBelongsToTarget(foreign.Get(), target.Pinned()));
  EXPECT_FALSE(SheetBelongsToTarget(nullptr, target.Pinned()));
  EXPECT_TRUE(SheetBelongsToTarget(foreign.Get(), ExcelWindow()));
}

TEST_F(Target, OneWorkbookIsClaimedByOnePane) {
  const int first = 0;
  const int second = 0;
  const TraceTail trace;
  EXPECT_TRUE(WorkbookBusyTable::TryClaimWorkbook(L"K", &first));
  EXPECT_TRUE(WorkbookBusyTable::TryClaimWorkbook(L"K", &first));
  EXPECT_FALSE(WorkbookBusyTable::TryClaimWorkbook(L"K", &second));
  EXPECT_TRUE(trace.Has(L"Excel workbook busy key=K owner="));
  WorkbookBusyTable::ReleaseWorkbook(L"K", &second);
  EXPECT_FALSE(WorkbookBusyTable::TryClaimWorkbook(L"K", &second));
  WorkbookBusyTable::ReleaseWorkbook(L"K", &first);
  EXPECT_TRUE(WorkbookBusyTable::TryClaimWorkbook(L"K", &second));
  WorkbookBusyTable::ReleaseWorkbook(L"K", &second);
  EXPECT_TRUE(WorkbookBusyTable::TryClaimWorkbook(L"", &first));
  EXPECT_TRUE(WorkbookBusyTable::TryClaimWorkbook(L"", &second));
}

}  // namespace
}  // namespace qv::test
