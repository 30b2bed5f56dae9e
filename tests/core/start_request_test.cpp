#include "translation/start_request.h"

#include <gtest/gtest.h>

#include "translation/trace_details.h"

namespace qv {
namespace {

TEST(StartRequest, ModeAndRestartHaveSeveralSpellings) {
  struct Case {
    std::wstring_view action;
    std::wstring_view message;
    bool selection;
    bool restart;
  };
  const Case cases[] = {
      {L"start", L"{}", false, false},
      {L"startSelection", L"{\"panelMode\":\"full\"}", true, false},
      {L"start", L"{\"panelMode\":\"selection\"}", true, false},
      {L"start", L"{\"panelMode\":\"Selection\"}", false, false},
      {L"restart", L"{}", false, true},
      {L"start", L"{\"restart\":true}", false, true},
      {L"start", L"{\"panelIsRestart\":true}", false, true},
      {L"start", L"{\"panelIsRestart\":\"true\"}", false, false},
  };
  for (const Case& c : cases) {
    const StartRequest start = ParseStartRequest(c.action, c.message);
    EXPECT_EQ(start.selection, c.selection);
    EXPECT_EQ(start.restart, c.restart);
  }
}

TEST(StartRequest, AbsentFontMembersLeaveTheFontAlone) {
  struct Case {
    std::wstring_view message;
    TargetFont font;
  };
  const Case cases[] = {
      {L"{}", {}},
      {L"{\"targetFont\":\"\",\"targetFontSize\":0,\"targetFontColor\":-1}", {}},
      {L"{\"targetFontSize\":-3}", {}},
      {L"{\"targetFontBold\":false}", {std::nullopt, std::nullopt, false, kDefaultTargetColor}},
      {L"{\"targetFont\":\"Arial\",\"targetFontSize\":10.5,\"targetFontBold\":true,\"targetFontColor\":0}",
       {L"Arial", 10.5, true, 0}},
  };
  for (const Case& c : cases)
    EXPECT_EQ(ParseStartRequest(L"start", c.message).font, c.font);
}

TEST(StartRequest, TheLogTellsEmptyFromMissing) {
  EXPECT_EQ(StartLogLine(L"start", L"{\"panelMode\":\"\",\"panelIsRestart\":false,\"panelScriptRev\":42}"),
            L"Excel translateStart action=start panelMode=(empty) panelIsRestart=false panelScriptRev=42"
            L"\r\n");
  EXPECT_EQ(StartLogLine(L"restart", L"{\"panelMode\":\"full\",\"panelScriptRev\":\"r7\"}"),
            L"Excel translateStart action=restart panelMode=full panelIsRestart=(null) panelScriptRev=r7"
            L"\r\n");
  EXPECT_EQ(StartLogLine(L"start", L"{\"panelMode\""),
            L"Excel translateStart action=start panelMode=(empty) panelIsRestart=(null) "
            L"panelScriptRev=(null)\r\n");
}

TEST(TraceDetails, QuoteTheStartMessageUpTo500Units) {
  const std::wstring message(600, L'x');
  EXPECT_EQ(StartReceivedDetail(true, 612, L"c", message),
            L"hasField=1 len=612 clientTraceId=c json=" + std::wstring(500, L'x'));
}

TEST(TraceDetails, NameTheBatchAndItsOutcome) {
  TranslateRequest request;
  request.texts = {L"ab", L"c"};
  request.clientTraceId = L"c";
  request.runId = 2;
  request.batchSeq = 3;
  EXPECT_EQ(HttpTranslateDetail(request, 12, TranslateResult::Failure(L"quota", L"m")),
            L"clientTraceId=c runId=2 batchSeq=3 segs=2 chars=3 httpMs=12 ok=0 code=quota");
  EXPECT_EQ(BatchCacheDetail(request, {4, 2, 1, 1}),
            L"clientTraceId=c runId=2 batchSeq=3 logicalSegs=4 submittedSegs=2 cacheHits=1 dedupHits=1");
}

}  // namespace
}  // namespace qv
