#include "translation/run_scripts.h"

#include <gtest/gtest.h>

#include "translation/run_messages.h"

namespace qv {
namespace {

constexpr RunSize kSize{120, 80};

TEST(RunScripts, HoldTheCallsExactly) {
  EXPECT_EQ(RunStartedScript(3), L"if(window.onRunStarted)onRunStarted({runId:3})");
  EXPECT_EQ(ReadyScript(3, kSize), L"if(window.onReady)onReady({total:120,translatable:80,runId:3})");
  EXPECT_EQ(StartedAndReadyScript(3, kSize),
            L"if(window.onRunStarted)onRunStarted({runId:3});onReady({total:120,translatable:80,runId:3})");
  EXPECT_EQ(CompleteScript(3, kSize, 4500, true),
            L"if(window.onComplete)onComplete({runId:3,total:120,elapsed:4500,allSheets:true})");
  EXPECT_EQ(ProgressScript(3, kSize, {7, false, L"a\n\"b\"", L"\\c"}),
            L"if(window.onProgress)onProgress({runId:3,wordIndex:7,total:120,translatable:80,skipped:false,"
            L"original:\"a\\n\\\"b\\\"\",translated:\"\\\\c\"})");
  EXPECT_EQ(RunSheetChangedScript(3, L"B", L"A", L"full"),
            L"if(window.onExcelTranslateSheetChanged)onExcelTranslateSheetChanged({\"runId\":3,"
            L"\"sheetName\":\"B\",\"sourceSheetName\":\"A\",\"mode\":\"full\"})");
  EXPECT_EQ(ResumeBlockedScript(L"B", L"A"),
            L"if(window.onExcelTranslateResumeBlocked)onExcelTranslateResumeBlocked({\"sheetName\":\"B\","
            L"\"sourceSheetName\":\"A\"})");
  EXPECT_EQ(SheetWriteBlockedScript(L"m"),
            L"if(window.onSheetWriteBlocked)window.onSheetWriteBlocked({message:\"m\"});");
  EXPECT_TRUE(ToastScript(L"m", L"warn")
                  .starts_with(
                      L"(function(){var m=\"m\",k=\"warn\";if(window.QuorvantisTerminology&&"
                      L"QuorvantisTerminology.showToast){QuorvantisTerminology.showToast(m,k);return;}var el="
                      L"document.getElementById"));
}

TEST(RunMessages, TheRunIdIsANumberOutsideTheTraceAndATextInside) {
  TranslateRequest request;
  request.texts = {L"a"};
  request.unitIds = {L"R1C1"};
  request.sourceLang = L"en";
  request.targetLang = L"es";
  request.usageKind = L"translate_full";
  request.clientProduct = L"excel";
  request.clientTraceId = L"c";
  request.runId = 9;
  request.batchSeq = 4;
  EXPECT_EQ(TranslateBatchRequestMessage(L"tr-9-1", request),
            L"{\"action\":\"translateBatchRequest\",\"requestId\":\"tr-9-1\",\"runId\":9,\"batchSeq\":4,"
            L"\"texts\":[\"a\"],\"sourceLang\":\"en\",\"targetLang\":\"es\",\"usageKind\":\"translate_full\","
            L"\"clientProduct\":\"excel\",\"glossary\":[],\"instruction\":\"\","
            L"\"trace\":{\"clientTraceId\":\"c\",\"runId\":\"9\"}}");
  EXPECT_EQ(TranslateAbortForRunMessage(9), L"{\"action\":\"translateAbortForRun\",\"runId\":9}");
}

TEST(RunMessages, ReadThePagesAnswer) {
  TranslateResult result = ParseTranslateBatchResult(
      L"{\"requestId\":\"tr-9-1\",\"ok\":true,\"translations\":[\"x\",\"y\"],\"code\":\"\"}");
  EXPECT_TRUE(result.ok);
  EXPECT_EQ(result.translations.size(), 2U);
  result = ParseTranslateBatchResult(L"{\"ok\":false,\"code\":\"quota\",\"message\":\"m\"}");
  EXPECT_FALSE(result.ok);
  EXPECT_EQ(result.code, L"quota");
  EXPECT_EQ(result.message, L"m");
}

}  // namespace
}  // namespace qv
