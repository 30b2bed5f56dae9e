#include "translation/translate_request.h"

#include <gtest/gtest.h>

#include "translation/error_codes.h"

namespace qv {
namespace {

TEST(TranslateBody, HoldsEveryMemberInOrder) {
  TranslateRequest request;
  request.texts = {L"a\"", L"b"};
  request.unitIds = {L"R1C1", L"R1C2"};
  request.sourceLang = L"en";
  request.targetLang = L"es";
  request.usageKind = L"translate_full";
  request.clientProduct = L"excel";
  request.glossary = {{L"s", L"t", L""}, {L"s2", L"t2", L"n"}};
  request.instruction = L"be brief";
  request.clientTraceId = L"trace";
  request.runId = 5;
  request.batchSeq = 2;
  EXPECT_EQ(BuildTranslateBody(request, L"{\"installId\":\"i\"}"),
            L"{\"texts\":[\"a\\\"\",\"b\"],\"unitIds\":[\"R1C1\",\"R1C2\"],\"sourceLang\":\"en\","
            L"\"targetLang\":\"es\",\"usageKind\":\"translate_full\",\"clientProduct\":\"excel\","
            L"\"glossary\":[{\"source\":\"s\",\"target\":\"t\"},"
            L"{\"source\":\"s2\",\"target\":\"t2\",\"note\":\"n\"}],\"instruction\":\"be brief\","
            L"\"trace\":{\"clientTraceId\":\"trace\",\"runId\":\"5\",\"batchSeq\":2},"
            L"\"clientContext\":{\"installId\":\"i\"}}");
}

TEST(TranslateBody, LeavesEmptyMembersOut) {
  TranslateRequest request;
  request.texts = {L"a"};
  EXPECT_EQ(BuildTranslateBody(request, L"{}"),
            L"{\"texts\":[\"a\"],\"sourceLang\":\"\",\"targetLang\":\"\",\"clientContext\":{}}");
  request.batchSeq = 1;
  EXPECT_NE(BuildTranslateBody(request, L"{}").find(L",\"trace\":{\"batchSeq\":1},"), std::wstring::npos);
}

TEST(TranslateResponse, BodyDecidesBeforeStatus) {
  struct Case {
    ServiceAnswer answer;
    std::wstring_view code;
    std::wstring_view message;
  };
  const Case cases[] = {
      {{401, L"{\"error\":\"token_expired\"}", L""}, L"token_expired", L"token_expired"},
      {{401, L"{\"message\":\"no\"}", L""}, L"unauthorized", L"no"},
      {{402, L"{}", L""}, L"insufficient_credits", L"Empty translation response"},
      {{200, L"{\"message\":\"积分不足!\"}", L""}, L"insufficient_credits", L"积分不足!"},
      {{500, L"{\"code\":\"engine_down\",\"message\":\"later\"}", L""}, L"engine_down", L"later"},
      {{500, L"<html>", L""}, L"", L"Empty translation response"},
      {{200, L"{\"translations\":[\"x\",\"y\"", L""}, L"", L"Empty translation response"},
      {{200, L"{\"translations\":[\"x\",null]}", L""}, L"", L"Translation count mismatch"},
      {{200, L"{\"translations\":[\"x\",\"y\",\"z\"]}", L""}, L"", L"Translation count mismatch"},
      // Without a body.
      {{401, L"", L""}, L"unauthorized", L"登录已失效，请重新登录"},
      {{402, L"", L""}, L"insufficient_credits", kCreditsMessage},
      {{402, L"", L"insufficient_credits"}, L"insufficient_credits", kCreditsMessage},
      {{402, L"", L"top up"}, L"insufficient_credits", L"top up"},
      {{204, L"", L""}, L"network_error", L"HTTP request failed"},
      {{0, L"", L"WinHttpConnect failed"}, L"network_error", L"WinHttpConnect failed"},
  };
  for (const Case& c : cases) {
    const TranslateResult result = ParseTranslateResponse(c.answer, 2);
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.code, c.code) << c.answer.status;
    EXPECT_EQ(result.message, c.message) << c.answer.status;
  }
}

TEST(TranslateResponse, KeepsUnitIdsOnlyWhenThereIsOneForEach) {
  const std::wstring two = L"{\"translations\":[\"x\",\"y\"],\"unitIds\":[\"R1C1\",\"R2C1\"]}";
  TranslateResult result = ParseTranslateResponse({200, two, L""}, 2);
  EXPECT_TRUE(result.ok);
  EXPECT_EQ(result.translations, (std::vector<std::wstring>{L"x", L"y"}));
  EXPECT_EQ(result.unitIds, (std::vector<std::wstring>{L"R1C1", L"R2C1"}));

  result = ParseTranslateResponse({200, L"{\"translations\":[\"x\",\"y\"],\"unitIds\":[\"R1C1\"]}", L""}, 2);
  EXPECT_TRUE(result.ok);
  EXPECT_TRUE(result.unitIds.empty());
}

}  // namespace
}  // namespace qv
