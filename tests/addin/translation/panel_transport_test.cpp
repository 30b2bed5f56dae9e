#include "translation/panel_transport.h"

#include <algorithm>
#include <thread>

#include "foundation/json_text.h"
#include "foundation/text.h"
#include "run_fixture.h"

namespace qv {
namespace {

class PanelTransportTest : public RunTest {
 protected:
  /// Has the page answer each batch request with the given members behind the request id.
  void AnswerWith(const std::wstring& members) {
    pane->page.onReceived = [this, members](const std::wstring& text) {
      if (!Contains(text, L"translateBatchRequest")) return;
      pane->controller->OnBatchResult(
          Concat(L"{\"requestId\":", JsonQuote(JsonGetString(text, L"requestId")), L",", members, L"}"));
    };
  }
};

TEST_F(PanelTransportTest, ThePagePerformsTheRequest) {
  FillRows(2);
  AnswerWith(L"\"ok\":true,\"translations\":[\"uno\",\"dos\"]");
  pane->Start(L"\"nativeTranslateViaJs\":true");
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(Text("A1"), L"uno");
  EXPECT_EQ(Text("A2"), L"dos");
  EXPECT_TRUE(
      pane->page.Has(L"{\"action\":\"translateBatchRequest\",\"requestId\":\"tr-1-1\",\"runId\":1,"
                     L"\"batchSeq\":1,\"texts\":[\"Text number 1\",\"Text number 2\"]"));
  EXPECT_TRUE(service.TranslateBodies().empty());
  EXPECT_FALSE(pane->page.Has(L"dev-test"));
}

TEST_F(PanelTransportTest, WrongAnswersAreRetriedAndReported) {
  FillRows(1);
  AnswerWith(L"\"ok\":true,\"translations\":[\"uno\",\"dos\"]");
  pane->Start(L"\"nativeTranslateViaJs\":true");
  ASSERT_TRUE(PumpUntilPageHas(L"onError({code:\"batch_mismatch\""));
  EXPECT_TRUE(pane->page.Has(L"tr-1-2"));

  AnswerWith(L"\"ok\":false,\"code\":\"insufficient_credits\",\"message\":\"insufficient_credits\"");
  pane->Start(L"\"nativeTranslateViaJs\":true");
  ASSERT_TRUE(PumpUntilPageHas(L"onError({code:\"insufficient_credits\""));
  EXPECT_FALSE(pane->page.Has(L"tr-2-2"));
}

TEST_F(PanelTransportTest, APageThatCancelsEndsTheRunWithoutAnError) {
  FillRows(1);
  AnswerWith(L"\"ok\":false,\"code\":\"cancelled\",\"message\":\"Cancelled\"");
  pane->Start(L"\"nativeTranslateViaJs\":true");
  ASSERT_TRUE(PumpUntilPageHas(L"onCancelled()"));
  EXPECT_FALSE(pane->page.Has(L"onError("));
}

TEST_F(PanelTransportTest, CancelTellsThePageToGiveUp) {
  FillRows(1);
  pane->Start(L"\"nativeTranslateViaJs\":true");
  ASSERT_TRUE(PumpUntilPageHas(L"translateBatchRequest"));
  const long sharedWithWorker = pane->context.use_count();
  pane->controller->Cancel();
  EXPECT_TRUE(pane->page.Has(L"{\"action\":\"translateAbortForRun\",\"runId\":1}"));
  EXPECT_TRUE(PumpUntil([&] { return pane->context.use_count() < sharedWithWorker - 1; }))
      << "the worker still waits";
  // A late answer finds nobody.
  pane->controller->OnBatchResult(L"{\"requestId\":\"tr-1-1\",\"ok\":true,\"translations\":[\"uno\"]}");
  EXPECT_EQ(Text("A1"), L"Text number 1");
}

TEST_F(PanelTransportTest, APageThatIsLoadedAnewIsAskedAgain) {
  FillRows(1);
  pane->Start(L"\"nativeTranslateViaJs\":true");
  ASSERT_TRUE(PumpUntilPageHas(L"translateBatchRequest"));
  const std::vector<std::wstring> asked = pane->page.received;
  pane->controller->AskPageAgain();
  EXPECT_EQ(pane->page.received.size(), asked.size() + 1);
  EXPECT_NE(std::find(asked.begin(), asked.end(), pane->page.received.back()), asked.end());

  pane->controller->OnBatchResult(L"{\"requestId\":\"tr-1-1\",\"ok\":true,\"translations\":[\"uno\"]}");
  EXPECT_TRUE(PumpUntilPageHas(L"onComplete"));
  const std::size_t said = pane->page.received.size();
  pane->controller->AskPageAgain();
  EXPECT_EQ(pane->page.received.size(), said);
}

TranslateRequest OneText() {
  TranslateRequest request;
  request.texts = {L"a"};
  request.runId = 7;
  return request;
}

TEST_F(PanelTransportTest, ASilentPageTimesOut) {
  const auto pending = std::make_shared<PendingRequests>();
  const RunFlags flags;
  PanelTransport transport(pending, pane->context, pane->page, flags, 20);
  const TranslateResult result = transport.Send(OneText());
  EXPECT_EQ(result.code, L"request_timeout");
  EXPECT_EQ(result.message, L"Translation request timed out");
  EXPECT_FALSE(pending->Complete(L"tr-7-1", {}));
}

TEST_F(PanelTransportTest, AWaitingWorkerIsWokenAtOnce) {
  const auto pending = std::make_shared<PendingRequests>();
  RunFlags flags;
  TranslateResult result;
  std::thread worker([&] {
    PanelTransport transport(pending, pane->context, pane->page, flags);
    result = transport.Send(OneText());
  });
  EXPECT_TRUE(PumpUntilPageHas(L"tr-7-1"));
  flags.Cancel();
  pending->CancelRun(6);
  pending->CancelRun(7);
  worker.join();
  EXPECT_EQ(result.code, L"cancelled");
  EXPECT_EQ(result.message, L"Cancelled");
}

TEST_F(PanelTransportTest, AClosedPaneIsNotWaitedFor) {
  const RunFlags flags;
  PanelTransport transport(std::make_shared<PendingRequests>(), pane->context, pane->page, flags);
  pane->context->MarkClosing();
  pane->context->Tasks().Close();
  EXPECT_EQ(transport.Send(OneText()).code, L"cancelled");
}

/// A host that does not read its messages for a while has lost neither pane nor page.
TEST_F(PanelTransportTest, ARefusedMessageIsPostedAgain) {
  const auto pending = std::make_shared<PendingRequests>();
  const RunFlags flags;
  pane->page.onReceived = [&](const std::wstring&) {
    AcceptBatchResult(*pending, L"{\"requestId\":\"tr-7-1\",\"ok\":true,\"translations\":[\"uno\"]}");
  };
  pane->context->Tasks().Close();
  TranslateResult result;
  std::thread worker([&] {
    PanelTransport transport(pending, pane->context, pane->page, flags);
    result = transport.Send(OneText());
  });
  EXPECT_TRUE(PumpUntil([&] { return pending->Has(L"tr-7-1"); }));
  pane->context->Tasks().Open(pane->context->Window());
  EXPECT_TRUE(PumpUntilPageHas(L"tr-7-1"));
  worker.join();
  EXPECT_EQ(result.translations, std::vector<std::wstring>{L"uno"});
  EXPECT_EQ(pane->page.Count(L"tr-7-1"), 1);
}

TEST_F(PanelTransportTest, ARefusedMessageIsGivenUpInTimeAndWhenNobodyWantsIt) {
  struct Case {
    DWORD timeoutMs;
    void (*end)(RunFlags& flags, PaneContext& context);
    const wchar_t* code;
  };
  const Case cases[] = {
      {50, [](RunFlags&, PaneContext&) {}, L"request_timeout"},
      {kPanelTimeoutMs, [](RunFlags& flags, PaneContext&) { flags.Cancel(); }, L"cancelled"},
      {kPanelTimeoutMs, [](RunFlags&, PaneContext& context) { context.MarkClosing(); }, L"cancelled"},
  };
  pane->context->Tasks().Close();
  for (const Case& c : cases) {
    const auto pending = std::make_shared<PendingRequests>();
    RunFlags flags;
    TranslateResult result;
    std::thread worker([&] {
      PanelTransport transport(pending, pane->context, pane->page, flags, c.timeoutMs);
      result = transport.Send(OneText());
    });
    EXPECT_TRUE(PumpUntil([&] { return pending->Has(L"tr-7-1"); }));
    c.end(flags, *pane->context);
    worker.join();
    EXPECT_EQ(result.code, c.code);
    EXPECT_FALSE(pending->Has(L"tr-7-1"));
  }
  EXPECT_TRUE(pane->page.received.empty());
}

}  // namespace
}  // namespace qv
