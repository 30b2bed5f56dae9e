#include "translation/run_translation.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace qv {
namespace {

class FakeTransport final : public Transport {
 public:
  explicit FakeTransport(const RunFlags& flags) : flags_(flags) {}

  TranslateResult Send(const TranslateRequest& request) override {
    EXPECT_FALSE(flags_.IsPaused());
    requests.push_back(request);
    if (request.texts.front() == failOn) return TranslateResult::Failure(L"unauthorized", L"m");
    TranslateResult result;
    result.ok = true;
    for (const std::wstring& text : request.texts)
      result.translations.push_back(L"t:" + text);
    return result;
  }

  std::vector<TranslateRequest> requests;
  std::wstring failOn;

 private:
  const RunFlags& flags_;
};

class KeepingSink final : public RunSink {
 public:
  void Deliver(TranslatedBatch batch) override {
    batches.push_back(std::move(batch));
    if (onDeliver) onDeliver();
  }
  void Trace(std::string_view event, const std::wstring& detail) override {
    traces.emplace_back(event, detail);
  }

  std::vector<TranslatedBatch> batches;
  std::vector<std::pair<std::string, std::wstring>> traces;
  std::function<void()> onDeliver;
};

RunTexts TextsOf(std::size_t count) {
  RunTexts texts;
  for (std::size_t i = 0; i < count; ++i) {
    texts.texts.push_back(L"text " + std::to_wstring(i));
    texts.unitIds.push_back(L"R" + std::to_wstring(i + 1) + L"C1");
  }
  return texts;
}

Terminology NoTerms(const std::vector<std::wstring>&) {
  return {};
}

class RunTranslation : public testing::Test {
 protected:
  RunEnd Run(const RunTexts& texts, const TerminologySource& terms = &NoTerms) {
    TranslateRequest head;
    head.runId = 4;
    head.clientTraceId = L"c";
    return TranslateRun(texts, head, terms, transport, flags, sink);
  }

  RunFlags flags;
  FakeTransport transport{flags};
  KeepingSink sink;
};

TEST_F(RunTranslation, DeliversEveryUnitInOrderAndNumbersTheBatches) {
  RunTexts texts = TextsOf(25);
  texts.texts[3] = L" ";
  EXPECT_TRUE(Run(texts).ok);
  std::size_t next = 0;
  for (const TranslatedBatch& batch : sink.batches) {
    for (const TranslatedUnit& unit : batch) {
      EXPECT_EQ(unit.index, next);
      EXPECT_EQ(unit.skipped, next == 3);
      EXPECT_EQ(unit.translation, next == 3 ? L"" : L"t:" + texts.texts[next]);
      ++next;
    }
  }
  EXPECT_EQ(next, 25U);
  ASSERT_EQ(transport.requests.size(), 2U);
  EXPECT_EQ(transport.requests[0].batchSeq, 1U);
  EXPECT_EQ(transport.requests[1].batchSeq, 2U);
  EXPECT_EQ(transport.requests[1].unitIds.front(), L"R22C1");
  ASSERT_EQ(sink.traces.size(), 3U);
  EXPECT_EQ(sink.traces[1].first, "cpp.batch.cache");
  EXPECT_EQ(sink.traces[2].first, "cpp.run.cache");
  EXPECT_EQ(sink.traces[2].second,
            L"clientTraceId=c runId=4 batches=2 logicalSegs=24 submittedSegs=24 cacheHits=0 dedupHits=0");
}

TEST_F(RunTranslation, ResolvesTheTermsOnceAndSendsThemWithEveryBatch) {
  int asked = 0;
  const RunEnd end = Run(TextsOf(25), [&](const std::vector<std::wstring>& corpus) {
    ++asked;
    EXPECT_EQ(corpus.size(), 25U);
    return Terminology{{{L"a", L"b", L""}}, L"brief"};
  });
  EXPECT_TRUE(end.ok);
  EXPECT_EQ(asked, 1);
  for (const TranslateRequest& request : transport.requests) {
    EXPECT_EQ(request.glossary.size(), 1U);
    EXPECT_EQ(request.instruction, L"brief");
  }
}

TEST_F(RunTranslation, AFailingBatchEndsTheRunBehindTheFinishedOnes) {
  transport.failOn = L"text 20";
  const RunEnd end = Run(TextsOf(45));
  EXPECT_FALSE(end.ok);
  EXPECT_EQ(end.code, L"unauthorized");
  EXPECT_EQ(sink.batches.size(), 1U);
  EXPECT_EQ(sink.traces.back().first, "cpp.run.cache");
}

TEST_F(RunTranslation, CancellingStopsBeforeTheNextBatch) {
  sink.onDeliver = [this] { flags.Cancel(); };
  EXPECT_EQ(Run(TextsOf(45)).code, L"cancelled");
  EXPECT_EQ(transport.requests.size(), 1U);
}

TEST_F(RunTranslation, NothingIsSentWhilePaused) {
  std::vector<std::thread> resumers;
  sink.onDeliver = [&] {
    flags.SetPaused(true);
    resumers.emplace_back([this] { flags.SetPaused(false); });
  };
  EXPECT_TRUE(Run(TextsOf(45)).ok);
  EXPECT_EQ(transport.requests.size(), 3U);
  for (std::thread& resumer : resumers)
    resumer.join();
}

}  // namespace
}  // namespace qv
