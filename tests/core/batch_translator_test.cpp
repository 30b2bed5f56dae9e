#include "translation/batch_translator.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "translation/error_codes.h"

namespace qv {
namespace {

/// Answers by a rule and keeps what it was asked.
class ScriptedTransport final : public Transport {
 public:
  using Rule = std::function<TranslateResult(const TranslateRequest&)>;
  explicit ScriptedTransport(Rule rule) : rule_(std::move(rule)) {}

  TranslateResult Send(const TranslateRequest& request) override {
    sent.push_back(request.texts);
    last = request;
    return rule_(request);
  }

  std::vector<std::vector<std::wstring>> sent;
  TranslateRequest last;

 private:
  Rule rule_;
};

TranslateResult Translated(const TranslateRequest& request) {
  TranslateResult result;
  result.ok = true;
  for (const std::wstring& text : request.texts)
    result.translations.push_back(L"t:" + text);
  return result;
}

TranslateRequest RequestOf(std::vector<std::wstring> texts) {
  TranslateRequest request;
  request.texts = std::move(texts);
  for (std::size_t i = 0; i < request.texts.size(); ++i)
    request.unitIds.push_back(L"R" + std::to_wstring(i + 1) + L"C1");
  request.instruction = L"brief";
  request.glossary = {{L"a", L"b", L""}};
  return request;
}

using Texts = std::vector<std::wstring>;

TEST(BatchTranslator, SendsRepeatedTextsOnceAndCachesShortOnes) {
  RunFlags flags;
  ScriptedTransport transport(Translated);
  BatchTranslator translator(transport, flags);
  BatchFigures figures;

  TranslateResult result =
      translator.TranslateBatch(RequestOf({L"Yes", L"Quarter", L"Yes", L"Quarter"}), figures);
  EXPECT_EQ(result.translations, (Texts{L"t:Yes", L"t:Quarter", L"t:Yes", L"t:Quarter"}));
  EXPECT_EQ(transport.last.unitIds, (Texts{L"R1C1", L"R2C1"}));
  EXPECT_EQ(figures.logicalSegs, 4U);
  EXPECT_EQ(figures.submittedSegs, 2U);
  EXPECT_EQ(figures.dedupHits, 2U);
  EXPECT_EQ(figures.cacheHits, 0U);

  result = translator.TranslateBatch(RequestOf({L"Quarter", L"Yes"}), figures);
  EXPECT_EQ(result.translations, (Texts{L"t:Quarter", L"t:Yes"}));
  EXPECT_EQ(transport.last.texts, (Texts{L"Quarter"}));
  EXPECT_EQ(figures.cacheHits, 1U);
  EXPECT_EQ(figures.dedupHits, 0U);

  // Nothing left to send.
  result = translator.TranslateBatch(RequestOf({L"Yes"}), figures);
  EXPECT_TRUE(result.ok);
  EXPECT_EQ(transport.sent.size(), 2U);
}

TEST(BatchTranslator, SurrogatePairsCountOnceInTheCache) {
  EXPECT_TRUE(ShortTextCache::Takes(L"\xD83D\xDE00\xD83D\xDE00\xD83D\xDE00\xD83D\xDE00"));
  EXPECT_FALSE(
      ShortTextCache::Takes(L"\xD83D\xDE00"
                            L"abcd"));
  EXPECT_TRUE(ShortTextCache::Takes(L"\xD83D\xD83D"));
  EXPECT_FALSE(ShortTextCache::Takes(L"abcde"));
  EXPECT_FALSE(ShortTextCache::Takes(L""));
}

TEST(BatchTranslator, FatalCodesAreNotRetried) {
  for (const std::wstring_view code : {kCodeInsufficientCredits, kCodeUnauthorized, kCodeCancelled}) {
    RunFlags flags;
    ScriptedTransport transport(
        [&](const TranslateRequest&) { return TranslateResult::Failure(code, L"m"); });
    BatchTranslator translator(transport, flags);
    BatchFigures figures;
    EXPECT_EQ(translator.TranslateBatch(RequestOf({L"one", L"two"}), figures).code, code);
    EXPECT_EQ(transport.sent.size(), 1U);
  }
}

TEST(BatchTranslator, AFatalCodeOfTheSecondAttemptEndsTheBatch) {
  RunFlags flags;
  int calls = 0;
  ScriptedTransport transport([&](const TranslateRequest&) {
    return ++calls == 1 ? TranslateResult::Failure(L"", L"e")
                        : TranslateResult::Failure(kCodeUnauthorized, L"m");
  });
  BatchTranslator translator(transport, flags);
  BatchFigures figures;
  EXPECT_EQ(translator.TranslateBatch(RequestOf({L"one", L"two"}), figures).code, kCodeUnauthorized);
  EXPECT_EQ(calls, 2);
}

TEST(BatchTranslator, RetriesOnceThenSplitsDownToTheBadSegment) {
  RunFlags flags;
  std::map<std::wstring, int> attempts;
  ScriptedTransport transport([&](const TranslateRequest& request) {
    for (const std::wstring& text : request.texts) {
      if (text != L"poison") continue;
      const int attempt = ++attempts[std::to_wstring(request.texts.size())];
      return TranslateResult::Failure(
          L"", L"attempt " + std::to_wstring(attempt) + L" of " + std::to_wstring(request.texts.size()));
    }
    return Translated(request);
  });
  BatchTranslator translator(transport, flags);
  BatchFigures figures;

  const TranslateResult result =
      translator.TranslateBatch(RequestOf({L"first", L"second", L"poison", L"fourth", L"fifth"}), figures);
  EXPECT_FALSE(result.ok);
  EXPECT_EQ(result.message, L"attempt 1 of 1");
  const std::vector<Texts> expected = {{L"first", L"second", L"poison", L"fourth", L"fifth"},
                                       {L"first", L"second", L"poison", L"fourth", L"fifth"},
                                       {L"first", L"second"},
                                       {L"poison", L"fourth", L"fifth"},
                                       {L"poison", L"fourth", L"fifth"},
                                       {L"poison"},
                                       {L"poison"}};
  EXPECT_EQ(transport.sent, expected);
}

TEST(BatchTranslator, JoinsSplitHalvesInOrder) {
  RunFlags flags;
  ScriptedTransport transport([](const TranslateRequest& request) {
    return request.texts.size() > 1 ? TranslateResult::Failure(L"", L"too many") : Translated(request);
  });
  BatchTranslator translator(transport, flags);
  BatchFigures figures;
  const TranslateResult result =
      translator.TranslateBatch(RequestOf({L"first", L"second", L"third"}), figures);
  EXPECT_TRUE(result.ok);
  EXPECT_EQ(result.translations, (Texts{L"t:first", L"t:second", L"t:third"}));
  EXPECT_EQ(transport.last.unitIds, (Texts{L"R3C1"}));
  EXPECT_EQ(transport.last.instruction, L"brief");
  EXPECT_EQ(transport.last.glossary.size(), 1U);
}

TEST(BatchTranslator, AFatalCodeWhileSplittingEndsTheBatch) {
  RunFlags flags;
  ScriptedTransport transport([&](const TranslateRequest& request) {
    return request.texts.size() > 1 ? TranslateResult::Failure(L"", L"e")
                                    : TranslateResult::Failure(kCodeUnauthorized, L"m");
  });
  BatchTranslator translator(transport, flags);
  BatchFigures figures;
  EXPECT_EQ(translator.TranslateBatch(RequestOf({L"first", L"second"}), figures).code, kCodeUnauthorized);
  EXPECT_EQ(transport.sent.size(), 3U);
}

TEST(BatchTranslator, ATransportThatLosesSegmentsIsFoundOut) {
  RunFlags flags;
  ScriptedTransport transport([](const TranslateRequest&) {
    TranslateResult result;
    result.ok = true;
    result.translations = {L"x"};
    return result;
  });
  BatchTranslator translator(transport, flags);
  BatchFigures figures;
  EXPECT_EQ(translator.TranslateBatch(RequestOf({L"first", L"second"}), figures).message,
            L"Internal short-text cache result mismatch");
}

TEST(BatchTranslator, RepairsADroppedPlaceholderAlone) {
  RunFlags flags;
  ScriptedTransport transport([](const TranslateRequest& request) {
    TranslateResult result = Translated(request);
    if (request.texts.size() > 1) result.translations[1] = L"lost";
    return result;
  });
  BatchTranslator translator(transport, flags);
  BatchFigures figures;
  const TranslateResult result =
      translator.TranslateBatch(RequestOf({L"first", L"see [[QV_REF_1]]"}), figures);
  EXPECT_TRUE(result.ok);
  EXPECT_EQ(result.translations[1], L"t:see [[QV_REF_1]]");
  EXPECT_EQ(transport.last.texts, (Texts{L"see [[QV_REF_1]]"}));
  EXPECT_EQ(transport.last.instruction, L"brief");
}

TEST(BatchTranslator, APlaceholderFailureIsRetried) {
  RunFlags flags;
  int calls = 0;
  ScriptedTransport transport([&](const TranslateRequest& request) {
    TranslateResult result = Translated(request);
    // The first answer and its repair lose the token, the second attempt keeps it.
    if (++calls <= 2) result.translations[0] = L"lost";
    return result;
  });
  BatchTranslator translator(transport, flags);
  BatchFigures figures;
  EXPECT_TRUE(translator.TranslateBatch(RequestOf({L"see [[QV_REF_1]]"}), figures).ok);
  EXPECT_EQ(calls, 3);
}

}  // namespace
}  // namespace qv
