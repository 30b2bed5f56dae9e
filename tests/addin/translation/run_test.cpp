#include "foundation/text.h"
#include "run_fixture.h"
#include "workbook/workbook_busy_table.h"

namespace qv {
namespace {

TEST_F(RunTest, TranslatesASheetAndTellsThePage) {
  FillRows(25);
  engine->Set(L"", "B1", 12.5);
  engine->SetFormula(L"", "B2", L"=B1*2", 25.0);
  pane->Start(L"\"clientTraceId\":\"trace-1\"");
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));

  EXPECT_EQ(Text("A1"), L"ES:Text number 1");
  EXPECT_EQ(Text("A25"), L"ES:Text number 25");
  EXPECT_EQ(Text("B1"), L"<12.5>");
  EXPECT_EQ(engine->Cell(L"", "B2").at("formula"), "=B1*2");
  EXPECT_FALSE(pane->controller->IsRunning());

  const std::vector<std::wstring>& received = pane->page.received;
  EXPECT_EQ(received[0], L"(function(){var i=document.getElementById('chatInput');if(i)i.blur();})();");
  EXPECT_EQ(received[1], L"if(window.onRunStarted)onRunStarted({runId:1})");
  EXPECT_EQ(pane->page.Find(L"onReady("), L"if(window.onReady)onReady({total:50,translatable:25,runId:1})");
  EXPECT_EQ(pane->page.Count(L"onProgress({"), 25);
  EXPECT_TRUE(
      pane->page.Has(L"wordIndex:24,total:50,translatable:25,skipped:false,original:\"Text number 25\","
                     L"translated:\"ES:Text number 25\""));
  EXPECT_TRUE(Contains(received.back(), L"onComplete({runId:1,total:50,elapsed:"));
  EXPECT_TRUE(Contains(received.back(), L",allSheets:false})"));

  const std::vector<nlohmann::json> bodies = service.TranslateBodies();
  ASSERT_EQ(bodies.size(), 2U);
  EXPECT_EQ(bodies[0].at("texts").size(), 20U);
  EXPECT_EQ(bodies[1].at("unitIds").at(0), "R21C1");
  EXPECT_EQ(bodies[0].at("usageKind"), "translate_full");
  EXPECT_EQ(bodies[0].at("clientProduct"), "excel");
  EXPECT_EQ(bodies[1].at("trace"),
            nlohmann::json({{"clientTraceId", "trace-1"}, {"runId", "1"}, {"batchSeq", 2}}));
  EXPECT_EQ(bodies[0].at("clientContext").at("hostVersion"), "16.0");
}

TEST_F(RunTest, ASheetWithoutTextsCompletesAtOnce) {
  engine->Set(L"", "A1", 1.0);
  // Every run ends with the screen updating again, whoever switched it off.
  engine->Host().screenUpdating = false;
  pane->Start();
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_TRUE(pane->page.Has(L"translatable:0"));
  EXPECT_TRUE(service.TranslateBodies().empty());
}

TEST_F(RunTest, TheSelectionIsTranslatedAloneWithOneJoinedScript) {
  FillRows(5);
  engine->Select(L"Data", "A2:A3");
  pane->Start({}, L"startSelection");
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(Text("A1"), L"Text number 1");
  EXPECT_EQ(Text("A2"), L"ES:Text number 2");
  EXPECT_EQ(pane->page.Find(L"onRunStarted"),
            L"if(window.onRunStarted)onRunStarted({runId:1});onReady({total:2,translatable:2,runId:1})");
  EXPECT_EQ(service.TranslateBodies().at(0).at("usageKind"), "translate_selection");
}

TEST_F(RunTest, AllSheetsMeansTheVisibleOnesWithTheirChartTitles) {
  FillRows(2);
  engine->Set(L"More", "C3", std::wstring(L"Another"));
  engine->Set(L"Hidden", "A1", std::wstring(L"Secret"));
  engine->AddChart(L"More", L"");
  engine->AddChart(L"More", L"Sales by region");
  pane->Start(L"\"excelTranslateAllSheets\":true");
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(Text("A2"), L"ES:Text number 2");
  EXPECT_EQ(Text("C3", L"More"), L"ES:Another");
  EXPECT_EQ(Text("A1", L"Hidden"), L"Secret");
  EXPECT_EQ(engine->Sheet(L"More").charts[1]->title, L"ES:Sales by region");
  EXPECT_FALSE(engine->Sheet(L"More").charts[0]->hasTitle);
  EXPECT_TRUE(pane->page.Has(L"translatable:4"));
  EXPECT_EQ(pane->page.Count(L"onExcelTranslateSheetChanged({\"runId\":1,\"sheetName\":\"More\","
                             L"\"sourceSheetName\":\"Data\",\"mode\":\"full\"})"),
            1);
  EXPECT_TRUE(pane->page.Has(L",allSheets:true})"));
}

