#include "display_fixture.h"
#include "trace_tails.h"
#include "workbook/workbook_busy_table.h"

namespace qv {
namespace {

/// A run's start finds cells of an earlier run.
class RestoreBeforeRunTest : public DisplayTest {
 protected:
  static constexpr const char* kBusy = "0x800AC472";

  /// A pane that does not wait for long.
  void BeImpatient() { pane = std::make_unique<TestPane>(engine->Application(), Patience{1, 3}); }

  /// From now on each call of the member takes longer than a slice may last.
  void SlowDown(const std::string& member) {
    engine->Faults().OnCall(member, [] {
      const ULONGLONG begin = GetTickCount64();
      while (GetTickCount64() - begin < 70) {
      }
    });
  }

  void BeQuick() { engine->Fault({{"clear", true}}); }
};

TEST_F(RestoreBeforeRunTest, OneBusyAnswerIsAskedAgainAndTheSourceIsRead) {
  FillRows(3);
  Translate(kDual);
  service.Reset();
  engine->Fault({{"fail", "Range.Value2"}, {"code", kBusy}, {"on", "put"}, {"times", 1}, {"after", 1}});
  Translate({});
  EXPECT_EQ(service.TranslateBodies().at(0).at("texts"),
            nlohmann::json({"Text number 1", "Text number 2", "Text number 3"}));
}

TEST_F(RestoreBeforeRunTest, AHostThatStaysBusyRefusesTheStartAndLosesNothing) {
  BeImpatient();
  FillRows(2);
  Translate(kDual);
  const std::size_t asked = service.TranslateBodies().size();
  struct Case {
    std::wstring_view action;
    std::wstring_view error;
  };
  for (const Case& c :
       {Case{L"start", L"code:\"used_range_read_failed\",message:\"无法读取已用区域\"})"},
        Case{L"restart", L"code:\"used_range_read_failed\",message:\"无法读取已用区域\"})"},
        Case{L"startSelection", L"code:\"selection_read_failed\",message:\"无法读取选区\"})"}}) {
    SCOPED_TRACE(ToUtf8(c.action));
    engine->Fault({{"fail", "Range.Value2"}, {"code", kBusy}, {"on", "put"}, {"times", "always"}});
    pane->page.received.clear();
    pane->Start({}, c.action);
    ASSERT_TRUE(PumpUntilPageHas(L"onError("));
    EXPECT_TRUE(pane->page.Has(c.error)) << ToUtf8(pane->page.received.back());
    EXPECT_FALSE(pane->page.Has(L"onRunStarted"));
    BeQuick();
    EXPECT_TRUE(Unit(1).written);
  }
  EXPECT_EQ(service.TranslateBodies().size(), asked);
  EXPECT_EQ(Switch(L"original"), Done(L"original", 2, 0));
  EXPECT_EQ(Text("A2"), L"Text number 2");
}

TEST_F(RestoreBeforeRunTest, ARestartThatIsRefusedForgetsNoTranslation) {
  FillRows(1);
  engine->Set(L"More", "A1", std::wstring(L"Other"));
  Translate(L"\"excelTranslateAllSheets\":true");
  const std::wstring key = L"C:\\Books\\Book.xlsx";
  ASSERT_TRUE(WorkbookBusyTable::TryClaimWorkbook(key, this));
  pane->Start({}, L"restart");
  EXPECT_TRUE(PumpUntilPageHas(L"code:\"workbook_busy\""));
  WorkbookBusyTable::ReleaseWorkbook(key, this);
  EXPECT_EQ(Switch(L"original"), Done(L"original", 1, 0));
  EXPECT_EQ(Text("A1", L"More"), L"Other");
}

TEST_F(RestoreBeforeRunTest, ALongRestoreIsDoneInSlicesAndTheStartGoesOnAfterIt) {
  FillRows(3);
  Translate(kDual);
  SlowDown("Range.RowHeight");
  pane->page.received.clear();
  pane->Start();
  EXPECT_FALSE(pane->controller->IsRunning());
  EXPECT_TRUE(engine->Host().screenUpdating);
  EXPECT_EQ(Switch(L"dual"), Done(L"dual", 0, 0, L"正在翻译，请稍候再试"));
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(Text("A3"), L"ES:Text number 3");
  EXPECT_EQ(engine->Sheet().RowHeight(1), 15.0);
}

TEST_F(RestoreBeforeRunTest, AStartThatWaitsIsSupersededOrCancelled) {
  FillRows(3);
  Translate(kDual);
  SlowDown("Range.RowHeight");
  pane->page.received.clear();
  pane->Start({}, L"restart");
  pane->Start();
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(pane->page.Count(L"onRunStarted"), 1);
  BeQuick();
  Translate(kDual);
  SlowDown("Range.RowHeight");
  pane->page.received.clear();
  pane->Start();
  ASSERT_FALSE(pane->controller->IsRunning());
  pane->controller->Cancel();
  EXPECT_EQ(pane->page.received.back(), L"if(window.onCancelled)onCancelled()");
  BeQuick();
  // The cells are free again, and the heights of those that were back already are not forgotten.
  EXPECT_NE(Switch(L"original"), L"no answer");
  EXPECT_FALSE(pane->page.Has(L"onRunStarted"));
  EXPECT_EQ(Text("A1"), L"Text number 1");
  for (const int row : {1, 2, 3})
    EXPECT_EQ(engine->Sheet().RowHeight(row), 15.0) << row;
}

TEST_F(RestoreBeforeRunTest, TheSheetThatIsShownWhenTheRestoreEndsIsTheOneThatIsRead) {
  FillRows(2);
  engine->Set(L"More", "A1", std::wstring(L"Other"));
  Translate(L"\"excelBilingualBelow\":true,\"excelTranslateAllSheets\":true");
  SlowDown("Range.RowHeight");
  service.Reset();
  pane->page.received.clear();
  pane->Start();
  ASSERT_FALSE(pane->controller->IsRunning());
  engine->ActivateSheet(L"More");
  BeQuick();
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(service.TranslateBodies().at(0).at("texts"), nlohmann::json({"Other"}));
  EXPECT_EQ(Text("A1", L"More"), L"ES:Other");
  EXPECT_EQ(engine->Sheet(L"More").RowHeight(1), 15.0);
  EXPECT_EQ(Switch(L"original"), Done(L"original", 1, 0));
  EXPECT_EQ(Text("A1", L"More"), L"Other");
}

TEST_F(RestoreBeforeRunTest, AStartInTheMiddleOfASwitchForgetsNoHeight) {
  FillRows(4);
  engine->Set(L"More", "A1", std::wstring(L"Other"));
  Translate(kDual);
  ASSERT_EQ(engine->Sheet().RowHeight(4), 30.0);
  SlowDown("Range.Value2");
  Display().SetMode(L"original", L"");
  BeQuick();
  ASSERT_FALSE(Unit(3).written);
  ASSERT_TRUE(Unit(0).written);
  // What is due in one sheet is put back also when another one is translated.
  engine->ActivateSheet(L"More");
  Translate({});
  EXPECT_EQ(engine->Sheet(L"Data").RowHeight(4), 15.0);
  EXPECT_EQ(engine->Sheet(L"Data").RowHeight(1), 30.0);
}

TEST_F(RestoreBeforeRunTest, AStartInsideAWriteWaitsForTheCellAndReadsItsSource) {
  FillRows(3);
  for (const char* member : {"Range.Value2", "Range.WrapText", "Characters.Font", "Range.AutoFit"}) {
    SCOPED_TRACE(member);
    bool started = false;
    pane->Start(kDual);
    engine->Faults().OnCall(member, [&] {
      if (std::exchange(started, true)) return;
      pane->Start();
    });
    pane->page.received.clear();
    ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
    EXPECT_TRUE(started);
    BeQuick();
    for (const int row : {1, 2, 3}) {
      EXPECT_EQ(Text(ToUtf8(Concat(L"A", row))), Concat(L"ES:Text number ", row));
      EXPECT_EQ(engine->Sheet().RowHeight(row), 15.0) << row;
      EXPECT_FALSE(engine->Sheet().StyleAt(row, 1).wrap) << row;
    }
    EXPECT_EQ(Switch(L"original"), Done(L"original", 3, 0));
  }
}

TEST_F(RestoreBeforeRunTest, AStartThatBreaksGivesTheCellsFree) {
  FillRows(1);
  Translate({});
  pane->page.received.clear();
  bool broken = false;
  pane->page.onReceived = [&](const std::wstring&) {
    if (!std::exchange(broken, true)) throw std::bad_alloc();
  };
  pane->Start();
  EXPECT_TRUE(pane->page.Has(L"code:\"internal_error\",message:\"Starting the translation failed\""));
  EXPECT_FALSE(pane->controller->IsRunning());
  EXPECT_EQ(Switch(L"dual"), Done(L"dual", 1, 0));
}

TEST_F(RestoreBeforeRunTest, APaneThatGoesAwayLeavesNothingBehind) {
  struct Case {
    const char* name;
    std::function<void()> begin;
  };
  const Case cases[] = {
      {"a paused run",
       [&] {
         service.Fault({{"delayMs", 100}});
         pane->Start();
         pane->controller->Pause();
       }},
      {"a switch",
       [&] {
         SlowDown("Range.RowHeight");
         Display().SetMode(L"original", L"");
       }},
      {"a start that waits",
       [&] {
         SlowDown("Range.RowHeight");
         pane->Start();
       }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    FillRows(3);
    Translate(kDual);
    c.begin();
    BeQuick();
    pane->page.received.clear();
    pane->Close();
    EXPECT_TRUE(engine->Host().displayAlerts);
    EXPECT_TRUE(engine->Host().screenUpdating);
    EXPECT_EQ(engine->LiveObjects(), 0);
    engine->ResetCounters();
    static_cast<void>(PumpUntil([end = GetTickCount64() + 150] { return GetTickCount64() >= end; }));
    EXPECT_EQ(engine->Calls(), 0U);
    EXPECT_TRUE(pane->page.received.empty());
    // The next pane may have the workbook.
    pane = std::make_unique<TestPane>(engine->Application());
  }
}

TEST_F(RestoreBeforeRunTest, WhatIsRestoredIsLogged) {
  FillRows(2);
  engine->Set(L"More", "A1", std::wstring(L"Other"));
  Translate(L"\"excelBilingualBelow\":true,\"excelTranslateAllSheets\":true");
  struct Case {
    std::function<void()> act;
    std::vector<std::wstring_view> lines;
  };
  const Case cases[] = {
      {[&] { Switch(L"both", L"sheet"); }, {L"Excel displayMode=both scope=sheet applied=0 failed=0\r\n"}},
      {[&] { Display().RestoreUnit(1); },
       {L"RestoreBaselineFont idx=1 row=2 col=1\r\n", L"Excel restore scoped rowHeights count=1 of 3\r\n"}},
      {[&] { Switch(L"original", L"sheet"); },
       {L"RestoreBaselineFont idx=0 row=1 col=1\r\n", L"Excel restore scoped rowHeights count=1 of 2\r\n",
        L"Excel displayMode=original scope=sheet applied=1 failed=0\r\n"}},
      {[&] { Display().RestoreAll(); },
       {L"RestoreBaselineFont idx=2 row=1 col=1\r\n", L"Excel restore rowHeights count=1 of 1\r\n",
        L"Excel displayMode=original scope=session applied=1 failed=0\r\n"}},
      {[&] { Switch(L"dual"); }, {L"Excel displayMode=dual scope=session applied=3 failed=0\r\n"}},
      {[&] {
         Set("A2", L"Retyped");
         Translate(kDual);
       },
       {L"Excel restore scoped rowHeights count=1 of 3\r\n",
        L"Excel restore before collect sheet=Data candidates=2 restored=1 failed=1\r\n"}},
      {[&] { Translate(L"\"excelTranslateAllSheets\":true"); },
       {L"Excel restore rowHeights count=1 of 1\r\n",
        L"Excel restore before collect sheet=<all> candidates=2 restored=2 failed=0\r\n"}},
  };
  for (const Case& c : cases) {
    const TraceTails tails;
    c.act();
    const std::wstring log = tails.PaneLines();
    for (const std::wstring_view line : c.lines)
      EXPECT_TRUE(Contains(log, line)) << ToUtf8(line) << "\n" << ToUtf8(log);
  }
}

}  // namespace
}  // namespace qv
