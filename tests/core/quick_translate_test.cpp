#include "translation/quick_translate.h"

#include <gtest/gtest.h>

#include "translation/error_codes.h"
#include "translation/quick_write_text.h"

namespace qv {
namespace {

TEST(QuickTranslate, FillsInTheLanguagesThatThePageLeavesOut) {
  for (const wchar_t* message :
       {LR"({"action":"quickTranslate","text":"Hi"})", LR"({"text":"Hi","targetLang":"","sourceLang":""})"}) {
    const QuickTranslateRequest request = ParseQuickTranslate(message);
    EXPECT_EQ(request.sourceLang, L"auto");
    EXPECT_EQ(request.targetLang, L"zh-CN");
    EXPECT_EQ(request.text, L"Hi");
    EXPECT_EQ(request.token, L"");
  }
}

TEST(QuickTranslate, TakesEveryField) {
  const QuickTranslateRequest request = ParseQuickTranslate(
      LR"({"action":"quickTranslate","requestId":"q1","text":"a \"token\":\"b\"","targetLang":"de",)"
      LR"("sourceLang":"en","token":"second","accessToken":"first","instruction":"Be brief."})");
  EXPECT_EQ(request.requestId, L"q1");
  EXPECT_EQ(request.text, LR"(a "token":"b")");
  EXPECT_EQ(request.sourceLang, L"en");
  EXPECT_EQ(request.targetLang, L"de");
  EXPECT_EQ(request.token, L"first");
  EXPECT_EQ(ParseQuickTranslate(LR"({"token":"second"})").token, L"second");
  EXPECT_EQ(
      BuildTranslateBody(BuildQuickRequest(request), L"{}"),
      LR"({"texts":["a \"token\":\"b\""],"sourceLang":"en","targetLang":"de","usageKind":"translate_quick",)"
      LR"("clientProduct":"excel","instruction":"Be brief.","clientContext":{}})");
}

TEST(QuickTranslate, AnswersWithAGuardedScript) {
  constexpr std::wstring_view kStart =
      L"(function(){if(typeof window.onQuickTranslateResult!=='function')return;"
      L"window.onQuickTranslateResult({requestId:";
  const auto expected = [&](std::wstring_view rest) {
    return std::wstring(kStart) + std::wstring(rest) + L"});})();";
  };
  EXPECT_EQ(QuickTranslateScript(L"a\"b", {true, L"Guten\nTag", {}}),
            expected(LR"("a\"b",ok:true,translation:"Guten\nTag")"));
  EXPECT_EQ(QuickTranslateScript(L"q", {false, {}, L"\"no\""}), expected(LR"("q",ok:false,error:"\"no\"")"));
}

TEST(QuickTranslate, WordsFailuresAsRunsDo) {
  struct Case {
    TranslateResult result;
    std::wstring error;
  };
  const Case cases[] = {
      {TranslateResult::Failure(L"unauthorized", L"登录已失效，请重新登录"), L"登录已失效，请重新登录"},
      {TranslateResult::Failure(kCodeInsufficientCredits, L""), std::wstring(kCreditsMessage)},
      {TranslateResult::Failure(kCodeInsufficientCredits, kCodeInsufficientCredits),
       std::wstring(kCreditsMessage)},
      {TranslateResult::Failure(L"network_error", L"HTTP request failed"), L"HTTP request failed"},
      {TranslateResult::Failure(L"", L"Request too large"),
       L"内容过长\u00EF\u00BC\u0088超过单次请求上限\u00EF\u00BC\u0089\u00EF\u00BC\u008C请拆分后重试"},
  };
  for (const Case& c : cases) {
    const QuickTranslateAnswer answer = QuickAnswerOf(c.result);
    EXPECT_FALSE(answer.ok);
    EXPECT_EQ(answer.error, c.error);
    EXPECT_EQ(answer.translation, L"");
  }
  TranslateResult good;
  good.ok = true;
  good.translations = {L"Hallo"};
  EXPECT_TRUE(QuickAnswerOf(good).ok);
  EXPECT_EQ(QuickAnswerOf(good).translation, L"Hallo");
}

TEST(QuickTranslate, LogsLengthsAndNoTexts) {
  const QuickTranslateRequest request =
      ParseQuickTranslate(LR"({"requestId":"q","text":"four","token":"ab"})");
  EXPECT_EQ(QuickBeginLine(request, 9),
            L"quickTranslate begin reqId=q textLen=4 jsTokenLen=2 nativeTokenLen=9\r\n");
  EXPECT_EQ(QuickEndLine(L"q", {true, L"x", {}}), L"quickTranslate end reqId=q ok=1 errLen=0\r\n");
  EXPECT_EQ(QuickEndLine(L"q", {false, {}, L"abc"}), L"quickTranslate end reqId=q ok=0 errLen=3\r\n");
}

TEST(QuickWrite, KnowsTwoModesAndNeedsAText) {
  EXPECT_EQ(ParseQuickWrite(LR"({"mode":"replace","text":"x"})").mode, QuickWriteMode::kReplace);
  EXPECT_EQ(ParseQuickWrite(LR"({"mode":"insert","text":"x"})").mode, QuickWriteMode::kInsert);
  EXPECT_TRUE(ParseQuickWrite(LR"({"mode":"insert","text":"x"})").WritesAnything());
  for (const wchar_t* message :
       {LR"({"text":"x"})", LR"({"mode":"Replace","text":"x"})", LR"({"mode":"append","text":"x"})",
        LR"({"mode":"replace"})", LR"({"mode":"insert","text":""})"})
    EXPECT_FALSE(ParseQuickWrite(message).WritesAnything());
}

TEST(QuickWrite, InsertsAsANewLastLine) {
  EXPECT_EQ(InsertedText(L"", L"neu"), L"neu");
  EXPECT_EQ(InsertedText(L" \n", L"neu"), L"neu");
  EXPECT_EQ(InsertedText(L"one\ntwo  ", L"neu"), L"one\ntwo\nneu");
}

}  // namespace
}  // namespace qv
