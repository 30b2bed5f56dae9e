#include "foundation/access_tokens.h"

#include <gtest/gtest.h>

#include <vector>

#include "foundation/panel_output.h"

namespace qv {
namespace {

class Tokens : public testing::Test {
 protected:
  void SetUp() override { NativeAccessToken::Clear(); }
  void TearDown() override { NativeAccessToken::Clear(); }
  AccessTokens tokens_;
};

TEST_F(Tokens, StoreReachesEveryCopyAndASignOutOnlyTheProcessWideOneAndTheServices) {
  std::vector<std::wstring> heard;
  tokens_.OnStore([&](const std::wstring& token) { heard.push_back(token); });
  EXPECT_TRUE(tokens_.Store(L"t1"));
  EXPECT_EQ(NativeAccessToken::Get(), L"t1");
  tokens_.SignOut();
  EXPECT_EQ(NativeAccessToken::Get(), L"");
  EXPECT_EQ(tokens_.Pane(), L"t1");
  EXPECT_EQ(tokens_.Transport(), L"t1");
  EXPECT_EQ(heard, (std::vector<std::wstring>{L"t1", L""}));
}

TEST_F(Tokens, EmptyTokenIsIgnoredOnlyWhileThePaneHoldsOne) {
  NativeAccessToken::Set(L"of another pane");
  EXPECT_TRUE(tokens_.Store(L""));
  EXPECT_EQ(NativeAccessToken::Get(), L"");
  EXPECT_TRUE(tokens_.Store(L"t1"));
  EXPECT_FALSE(tokens_.Store(L""));
  EXPECT_EQ(tokens_.Pane(), L"t1");
  EXPECT_EQ(NativeAccessToken::Get(), L"t1");
}

TEST_F(Tokens, NoTokenSurvivesInALoggedMessage) {
  const std::pair<std::wstring, std::wstring> cases[] = {
      {LR"({"action":"start","accessToken":"se\"cret","token" : "s2","x":"y"})",
       LR"({"action":"start","accessToken":"","token" : "","x":"y"})"},
      {L"{\"token\":\n\t\"secret\"}", L"{\"token\":\n\t\"\"}"},
      {LR"({"token":["secret"]})", LR"({"token":[""]})"},
      {LR"({"token":"cut)", LR"({"token":")"},
      {LR"({"token":null,"x":"y"})", LR"({"token":null,"x":"y"})"},
      {LR"({"x":"token","y":"z"})", LR"({"x":"token","y":"z"})"},
      {LR"({"token":"a","in":{"token":"b"}})", LR"({"token":"","in":{"token":""}})"},
      {L"", L""},
  };
  for (const auto& [message, expected] : cases)
    EXPECT_EQ(WithoutTokens(message), expected);
}

TEST(PanelOutput, ReplyScriptQuotesTheRequestAndPassesDataAsItIs) {
  EXPECT_EQ(
      BuildReplyScript(L"r\"1", true, L"{\"uiLang\":\"en\"}"),
      LR"(if(window.QuorvantisTerminology)QuorvantisTerminology._onResponse({"requestId":"r\"1","ok":true,)"
      LR"("data":{"uiLang":"en"}});)");
  EXPECT_EQ(
      BuildReplyScript(L"7", false, L""),
      LR"(if(window.QuorvantisTerminology)QuorvantisTerminology._onResponse({"requestId":"7","ok":false,)"
      LR"("data":null});)");
}

}  // namespace
}  // namespace qv
