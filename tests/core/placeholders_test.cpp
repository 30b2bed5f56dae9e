#include "translation/placeholders.h"

#include <gtest/gtest.h>

#include "translation/error_codes.h"

namespace qv {
namespace {

TEST(Placeholders, CountsCompleteTokensOnly) {
  struct Case {
    std::wstring_view text;
    std::int32_t count;
  };
  const Case cases[] = {
      {L"[[qv__7]]", 1},
      {L"[[QV_A_1]][[Qv_b2_34]] and [[qV_X_0]]", 3},
      {L"[[[[QV_A_1]]", 1},
      {L"[[QV_[[QV_A_1]]", 1},
      {L"[[[QV_A_1]]]", 1},
      {L"[[QV_A_]]", 0},
      {L"[QV_A_1]]", 0},
      {L"[[QV_A_1]", 0},
      {L"[[QV_A_1", 0},
      {L"[[QV_A-B_1]]", 0},
      {L"[[QV_A_B_1]]", 0},
      {L"[[QV_A_\u0661]]", 0},  // a digit, but no decimal one of ASCII
      {L"[[QX_A_1]]", 0},
      {L"[[", 0},
      {L"", 0},
  };
  for (const Case& c : cases)
    EXPECT_EQ(CountPlaceholders(c.text), c.count) << std::string(c.text.begin(), c.text.end());
}

TranslateResult OneTranslation(std::wstring text) {
  TranslateResult result;
  result.ok = true;
  result.translations = {std::move(text)};
  return result;
}

TEST(Placeholders, TextsWithoutTokensAreNeverRepaired) {
  const RunFlags flags;
  std::vector<std::wstring> translations = {L"[[QV_A_1]]"};
  const TranslateResult result =
      VerifyPlaceholders({L"plain"}, translations, flags, [](const std::wstring&) -> TranslateResult {
        ADD_FAILURE() << "asked again";
        return {};
      });
  EXPECT_TRUE(result.ok);
  EXPECT_EQ(translations[0], L"[[QV_A_1]]");
}

TEST(Placeholders, AFailedRepairNamesItsReason) {
  struct Case {
    TranslateResult repair;
    std::wstring_view code;
    std::wstring_view message;
  };
  TranslateResult none;
  none.ok = true;
  const Case cases[] = {
      {OneTranslation(L"still lost"), L"", L"Translation altered locked placeholders (cross-ref/formula)"},
      {none, L"", L"Translation altered locked placeholders (cross-ref/formula)"},
      {TranslateResult::Failure(L"engine_down", L""), L"engine_down", L"Placeholder repair failed"},
      {TranslateResult::Failure(L"unauthorized", L"sign in"), L"unauthorized", L"sign in"},
  };
  for (const Case& c : cases) {
    const RunFlags flags;
    std::vector<std::wstring> translations = {L"lost"};
    const TranslateResult result = VerifyPlaceholders({L"[[QV_A_1]]"}, translations, flags,
                                                      [&](const std::wstring&) { return c.repair; });
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.code, c.code);
    EXPECT_EQ(result.message, c.message);
  }
}

TEST(Placeholders, CancellingEndsTheCheckAlsoWhilePaused) {
  RunFlags flags;
  flags.SetPaused(true);
  flags.Cancel();
  std::vector<std::wstring> translations = {L"x"};
  const TranslateResult result =
      VerifyPlaceholders({L"x"}, translations, flags, [](const std::wstring&) { return TranslateResult(); });
  EXPECT_EQ(result.code, kCodeCancelled);
  EXPECT_EQ(result.message, L"Cancelled");
}

}  // namespace
}  // namespace qv
