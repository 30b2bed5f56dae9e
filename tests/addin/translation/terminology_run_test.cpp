#include "foundation/json_text.h"
#include "foundation/text.h"
#include "run_fixture.h"
#include "trace_tails.h"
#include "translation/terminology_bridge.h"

namespace qv {
namespace {

constexpr wchar_t kChoice[] =
    L"\"glossaryIds\":[\"g1\",\"g2\"],\"globalInstructionId\":null,\"globalPresetId\":\"p\"";
constexpr wchar_t kResult[] =
    L"{\"entries\":[{\"source\":\"Text\",\"target\":\"Texto\",\"note\":\"\",\"enabled\":true},"
    L"{\"source\":\"number\",\"target\":\"x\",\"enabled\":false},"
    L"{\"source\":\"a\",\"target\":\"b\",\"note\":\"n\"}],\"instruction\":\"Be brief\"}";

class TerminologyRun : public RunTest {
 protected:
  static std::wstring Answer(std::wstring_view requestId, std::wstring_view result,
                             std::wstring_view code = {}) {
    return Concat(L"{\"action\":\"terminologyResolveResult\",\"requestId\":", JsonQuote(requestId),
                  L",\"result\":", JsonQuote(result), L",\"code\":", JsonQuote(code), L",\"message\":\"\"}");
  }

  /// Has the page answer whenever it is asked.
  void AnswerWith(const std::wstring& result, const std::wstring& code = {}) {
    pane->page.onReceived = [this, result, code](const std::wstring& text) {
      if (!Contains(text, L"terminologyResolveRequest")) return;
      pane->controller->OnTerminologyResult(Answer(JsonGetString(text, L"requestId"), result, code));
    };
  }

  /// No batch carried any terminology.
  void ExpectPlainBatches(std::size_t count) {
    const std::vector<nlohmann::json> bodies = service.TranslateBodies();
    EXPECT_EQ(bodies.size(), count);
    for (const nlohmann::json& body : bodies)
      EXPECT_FALSE(body.contains("glossary") || body.contains("instruction"));
  }

