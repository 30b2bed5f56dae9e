#include "translation/error_codes.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

TEST(ErrorCodes, FirstKnownTextInAMessageGivesTheCode) {
  struct Case {
    std::wstring_view message;
    std::wstring_view code;
  };
  const Case cases[] = {
      {L"Excel Application not connected", L"app_not_connected"},
      {L"没有活动工作表", L"no_active_sheet"},
      {L"无法批量读取单元格内容", L"cells_batch_read_failed"},
      {L"无法解析批量单元格数据", L"cells_batch_parse_failed"},
      {L"选区过大，请缩小选择范围", L"selection_too_large"},
      {L"HTTP 413: Request too large", L"content_too_long"},
      {L"Translation batch size mismatch (3 vs 4)", L"batch_mismatch"},
      {L"Translation count mismatch", L"batch_mismatch"},
      // Earlier rows win over later ones that occur as well.
      {L"COM: Cannot get paragraphs", L"com_error"},
      {L"COM: 内容过长", L"content_too_long"},
      {L"A COM call failed", L"com_error"},
      {L"Common text", L""},
      {L"", L""},
  };
  for (const Case& c : cases)
    EXPECT_EQ(MapServerError(c.message), c.code);
}

TEST(ErrorCodes, StoredPunctuationStandsOnlyInTheTwoNamedTexts) {
  EXPECT_EQ(PolishErrorMessage(L"insufficient_credits", L"", L"insufficient_credits"),
            L"积分不足\u00EF\u00BC\u008C请充值或升级套餐后继续翻译。");
  EXPECT_EQ(PolishErrorMessage(L"", L"Failed: ", L"Too large"),
            L"Failed: 内容过长\u00EF\u00BC\u0088超过单次请求上限\u00EF\u00BC\u0089\u00EF\u00BC\u008C"
            L"请拆分后重试");
}

TEST(ErrorCodes, CreditMessagesKeepTheServersWords) {
  EXPECT_EQ(PolishErrorMessage(L"x", L"Failed: ", L"您的积分不足"), L"您的积分不足");
  EXPECT_EQ(PolishErrorMessage(L"insufficient_credits", L"", L""), kCreditsMessage);
  EXPECT_EQ(PolishErrorMessage(L"network_error", L"Failed: ", L"no route"), L"Failed: no route");
  EXPECT_EQ(PolishErrorMessage(L"network_error", L"", L""), L"");
}

TEST(ErrorCodes, TheErrorScriptNamesCodeMessageAndRun) {
  EXPECT_EQ(ShowRunError(L"unauthorized", L"a \"b\"", 7),
            L"if(window.onError)onError({code:\"unauthorized\",message:\"a \\\"b\\\"\",runId:7})");
  EXPECT_EQ(ShowRunError(L"", L"strange", 7), L"if(window.onError)onError({message:\"strange\",runId:7})");
  EXPECT_EQ(ShowRunError(L"", L"没有活动工作表", std::nullopt),
            L"if(window.onError)onError({code:\"no_active_sheet\",message:\"没有活动工作表\"})");
}

}  // namespace
}  // namespace qv
