#include "translation/terminology.h"

#include <gtest/gtest.h>

#include "translation/start_request.h"
#include "translation/trace_details.h"

namespace qv {
namespace {

TEST(Terminology, TheStartMessageNamesTheChoice) {
  struct Case {
    std::wstring_view message;
    TerminologyChoice choice;
  };
  const Case cases[] = {
      {L"{}", {}},
      {L"{\"glossaryIds\":[\"a\",\"\",null,\"b\"],\"globalInstructionId\":\"i\"}", {{L"a", L"b"}, L"i"}},
      {L"{\"globalInstructionId\":\"i\",\"globalPresetId\":\"p\"}", {{}, L"i"}},
      {L"{\"globalInstructionId\":\"\",\"globalPresetId\":\"p\"}", {{}, L"p"}},
      {L"{\"globalInstructionId\":null,\"globalPresetId\" : \"p\"}", {{}, L"p"}},
      {L"{\"globalInstructionId\":null,\"globalPresetId\":7,\"sourceLang\":\"en\"}", {}},
      {L"{\"glossaryIds\":null,\"sourceLang\":\"en\"}", {}},
      {L"{\"clientTraceId\":\"globalInstructionId\",\"globalInstructionId\":\"i\"}", {{}, L"i"}},
      {L"{\"globalPresetId\"", {}},
  };
  for (const Case& c : cases)
    EXPECT_EQ(ParseStartRequest(L"start", c.message).terminology, c.choice);
}

TEST(Terminology, TheRequestHoldsIdsAndCorpus) {
  EXPECT_EQ(
      TerminologyResolveRequestMessage(L"term-3", {{L"g\"", L"h"}, L"i"}, {L"a\n", L"b"}),
      L"{\"action\":\"terminologyResolveRequest\",\"requestId\":\"term-3\",\"glossaryIds\":[\"g\\\"\",\"h\"],"
      L"\"instructionId\":\"i\",\"corpusTexts\":[\"a\\n\",\"b\"]}");
  EXPECT_EQ(TerminologyResolveRequestMessage(L"term-4", {{}, L"i"}, {}),
            L"{\"action\":\"terminologyResolveRequest\",\"requestId\":\"term-4\",\"glossaryIds\":[],"
            L"\"instructionId\":\"i\",\"corpusTexts\":[]}");
}

TEST(Terminology, AnAnswerNeedsAResultAndNoCode) {
  struct Case {
    std::wstring_view message;
    bool ok;
    std::wstring_view code;
  };
  const Case cases[] = {
      {L"{\"result\":\"{}\",\"code\":\"\",\"message\":\"\"}", true, L""},
      {L"{\"result\":\"{}\"}", true, L""},
      {L"{\"result\":\"{}\",\"code\":null,\"message\":\"x\"}", true, L""},
      {L"{\"result\":\"\",\"code\":\"not_available\",\"message\":\"Not available\"}", false,
       L"not_available"},
      {L"{\"result\":\"{}\",\"code\":\"unauthorized\"}", false, L"unauthorized"},
      {L"{\"result\":null,\"code\":\"\"}", false, L""},
      {L"{}", false, L""},
  };
  for (const Case& c : cases) {
    const TerminologyAnswer answer = ParseTerminologyAnswer(c.message);
    EXPECT_EQ(answer.ok, c.ok);
    EXPECT_EQ(answer.code, c.code);
    EXPECT_EQ(answer.result, c.ok ? L"{}" : L"");
    EXPECT_EQ(answer.message, c.ok ? L"" : L"Terminology resolve failed");
  }
}

TEST(Terminology, OnlyEnabledEntriesOfAResultCount) {
  const auto terms = ParseResolvedTerminology(
      L"{\"instruction\":\"brief\",\"entries\":[{\"source\":\"a\",\"target\":\"b\",\"note\":\"n\"},"
      L"{\"source\":\"c\",\"target\":\"d\",\"enabled\":false},{\"source\":\"\",\"target\":\"d\"},"
      L"{\"source\":\"enabled\",\"target\":\"f\",\"enabled\":true}]}");
  ASSERT_TRUE(terms);
  ASSERT_EQ(terms->glossary.size(), 2U);
  EXPECT_EQ(terms->glossary[0].target, L"b");
  EXPECT_EQ(terms->glossary[0].note, L"n");
  EXPECT_EQ(terms->glossary[1].source, L"enabled");
  EXPECT_EQ(terms->instruction, L"brief");
  EXPECT_TRUE(ParseResolvedTerminology(L"{\"entries\":null,\"instruction\":null}")->glossary.empty());
  for (const wchar_t* result : {L"", L"null", L"[]", L"{\"entries\":[}"})
    EXPECT_FALSE(ParseResolvedTerminology(result));
}

/// What a run's start said and asked.
struct Applied {
  Terminology terms;
  std::wstring log;
  int asked = 0;
  std::size_t corpus = 0;
};

Applied Apply(const TerminologyChoice& choice, bool hasToken, const TerminologyAnswer& answer = {}) {
  Applied applied;
  const TerminologyHelp help{[&](const TerminologyChoice& wanted, const std::vector<std::wstring>& corpus) {
                               EXPECT_EQ(wanted, choice);
                               ++applied.asked;
                               applied.corpus = corpus.size();
                               return answer;
                             },
                             [&](std::wstring_view line) { applied.log += line; }};
  applied.terms = ApplyTerminologyForRun(choice, hasToken, {L"one", L"two", L"one"}, help);
  return applied;
}

const TerminologyChoice kBoth{{L"g", L"h"}, L"i"};

TEST(Terminology, WithoutATokenOrAChoiceNobodyIsAsked) {
  const Applied noToken = Apply(kBoth, false);
  EXPECT_EQ(noToken.log, L"ApplyTerminologyForRun: no accessToken, skip cloud terminology\r\n");
  const Applied noChoice = Apply({}, true);
  EXPECT_EQ(noChoice.log, L"ApplyTerminologyForRun: no glossary/instruction, skip cloud terminology\r\n");
  EXPECT_EQ(noToken.asked + noChoice.asked, 0);
}

TEST(Terminology, OnlyGlossariesNeedTheCorpus) {
  const TerminologyAnswer answer{
      true, L"{\"entries\":[{\"source\":\"a\",\"target\":\"b\"}],\"instruction\":\"brief\"}", L"", L""};
  const Applied both = Apply(kBoth, true, answer);
  EXPECT_EQ(both.log, L"ApplyTerminologyForRun: resolve glossaryIds=2 corpusTexts=3\r\n");
  EXPECT_EQ(both.corpus, 3U);
  EXPECT_EQ(both.terms.glossary.size(), 1U);
  EXPECT_EQ(both.terms.instruction, L"brief");

  const Applied instructionOnly = Apply({{}, L"i"}, true, answer);
  EXPECT_EQ(instructionOnly.log, L"ApplyTerminologyForRun: instruction only, resolve without corpus\r\n");
  EXPECT_EQ(instructionOnly.corpus, 0U);
  EXPECT_EQ(instructionOnly.terms.instruction, L"brief");
}

TEST(Terminology, AFailureMeansNoTerminology) {
  for (const TerminologyAnswer& answer : {TerminologyAnswer::TimedOut(), TerminologyAnswer::Cancelled(),
                                          TerminologyAnswer{true, L"no JSON", L"", L""}}) {
    const Applied applied = Apply(kBoth, true, answer);
    EXPECT_EQ(applied.log,
              L"ApplyTerminologyForRun: resolve glossaryIds=2 corpusTexts=3\r\n"
              L"ApplyTerminologyForRun: bridge resolve failed, fallback empty\r\n");
    EXPECT_TRUE(applied.terms.glossary.empty());
    EXPECT_TRUE(applied.terms.instruction.empty());
  }
}

TEST(TraceDetails, TellOfTerminology) {
  EXPECT_EQ(TermPostedDetail(L"term-1", 2, 3), L"requestId=term-1 glossaryIds=2 corpusTexts=3");
  EXPECT_EQ(TermResultDetail(L"term-1", 20), L"requestId=term-1 resultLen=20");
  EXPECT_EQ(TermFailedDetail(L"term-1", false, L"c"), L"requestId=term-1 ok=0 code=c");
}

}  // namespace
}  // namespace qv
