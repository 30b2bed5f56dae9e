#include "foundation/text.h"
#include "run_fixture.h"
#include "translation/run_writer.h"

namespace qv {
namespace {

TEST_F(RunTest, ServiceFailuresThatEndARunReachThePageWithTheirCode) {
  struct Case {
    nlohmann::json fault;
    std::wstring_view error;
    std::size_t requests;
  };
  const Case cases[] = {
      {{{"status", 401}}, L"code:\"unauthorized\",message:\"登录已失效，请重新登录\"", 1},
      {{{"status", 401}, {"body", {{"error", "token_expired"}}}, {"times", -1}},
       L"code:\"token_expired\"",
       2},
      {{{"status", 402}}, L"code:\"insufficient_credits\",message:\"积分不足\u00EF\u00BC\u008C请充值", 1},
      {{{"status", 500}, {"times", -1}}, L"code:\"network_error\",message:\"HTTP request failed\"", 2},
      {{{"status", 429}, {"body", {{"code", "rate_limited"}, {"message", "slow down"}}}, {"times", -1}},
       L"code:\"rate_limited\",message:\"slow down\"",
       2},
      {{{"raw", "{\"translations\":[\"x"}, {"times", -1}},
       L"onError({message:\"Empty translation response\"",
       2},
      {{{"countMismatch", true}, {"times", -1}}, L"code:\"batch_mismatch\"", 2},
      {{{"dropMidBody", true}, {"times", -1}}, L"code:\"network_error\"", 2},
      {{{"dropPlaceholders", true}, {"times", -1}}, L"message:\"Translation altered locked placeholders", 4},
  };
  Set("A1", L"See [[QV_REF_1]]");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.fault.dump());
    service.Reset();
    service.Fault(c.fault);
    pane->page.received.clear();
    pane->Start();
    ASSERT_TRUE(PumpUntilPageHas(L"onError("));
    EXPECT_TRUE(pane->page.Has(c.error)) << ToUtf8(pane->page.received.back());
    EXPECT_EQ(service.TranslateBodies().size(), c.requests);
    EXPECT_FALSE(pane->page.Has(L"onComplete("));
    EXPECT_FALSE(pane->controller->IsRunning());
    EXPECT_EQ(Text("A1"), L"See [[QV_REF_1]]");
  }
}

TEST_F(RunTest, PassingFailuresAreRetriedSplitAndRepaired) {
  const nlohmann::json faults[] = {
      {{"status", 429}},
      {{"status", 500}},
      {{"dropMidBody", true}},
      {{"raw", "<html>"}},
      {{"countMismatch", true}},
      // Both attempts of the whole batch fail, its halves do not.
      {{"status", 503}, {"times", 2}},
      // Repaired by asking for that text alone.
      {{"dropPlaceholders", true}},
  };
  for (const nlohmann::json& fault : faults) {
    SCOPED_TRACE(fault.dump());
    Set("A1", L"See [[QV_REF_1]]");
    Set("A2", L"Second text");
    service.Reset();
    service.Fault(fault);
    pane->page.received.clear();
    pane->Start();
    ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
    EXPECT_EQ(Text("A1"), L"ES:See [[QV_REF_1]]");
    EXPECT_EQ(Text("A2"), L"ES:Second text");
    EXPECT_FALSE(pane->page.Has(L"onError("));
  }
}

TEST_F(RunTest, BatchesBeforeAFailureStayWritten) {
  FillRows(40);
  service.Fault({{"status", 401}, {"match", "Text number 21"}});
  pane->Start();
  ASSERT_TRUE(PumpUntilPageHas(L"onError("));
  EXPECT_EQ(Text("A20"), L"ES:Text number 20");
  EXPECT_EQ(Text("A21"), L"Text number 21");
}