  TraceTails logs;
};

TEST_F(TerminologyRun, EveryBatchCarriesWhatThePageResolved) {
  FillRows(21);
  AnswerWith(kResult);
  pane->Start(kChoice);
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  const std::wstring request = pane->page.Find(L"terminologyResolveRequest");
  EXPECT_TRUE(request.starts_with(
      L"{\"action\":\"terminologyResolveRequest\",\"requestId\":\"term-1\",\"glossaryIds\":[\"g1\",\"g2\"],"
      L"\"instructionId\":\"p\",\"corpusTexts\":[\"Text number 1\",\"Text number 2\","));
  EXPECT_TRUE(request.ends_with(L",\"Text number 21\"]}"));
  EXPECT_FALSE(Contains(request, L"dev-test"));
  const std::vector<nlohmann::json> bodies = service.TranslateBodies();
  ASSERT_EQ(bodies.size(), 2U);
  for (const nlohmann::json& body : bodies) {
    EXPECT_EQ(body.at("glossary"), nlohmann::json::parse(R"([{"source":"Text","target":"Texto"},
                                                            {"source":"a","target":"b","note":"n"}])"));
    EXPECT_EQ(body.at("instruction"), "Be brief");
  }
  EXPECT_TRUE(
      Contains(logs.PaneLines(), L"ApplyTerminologyForRun: resolve glossaryIds=2 corpusTexts=21\r\n"));
  const std::string events = logs.Events();
  EXPECT_NE(events.find("cpp.term.bridge.request.posted requestId=term-1 glossaryIds=2 corpusTexts=21"),
            std::string::npos)
      << events;
  EXPECT_NE(events.find("cpp.term.bridge.result.received requestId=term-1 resultLen=" +
                        std::to_string(std::size(kResult) - 1)),
            std::string::npos)
      << events;
}

TEST_F(TerminologyRun, ThePageThatTranslatesGetsItInItsRequests) {
  FillRows(1);
  AnswerWith(kResult);
  pane->Start(Concat(L"\"nativeTranslateViaJs\":true,", kChoice));
  ASSERT_TRUE(PumpUntilPageHas(L"translateBatchRequest"));
  EXPECT_TRUE(
      pane->page.Has(L"\"glossary\":[{\"source\":\"Text\",\"target\":\"Texto\"},{\"source\":\"a\",\"target\":"
                     L"\"b\",\"note\":\"n\"}],\"instruction\":\"Be brief\""));
  pane->controller->Cancel();
}

TEST_F(TerminologyRun, AFailingPageDoesNotStopTheRun) {
  FillRows(1);
  AnswerWith(L"", L"not_available");
  pane->Start(kChoice);
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  ExpectPlainBatches(1);
  EXPECT_TRUE(
      Contains(logs.PaneLines(), L"ApplyTerminologyForRun: bridge resolve failed, fallback empty\r\n"));
  EXPECT_NE(logs.Events().find("cpp.term.bridge.failed requestId=term-1 ok=0 code=not_available"),
            std::string::npos);
  EXPECT_FALSE(pane->page.Has(L"onError("));
}

TEST_F(TerminologyRun, WithoutATokenThePageIsNotAsked) {
  FillRows(1);
  pane->tokens = AccessTokens();
  pane->Start(kChoice);
  ASSERT_TRUE(PumpUntil([this] { return !pane->controller->IsRunning(); }));
  EXPECT_FALSE(pane->page.Has(L"terminologyResolveRequest"));
  EXPECT_TRUE(
      Contains(logs.PaneLines(), L"ApplyTerminologyForRun: no accessToken, skip cloud terminology\r\n"));
  ExpectPlainBatches(service.TranslateBodies().size());
}

TEST_F(TerminologyRun, OnlyTheAnswerToItsOwnQuestionCounts) {
  FillRows(1);
  pane->Start(L"\"globalInstructionId\":\"i\"");
  ASSERT_TRUE(PumpUntilPageHas(L"\"instructionId\":\"i\",\"corpusTexts\":[]}"));
  EXPECT_TRUE(service.TranslateBodies().empty());
  for (const wchar_t* id : {L"term-2", L"tr-1-1", L""})
    pane->controller->OnTerminologyResult(Answer(id, L"{\"instruction\":\"wrong\"}"));
  // A page that was loaded meanwhile has to be asked, too.
  pane->controller->AskPageAgain();
  EXPECT_EQ(pane->page.Count(L"\"requestId\":\"term-1\""), 2);
  pane->controller->OnTerminologyResult(Answer(L"term-1", L"{\"instruction\":\"right\"}"));
  pane->controller->OnTerminologyResult(Answer(L"term-1", L"{\"instruction\":\"late\"}"));
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_EQ(service.TranslateBodies().at(0).at("instruction"), "right");
  EXPECT_FALSE(service.TranslateBodies().at(0).contains("glossary"));
}

TEST_F(TerminologyRun, ANewRunAsksAnewAndIgnoresTheOldAnswer) {
  FillRows(1);
  pane->Start(kChoice);
  ASSERT_TRUE(PumpUntilPageHas(L"term-1"));
  pane->Start(kChoice);
  ASSERT_TRUE(PumpUntilPageHas(L"term-2"));
  pane->controller->OnTerminologyResult(Answer(L"term-1", L"{\"instruction\":\"old\"}"));
  pane->controller->OnTerminologyResult(Answer(L"term-2", L"{\"instruction\":\"new\"}"));
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete({runId:2"));
  ASSERT_EQ(service.TranslateBodies().size(), 1U);
  EXPECT_EQ(service.TranslateBodies()[0].at("instruction"), "new");
}

TEST_F(TerminologyRun, CancelAndCloseWakeTheWaitingWorkerAtOnce) {
  FillRows(1);
  for (const bool close : {false, true}) {
    const long before = pane->context.use_count();
    pane->Start(kChoice);
    ASSERT_TRUE(PumpUntilPageHas(close ? L"term-2" : L"term-1"));
    if (close) {
      pane->Close();
    } else {
      pane->controller->Cancel();
    }
    EXPECT_TRUE(PumpUntil([&] { return pane->context.use_count() <= before; })) << "the worker still waits";
    EXPECT_NE(logs.Events().find("ok=0 code=cancelled"), std::string::npos);
  }
  ExpectPlainBatches(0);
  EXPECT_EQ(Text("A1"), L"Text number 1");
}

TEST_F(TerminologyRun, ASilentPageIsWaitedForInVainOnlyOnce) {
  TerminologyBridge bridge(pane->context, pane->page, 20);
  const RunFlags flags;
  const TerminologyAnswer answer = bridge.Resolve({{L"g"}, L""}, {L"a"}, 1, flags);
  EXPECT_FALSE(answer.ok);
  EXPECT_EQ(answer.message, L"Terminology resolve failed");
  EXPECT_NE(logs.Events().find("cpp.term.bridge.failed requestId=term-1 ok=0 code=request_timeout"),
            std::string::npos);
  EXPECT_TRUE(bridge.WaitingMessages().empty());
  bridge.Accept(Answer(L"term-1", L"{}"));

  pane->context->MarkClosing();
  pane->context->Tasks().Close();
  EXPECT_EQ(bridge.Resolve({{L"g"}, L""}, {L"a"}, 1, flags).code, L"cancelled");
  EXPECT_TRUE(bridge.WaitingMessages().empty());
}

}  // namespace
}  // namespace qv