TEST_F(RunTest, RefusedStartsSayWhyAndNeverGetARun) {
  FillRows(1);
  pane->target.SetApplication(nullptr);
  pane->Start();
  EXPECT_EQ(pane->page.received.back(),
            L"if(window.onError)onError({code:\"app_not_connected\",message:\"Excel Application not "
            L"connected\"})");
  pane->target.SetApplication(engine->Application());

  engine->Fault({{"fail", "Window.ActiveSheet"}, {"times", "always"}});
  pane->Start();
  EXPECT_TRUE(Contains(pane->page.received.back(), L"code:\"no_active_sheet\",message:\"没有活动工作表\"})"));
  engine->Fault({{"clear", true}});

  EXPECT_TRUE(WorkbookBusyTable::TryClaimWorkbook(L"C:\\Books\\Book.xlsx", this));
  pane->Start();
  EXPECT_TRUE(Contains(pane->page.received.back(),
                       L"code:\"workbook_busy\",message:\"同一工作簿的另一个窗口正在翻译，请稍候再试\"})"));
  WorkbookBusyTable::ReleaseWorkbook(L"C:\\Books\\Book.xlsx", this);

  EXPECT_FALSE(pane->page.Has(L"onRunStarted"));
  EXPECT_EQ(Text("A1"), L"Text number 1");
}

TEST_F(RunTest, AWorkbookThatCannotBeFoundIsRefusedAfterTheSheetCheck) {
  engine->Fault({{"missing", {"Window.Parent", "Workbooks.Count"}}});
  pane->Start();
  EXPECT_TRUE(Contains(pane->page.received.back(), L"code:\"workbook_unavailable\""));
}

TEST_F(RunTest, ACollectionErrorBelongsToTheRun) {
  engine->Select(L"Data", "A1:GR1001");  // 200 × 1001 cells
  pane->Start({}, L"startSelection");
  EXPECT_EQ(pane->page.received.back(),
            L"if(window.onError)onError({code:\"selection_too_large\",message:\"选区过大，请缩小选择范围\","
            L"runId:1})");
  EXPECT_TRUE(pane->page.Has(L"onRunStarted({runId:1})"));
  EXPECT_FALSE(pane->controller->IsRunning());
}

TEST_F(RunTest, TheSameStartTwiceIsOneRunAlsoAfterARefusal) {
  pane->target.SetApplication(nullptr);
  pane->Start(L"\"clientTraceId\":\"same\"");
  pane->target.SetApplication(engine->Application());
  FillRows(1);
  pane->Start(L"\"clientTraceId\":\"same\"");
  EXPECT_FALSE(pane->controller->IsRunning());
  pane->Start(L"\"clientTraceId\":\"other\"");
  EXPECT_TRUE(pane->controller->IsRunning());
  pane->Start();
  EXPECT_TRUE(PumpUntilPageHas(L"onComplete({runId:2"));
}