TEST_F(RunTest, CancelShowsAtOnceWhileTheServiceHangs) {
  FillRows(1);
  service.Fault({{"hang", true}});
  pane->Start();
  ASSERT_TRUE(PumpUntil([&] { return !service.TranslateBodies().empty(); }));
  pane->controller->Cancel();
  EXPECT_EQ(pane->page.received.back(), L"if(window.onCancelled)onCancelled()");
  EXPECT_FALSE(pane->controller->IsRunning());
  // Without a run there is nothing to tell.
  pane->controller->Cancel();
  EXPECT_EQ(pane->page.Count(L"onCancelled"), 1);
  EXPECT_EQ(Text("A1"), L"Text number 1");
}

TEST_F(RunTest, AProtectedSheetGivesOneNoticeAndTheRunGoesOn) {
  FillRows(3);
  engine->Set(L"More", "A1", std::wstring(L"Open"));
  engine->Protect(L"Data", true);
  pane->Start(L"\"excelTranslateAllSheets\":true,\"excelBilingualBelow\":true");
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  const std::wstring text = L"目标单元格已锁定，无法写入译文。请解锁单元格或撤销工作表保护后重试。";
  EXPECT_EQ(pane->page.Count(L"{\"action\":\"sheetWriteBlocked\",\"message\":\"" + text + L"\"}"), 1);
  EXPECT_EQ(pane->page.Count(L"onSheetWriteBlocked({message:\"" + text + L"\"})"), 1);
  EXPECT_EQ(pane->page.Count(L"var m=\"" + text + L"\",k=\"warn\""), 1);
  EXPECT_EQ(Text("A1"), L"Text number 1");
  EXPECT_EQ(Text("A1", L"More"), L"Open\nES:Open");
  EXPECT_FALSE(pane->session.units[0].written);
  EXPECT_TRUE(pane->session.units[3].written);
}

TEST_F(RunTest, ARefusedCellOfAnOpenSheetHasItsOwnText) {
  FillRows(2);
  engine->Fault({{"fail", "Range.Value2"}, {"on", "put"}, {"times", 1}});
  engine->Fault({{"fail", "Range.Value"}, {"on", "put"}, {"times", 1}});
  engine->Fault({{"fail", "Range.Locked"}, {"on", "get"}, {"times", "always"}});
  pane->Start();
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_TRUE(pane->page.Has(L"部分单元格无法写入译文，请检查该格是否可编辑。"));
  EXPECT_EQ(Text("A1"), L"Text number 1");
  EXPECT_EQ(Text("A2"), L"ES:Text number 2");
}

TEST_F(RunTest, ABusyHostIsAskedAgainAndKeepsTheOrder) {
  FillRows(25);
  engine->Fault(
      {{"fail", "Range.Value2"}, {"code", "0x800AC472"}, {"on", "put"}, {"times", 2}, {"after", 3}});
  pane->Start();
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(Text("A4"), L"ES:Text number 4");
  EXPECT_EQ(Text("A25"), L"ES:Text number 25");
  EXPECT_FALSE(pane->page.Has(L"sheetWriteBlocked"));
  EXPECT_EQ(pane->page.Count(L"onProgress({"), 25);
}

/// Counts what a writer tells.
class CountingListener final : public WriteListener {
 public:
  void OnUnitStarting(std::size_t) override { ++started; }
  void OnUnitDone(const TranslatedUnit&) override { ++done; }
  void OnAllWritten() override { finished = true; }
  void OnWritingBroke() override { ADD_FAILURE() << "writing broke"; }

  int started = 0;
  int done = 0;
  bool finished = false;
};

