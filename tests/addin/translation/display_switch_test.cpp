#include "display_fixture.h"

namespace qv {
namespace {

class DisplaySwitchTest : public DisplayTest {};

TEST_F(DisplaySwitchTest, GoesThroughAllDisplaysAndSetsTheMarksAgain) {
  FillRows(2);
  Translate({});
  EXPECT_EQ(Switch(L"dual"), Done(L"dual", 2, 0));
  EXPECT_EQ(Text("A1"), L"Text number 1\nES:Text number 1");
  EXPECT_EQ(engine->Sheet().RowHeight(1), 30.0);
  EXPECT_EQ(engine->Cell(L"", "A1").at("runs").at(1).at("color"), 9203290);
  EXPECT_EQ(Switch(L"original"), Done(L"original", 2, 0));
  EXPECT_EQ(Switch(L"target"), Done(L"target", 2, 0));
  EXPECT_EQ(Text("A2"), L"ES:Text number 2");
  EXPECT_TRUE(Unit(1).written);
  EXPECT_EQ(Switch(L"original"), Done(L"original", 2, 0));
  EXPECT_EQ(engine->Sheet().RowHeight(1), 15.0);
}

TEST_F(DisplaySwitchTest, TheSelectionCountsWithAllItsAreas) {
  FillRows(5);
  Translate(kDual);
  engine->Select(L"Data", "A1,A3:B4");
  EXPECT_EQ(Switch(L"original", L"selection"), Done(L"original", 3, 0));
  EXPECT_EQ(Text("A1"), L"Text number 1");
  EXPECT_EQ(Text("A2"), L"Text number 2\nES:Text number 2");
  EXPECT_EQ(Text("A4"), L"Text number 4");
  EXPECT_EQ(engine->Sheet().RowHeight(2), 30.0);
  EXPECT_EQ(engine->Sheet().RowHeight(3), 15.0);
  EXPECT_EQ(Switch(L"original", L"selection"), Done(L"original", 0, 0, kNothingToRestore));
}

TEST_F(DisplaySwitchTest, TheSheetScopeIsTheActiveSheetWithItsCharts) {
  FillRows(1);
  engine->Set(L"More", "A1", std::wstring(L"Other"));
  engine->AddChart(L"More", L"Sales by region");
  Translate(L"\"excelTranslateAllSheets\":true");
  engine->ActivateSheet(L"More");
  EXPECT_EQ(Switch(L"original", L"sheet"), Done(L"original", 2, 0));
  EXPECT_EQ(engine->Sheet(L"More").charts[0]->title, L"Sales by region");
  EXPECT_EQ(Text("A1", L"Data"), L"ES:Text number 1");
  EXPECT_EQ(Switch(L"dual", L"sheet"), Done(L"dual", 2, 0));
  EXPECT_EQ(engine->Sheet(L"More").charts[0]->title, L"ES:Sales by region");
}

TEST_F(DisplaySwitchTest, RefusalsSayWhy) {
  FillRows(1);
  engine->AddChart(L"Data", L"");
  Translate({});
  EXPECT_EQ(Switch(L"both"), Done(L"both", 0, 0, L"未知的显示模式"));
  engine->Select(L"Data", "C7");
  EXPECT_EQ(Switch(L"dual", L"selection"),
            Done(L"dual", 0, 0, L"选中的单元格没有翻译结果，请先翻译或重新选择"));
  engine->SelectChart(L"Data", 0);
  EXPECT_EQ(Switch(L"dual", L"selection"), Done(L"dual", 0, 0, L"请先选中要切换的单元格"));
  engine->Fault({{"fail", "Window.Selection"}, {"times", 1}});
  EXPECT_EQ(Switch(L"dual", L"selection"), Done(L"dual", 0, 0, L"无法读取当前选区"));
  engine->ActivateSheet(L"More");
  EXPECT_EQ(Switch(L"original", L"sheet"),
            Done(L"original", 0, 0, L"当前工作表没有翻译结果，请切换到已翻译的工作表"));
  engine->Protect(L"Data", true);
  EXPECT_EQ(Switch(L"dual"), Done(L"dual", 0, 1, kSwitchFailed));
  pane->target.SetApplication(nullptr);
  EXPECT_EQ(Switch(L"dual", L"selection"), Done(L"dual", 0, 0, L"Excel 未连接"));
}

TEST_F(DisplaySwitchTest, ParagraphsAndAllAreRestoredAndApplied) {
  FillRows(3);
  Translate(kDual);
  Display().RestoreUnit(1);
  EXPECT_EQ(Text("A2"), L"Text number 2");
  EXPECT_EQ(engine->Sheet().RowHeight(2), 15.0);
  Display().ApplyUnit(1);
  EXPECT_EQ(Text("A2"), L"Text number 2\nES:Text number 2");
  for (const int index : {-1, 3, 1 << 30}) {
    Display().RestoreUnit(index);
    Display().ApplyUnit(index);
  }
  Display().RestoreAll();
  EXPECT_EQ(Answer(L"onBatchDone("), L"{action:\"restoreAll\"}");
  EXPECT_EQ(Text("A3"), L"Text number 3");
  Display().ApplyUnit(0);
  Set("A1", L"Retyped");
  pane->page.received.clear();
  Display().ApplyAll();
  EXPECT_EQ(Answer(L"onBatchDone("), L"{action:\"applyAll\"}");
  // What is applied already is not written again.
  EXPECT_EQ(Text("A1"), L"Retyped");
  EXPECT_EQ(Text("A3"), L"Text number 3\nES:Text number 3");
}

TEST_F(DisplaySwitchTest, AStyleReachesTheTranslationsThatAreStillThere) {
  FillRows(4);
  Translate(kDual);
  Display().RestoreUnit(3);
  Set("A2", L"Short");
  engine->Set(L"", "A3", std::wstring(L"A longer text than the one that was here before"));
  pane->page.received.clear();
  TargetFont font;
  font.bold = true;
  font.color = 255;
  Display().SetTargetStyle(font);
  EXPECT_EQ(Answer(L"onTargetStyleDone("), L"{ok:true,applied:1,failed:0,skipped:2,message:\"\"}");
  const nlohmann::json runs = engine->Cell(L"", "A1").at("runs");
  EXPECT_EQ(runs.at(0).at("bold"), false);
  EXPECT_EQ(runs.at(1).at("bold"), true);
  EXPECT_EQ(runs.at(1).at("color"), 255);
  EXPECT_TRUE(engine->Sheet().Find(3, 1)->runs.empty());
  // Cells that are written later get it too.
  Display().ApplyUnit(3);
  EXPECT_EQ(engine->Cell(L"", "A4").at("runs").at(1).at("color"), 255);
  engine->Protect(L"Data", true);
  pane->page.received.clear();
  Display().SetTargetStyle(font);
  EXPECT_EQ(Answer(L"onTargetStyleDone("),
            L"{ok:false,applied:0,failed:2,skipped:2,message:\"应用译文样式失败，请检查工作表是否受保护\"}");
}

TEST_F(DisplaySwitchTest, WhileARunGoesOnSwitchesAreRefusedAndOthersWait) {
  FillRows(1);
  service.Fault({{"delayMs", 200}});
  pane->Start();
  ASSERT_TRUE(PumpUntil([&] { return !service.TranslateBodies().empty(); }));
  EXPECT_EQ(Switch(L"original"), Done(L"original", 0, 0, L"正在翻译，请稍候再试"));
  Display().RestoreAll();
  EXPECT_FALSE(pane->page.Has(L"onBatchDone("));
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(Answer(L"onBatchDone("), L"{action:\"restoreAll\"}");
  EXPECT_EQ(Text("A1"), L"Text number 1");
}

TEST_F(DisplaySwitchTest, AStartOrTheEndOfThePaneInsideAWriteEndsTheSwitchThere) {
  FillRows(5);
  Translate({});
  int writes = 0;
  bool start = true;
  engine->Faults().OnCall("Range.Value2", [&] {
    if (++writes != 3) return;
    if (start) {
      pane->Start();
    } else {
      pane->Close();
    }
  });
  pane->page.received.clear();
  Display().SetMode(L"dual", L"");
  EXPECT_TRUE(pane->page.Has(L"message:\"正在翻译，请稍候再试\""));
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(pane->page.Count(L"onExcelDisplayModeDone("), 1);
  EXPECT_EQ(Text("A5"), L"ES:Text number 5");
  start = false;
  writes = 0;
  pane->page.received.clear();
  Display().SetMode(L"dual", L"");
  EXPECT_EQ(writes, 3);
  EXPECT_TRUE(pane->page.received.empty());
}

TEST_F(DisplaySwitchTest, ALongSwitchIsDoneInSlices) {
  FillRows(3);
  Translate({});
  // Each write takes longer than a slice may last.
  engine->Faults().OnCall("Range.WrapText", [] {
    const ULONGLONG begin = GetTickCount64();
    while (GetTickCount64() - begin < 70) {
    }
  });
  pane->page.received.clear();
  Display().SetMode(L"dual", L"");
  EXPECT_FALSE(pane->page.Has(L"onExcelDisplayModeDone("));
  EXPECT_TRUE(engine->Host().screenUpdating);
  EXPECT_EQ(Answer(L"onExcelDisplayModeDone("), Done(L"dual", 3, 0));
}

TEST_F(DisplaySwitchTest, ABusyHostIsNotTakenForOneWithoutCells) {
  FillRows(2);
  Translate({});
  engine->Select(L"Data", "A1:A2");
  for (const wchar_t* scope : {L"selection", L"sheet", L"session"}) {
    for (const char* member : {"Application.*", "Window.Selection", "Window.ActiveSheet", "Worksheet.Name"}) {
      SCOPED_TRACE(ToUtf8(Concat(scope, L" ")) + member);
      engine->Fault({{"fail", member}, {"code", "0x800AC472"}, {"on", "get"}, {"times", 1}});
      EXPECT_EQ(Switch(L"dual", scope), Done(L"dual", 2, 0));
      engine->Fault({{"clear", true}});
    }
  }
}

TEST_F(DisplaySwitchTest, AHostThatStaysBusyIsToldApartFromAnEmptyScope) {
  pane = std::make_unique<TestPane>(engine->Application(), Patience{1, 3});
  FillRows(1);
  Translate({});
  engine->Fault({{"fail", "Window.*"}, {"code", "0x800AC472"}, {"on", "get"}, {"times", "always"}});
  EXPECT_EQ(Switch(L"dual", L"selection"), Done(L"dual", 0, 0, L"无法读取当前选区"));
  EXPECT_EQ(Switch(L"dual", L"sheet"), Done(L"dual", 0, 0, kSwitchFailed));
  engine->Fault({{"clear", true}});
  EXPECT_EQ(Switch(L"dual", L"sheet"), Done(L"dual", 1, 0));
}

TEST_F(DisplaySwitchTest, HeightsThatABusyHostRefusedArePutBackByTheNextRestore) {
  pane = std::make_unique<TestPane>(engine->Application(), Patience{1, 3});
  FillRows(2);
  Translate(kDual);
  engine->Fault({{"fail", "Range.RowHeight"}, {"code", "0x800AC472"}, {"on", "put"}, {"times", "always"}});
  EXPECT_EQ(Switch(L"original"), Done(L"original", 2, 0));
  EXPECT_EQ(engine->Sheet().RowHeight(1), 30.0);
  engine->Fault({{"clear", true}});
  EXPECT_EQ(Switch(L"original"), Done(L"original", 0, 0, kNothingToRestore));
  EXPECT_EQ(engine->Sheet().RowHeight(1), 15.0);
  EXPECT_EQ(engine->Sheet().RowHeight(2), 15.0);
}

TEST_F(DisplaySwitchTest, TheRowsOfCellsThatAreBackAreRestoredAlsoWhenOthersAreGivenUp) {
  pane = std::make_unique<TestPane>(engine->Application(), Patience{1, 3});
  FillRows(3);
  Translate(kDual);
  engine->Fault(
      {{"fail", "Range.Value2"}, {"code", "0x800AC472"}, {"on", "put"}, {"times", 4}, {"after", 1}});
  EXPECT_EQ(Switch(L"original"), Done(L"original", 1, 2));
  EXPECT_EQ(engine->Sheet().RowHeight(3), 15.0);
  EXPECT_EQ(engine->Sheet().RowHeight(2), 30.0);
}

TEST_F(DisplaySwitchTest, EachRowHasTheWholePatience) {
  pane = std::make_unique<TestPane>(engine->Application(), Patience{1, 3});
  FillRows(4);
  Translate(kDual);
  // Two busy answers a row are eight in all, but never four in a row.
  int puts = 0;
  engine->Faults().OnCall("Range.RowHeight", [&] {
    if (++puts % 4 == 2) {
      engine->Fault({{"fail", "Range.RowHeight"}, {"code", "0x800AC472"}, {"on", "put"}, {"times", 1}});
    }
  });
  EXPECT_EQ(Switch(L"original"), Done(L"original", 4, 0));
  for (const int row : {1, 2, 3, 4})
    EXPECT_EQ(engine->Sheet().RowHeight(row), 15.0) << row;
}

TEST_F(DisplaySwitchTest, AStyleThatABusyHostRefusedIsPutAgain) {
  FillRows(2);
  Translate(kDual);
  engine->Fault({{"fail", "Font.Color"}, {"code", "0x800AC472"}, {"on", "put"}, {"times", 1}});
  TargetFont font;
  font.color = 255;
  Display().SetTargetStyle(font);
  EXPECT_EQ(Answer(L"onTargetStyleDone("), L"{ok:true,applied:2,failed:0,skipped:0,message:\"\"}");
  EXPECT_EQ(engine->Cell(L"", "A1").at("runs").at(1).at("color"), 255);
}

TEST_F(DisplaySwitchTest, HeadersOfASheetThatIsNotShownKeepTheirHeight) {
  FillRows(2);
  const auto window = engine->Host().ActiveWindow();
  devhost::memory::SheetView& view = window->ViewOf(engine->Sheet(L"Data"));
  view.splitRow = 1;
  view.frozen = true;
  Translate(kDual);
  engine->ActivateSheet(L"More");
  EXPECT_EQ(Switch(L"target"), Done(L"target", 2, 0));
  EXPECT_EQ(Switch(L"dual"), Done(L"dual", 2, 0));
  EXPECT_EQ(engine->Sheet(L"Data").RowHeight(1), 15.0);
  EXPECT_EQ(engine->Sheet(L"Data").RowHeight(2), 30.0);
}

}  // namespace
}  // namespace qv