TEST_F(RunTest, ASupersededRunNeverReachesTheSheet) {
  FillRows(1);
  service.Fault({{"delayMs", 100}, {"match", "Text number 1"}});
  service.Fault({{"delayMs", 400}, {"match", "Newer text"}});
  pane->Start();
  ASSERT_TRUE(PumpUntil([&] { return !service.TranslateBodies().empty(); }));
  Set("A1", L"Newer text");
  pane->Start();
  // The first run's worker ends while the second run waits for its answer.
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete({runId:2"));
  EXPECT_EQ(Text("A1"), L"ES:Newer text");
  EXPECT_FALSE(pane->page.Has(L"onProgress({runId:1"));
  EXPECT_FALSE(pane->page.Has(L"onComplete({runId:1"));
}

TEST_F(RunTest, ABatchThatIsAlreadyPostedIsDroppedWithItsRun) {
  FillRows(1);
  pane->Start();
  ASSERT_TRUE(WaitForPostedTask());
  Set("A1", L"Newer text");
  pane->Start();
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete({runId:2"));
  EXPECT_EQ(Text("A1"), L"ES:Newer text");
  EXPECT_EQ(pane->page.Count(L"onProgress({"), 1);
}

TEST_F(RunTest, ASecondPaneHasToWaitForTheWorkbook) {
  FillRows(1);
  service.Fault({{"delayMs", 200}});
  pane->Start();
  TestPane second(engine->Application());
  second.Start();
  EXPECT_TRUE(second.page.Has(L"code:\"workbook_busy\""));
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  second.Start();
  EXPECT_TRUE(PumpUntil([&] { return second.page.Has(L"onComplete("); }));
}

TEST_F(RunTest, ARunOverAllSheetsGoesOnWhateverSheetIsShown) {
  FillRows(30);
  pane->Start(L"\"excelTranslateAllSheets\":true");
  pane->controller->Pause();
  engine->ActivateSheet(L"More");
  pane->controller->Resume();
  EXPECT_FALSE(pane->page.Has(L"onExcelTranslateResumeBlocked"));
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(Text("A30", L"Data"), L"ES:Text number 30");
}

TEST_F(RunTest, APaneWithoutAWindowOfItsOwnFollowsTheActiveWorkbook) {
  FillRows(1);
  const auto first = engine->Host().ActiveWindow();
  pane->Start();
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  engine->AddWorkbook(L"Second.xlsx");
  Set("A1", L"Other text");
  pane->page.received.clear();
  pane->Start();
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(Text("A1"), L"ES:Other text");
  engine->ActivateWindow(first);
  EXPECT_EQ(Text("A1"), L"ES:Text number 1");
}

TEST_F(RunTest, AnotherSheetPausesAndResumeWantsTheRunsSheetBack) {
  FillRows(30);
  pane->Start();
  // Still the run's sheet: no pause, so nothing to resume.
  pane->controller->OnSheetActivated(true);
  pane->controller->Resume();
  EXPECT_FALSE(pane->page.Has(L"onExcelTranslateResumed"));
  engine->ActivateSheet(L"More");
  pane->controller->OnSheetActivated(true);
  EXPECT_EQ(pane->page.received.back(),
            L"if(window.onExcelActiveSheetChanged)onExcelActiveSheetChanged({\"sheetName\":\"More\"})");
  pane->controller->Resume();
  EXPECT_EQ(pane->page.received.back(),
            L"if(window.onExcelTranslateResumeBlocked)onExcelTranslateResumeBlocked({\"sheetName\":\"More\","
            L"\"sourceSheetName\":\"Data\"})");
  engine->ActivateSheet(L"Data");
  pane->controller->Resume();
  EXPECT_EQ(pane->page.received.back(),
            L"if(window.onExcelTranslateResumed)onExcelTranslateResumed({reason:\"sheet_changed\"})");
  pane->controller->Pause();
  pane->controller->Resume();
  EXPECT_TRUE(pane->page.Has(L"reason:\"manual\""));
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(Text("A30"), L"ES:Text number 30");
}

TEST_F(RunTest, AFreshPageLearnsOfTheRunUnderWay) {
  pane->controller->PushState();
  EXPECT_TRUE(pane->page.received.empty());
  FillRows(1);
  pane->Start();
  pane->page.received.clear();
  pane->controller->PushState();
  EXPECT_TRUE(pane->page.Has(L"onRunStarted({runId:1})"));
  EXPECT_TRUE(pane->page.Has(L"onReady({total:1,translatable:1,runId:1})"));
  EXPECT_TRUE(PumpUntilPageHas(L"onComplete("));
}

TEST_F(RunTest, APageThatComesBeforeTheCellsAreReadHearsOnlyOfTheStart) {
  FillRows(40);
  int early = 0;
  pane->page.onReceived = [&](const std::wstring& script) {
    if (early != 0 || script.find(L"onScanProgress") == std::wstring::npos) return;
    ++early;
    pane->controller->PushState();
    EXPECT_EQ(pane->page.Count(L"onReady"), 0);
  };
  pane->Start();
  EXPECT_EQ(early, 1);
  EXPECT_EQ(pane->page.Count(L"onReady"), 1);
  EXPECT_TRUE(PumpUntilPageHas(L"onComplete("));
}

}  // namespace
}  // namespace qv