TEST_F(RunTest, AHostThatStaysBusyCostsTheBatchButNoNotice) {
  static_cast<void>(pane->target.RefreshPin());
  std::vector<CellUnit> units(3);
  for (std::int32_t row = 1; row <= 3; ++row) {
    CellUnit& unit = units[static_cast<std::size_t>(row) - 1];
    unit.row = row;
    unit.col = 1;
    unit.sheet = std::make_shared<SheetTexts>(L"Data");
    unit.sourceText = L"a";
  }
  pane->session.Replace(units, {});
  pane->session.workbookKey = pane->target.WorkbookKey();
  engine->Fault({{"fail", "Range.Value2"}, {"code", "0x800AC472"}, {"on", "put"}, {"times", 4}});
  CountingListener listener;
  const auto writer =
      std::make_shared<RunWriter>(pane->context, pane->target, pane->session,
                                  WriteBack(pane->target, pane->page, pane->session, TargetFont()),
                                  Layout::kTarget, listener, Patience{1, 3});
  const long heldBefore = engine->LiveObjects();
  writer->Add({{0, false, L"x"}, {1, false, L"y"}});
  // Nothing of the host is held while it is left alone.
  EXPECT_EQ(engine->LiveObjects(), heldBefore);
  writer->Add({{2, false, L"z"}});
  writer->Finish();
  ASSERT_TRUE(PumpUntil([&] { return listener.finished; }));
  EXPECT_EQ(listener.done, 3);
  EXPECT_EQ(Text("A1"), L"<null>");
  EXPECT_EQ(Text("A2"), L"<null>");
  EXPECT_EQ(Text("A3"), L"z");
  EXPECT_FALSE(pane->page.Has(L"sheetWriteBlocked"));
  // What was translated is not lost with it.
  pane->controller->Display().ApplyAll();
  ASSERT_TRUE(PumpUntilPageHas(L"applyAll"));
  EXPECT_EQ(Text("A1"), L"x");
  EXPECT_EQ(Text("A2"), L"y");
}

/// Has no memory left for its last word.
class BreakingListener final : public WriteListener {
 public:
  void OnUnitStarting(std::size_t) override {}
  void OnUnitDone(const TranslatedUnit&) override {}
  void OnAllWritten() override { throw std::bad_alloc(); }
  void OnWritingBroke() override { ++broke; }

  int broke = 0;
};

TEST_F(RunTest, AWriterThatCannotEndItsRunSaysSo) {
  BreakingListener listener;
  const auto writer =
      std::make_shared<RunWriter>(pane->context, pane->target, pane->session,
                                  WriteBack(pane->target, pane->page, pane->session, TargetFont()),
                                  Layout::kTarget, listener, Patience());
  EXPECT_NO_THROW(writer->Finish());
  EXPECT_EQ(listener.broke, 1);
  // It has stopped.
  EXPECT_NO_THROW(writer->Finish());
  EXPECT_EQ(listener.broke, 1);
}

TEST_F(RunTest, APaneClosedWhileTheServiceWorksWritesNothingMore) {
  FillRows(1);
  service.Fault({{"delayMs", 200}});
  pane->Start();
  ASSERT_TRUE(PumpUntil([&] { return !service.TranslateBodies().empty(); }));
  pane->Close();
  const std::size_t received = pane->page.received.size();
  FillRows(1);
  EXPECT_EQ(engine->LiveObjects(), 0);
  pane->controller->Start(L"start", L"{}");
  EXPECT_EQ(pane->page.received.size(), received);
}

TEST_F(RunTest, APaneClosedInsideAWriteStopsThere) {
  FillRows(5);
  int writes = 0;
  engine->Faults().OnCall("Range.Value2", [&] {
    // Before come the bulk read of the collector, and the first write with the look at what became of it.
    if (++writes == 4) pane->Close();
  });
  pane->Start();
  ASSERT_TRUE(PumpUntil([&] { return writes >= 4; }));
  EXPECT_EQ(Text("A1"), L"ES:Text number 1");
  EXPECT_EQ(Text("A3"), L"Text number 3");
  EXPECT_EQ(pane->page.Count(L"onProgress({"), 1);
  EXPECT_FALSE(pane->page.Has(L"onComplete("));
}

TEST_F(RunTest, CancelInsideAWriteStopsThere) {
  FillRows(5);
  int writes = 0;
  engine->Faults().OnCall("Range.Value2", [&] {
    if (++writes == 4) pane->controller->Cancel();
  });
  pane->Start();
  ASSERT_TRUE(PumpUntilPageHas(L"onCancelled()"));
  EXPECT_EQ(Text("A3"), L"Text number 3");
  EXPECT_EQ(pane->page.Count(L"onProgress({"), 1);
}

}  // namespace
}  // namespace qv
