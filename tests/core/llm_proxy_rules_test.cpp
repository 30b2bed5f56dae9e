#include "services/llm_proxy_rules.h"

#include <gtest/gtest.h>

#include <utility>

namespace qv {
namespace {

TEST(LlmProxyRules, TheKeyIsTrimmedItsSchemeHasNoCaseAndTheRestMustBeExact) {
  const std::wstring token = L"qv_00ff";
  const std::pair<std::wstring, bool> cases[] = {
      {L"Bearer qv_00ff", true},
      {L" \t\r\nbEARER qv_00ff\n\r\t ", true},
      {L"Bearer qv_00FF", false},
      {L"Bearer QV_00ff", false},
      {L"Bearer  qv_00ff", false},
      {L"Bearer\tqv_00ff", false},
      {L"Bearer qv_00f", false},
      {L"Bearer qv_00fff", false},
      {L"Bearer qv_00ff,x", false},
      {L"Bearer ", false},
      {L"Basic qv_00ff", false},
      {L"qv_00ff", false},
      {L"\u00A0Bearer qv_00ff", false},
      {L" \t", false},
      {L"", false},
  };
  for (const auto& [header, accepted] : cases)
    EXPECT_EQ(CheckBearer(header, token), accepted) << testing::PrintToString(header);
  EXPECT_FALSE(CheckBearer(L"Bearer ", L"")) << "an empty token opens nothing";
}

TEST(LlmProxyRules, AStreamIsFoundInTheHeaderOrByAScanOfTheBodysBytes) {
  struct Case {
    std::string accept;
    std::string body;
    bool wants;
  };
  const Case cases[] = {
      {"text/event-stream", "", true},
      {"application/json, TEXT/Event-Stream;q=1", "", true},
      {"text/event", "", false},
      {"", R"({"stream":true})", true},
      {"", "{\"stream\" \t:\t TRUE}", true},
      {"", R"({"stream":trueish})", true},
      {"", R"({"stream":false})", false},
      {"", R"({"stream":"true"})", false},
      {"", "{\"stream\"\n:true}", false},
      {"", "{\"stream\":\ntrue}", false},
      {"", R"({"Stream":true})", false},
      {"", R"({"streams":true})", false},
      // The first one decides nothing.
      {"", R"({"stream":false,"x":{"stream":true}})", true},
      {"", R"({"stream_options":{},"stream""stream":true})", true},
      {"", R"({"messages":[{"content":"say \"stream\":true"}]})", false},
      // Bytes, not JSON: a text that holds them whole counts.
      {"", R"("stream":true)", true},
      {"", R"({"stream":tru)", false},
      {"", R"({"stream")", false},
      {"", R"({"stream": )", false},
      {"", std::string("\0\xFF\"stream\":true", 15), true},
  };
  for (const Case& c : cases) {
    ListenerRequest request;
    request.accept = c.accept;
    request.body = c.body;
    EXPECT_EQ(WantsStream(request), c.wants) << c.accept << c.body;
  }
}

TEST(LlmProxyRules, RequestsFindTheirWayInOrder) {
  struct Case {
    const char* method;
    const char* path;
    ProxyRoute route;
  };
  const Case cases[] = {
      {"OPTIONS", "/anything", ProxyRoute::Preflight},
      {"OPTIONS", "/yield", ProxyRoute::Preflight},
      {"OPTIONS", "/v1/chat/completions", ProxyRoute::Preflight},
      {"POST", "/yield", ProxyRoute::Yield},
      {"GET", "/yield/", ProxyRoute::Yield},
      {"POST", "/yield?x", ProxyRoute::Unknown},
      {"POST", "/v1/chat/completions", ProxyRoute::ChatCompletions},
      {"GET", "/v1/chat/completions", ProxyRoute::ChatCompletions},
      {"OTHER", "/base/v1/chat/completions/x?y=1", ProxyRoute::ChatCompletions},
      {"POST", "/?to=/v1/chat/completions", ProxyRoute::ChatCompletions},
      {"POST", "/v1/Chat/completions", ProxyRoute::Unknown},
      {"GET", "/v1/models", ProxyRoute::Unknown},
      {"GET", "", ProxyRoute::Unknown},
  };
  for (const Case& c : cases) {
    ListenerRequest request;
    request.method = c.method;
    request.path = c.path;
    EXPECT_EQ(RouteOf(request), c.route) << c.method << " " << c.path;
  }
}

TEST(LlmProxyRules, ATokenIsItsBytesInOrderInLowercaseDigits) {
  std::array<std::uint8_t, kProxyTokenBytes> bytes{};
  bytes[0] = 0xAB;
  bytes[1] = 0x05;
  bytes[31] = 0xFF;
  EXPECT_EQ(ProxyTokenText(bytes), L"qv_ab05" + std::wstring(58, L'0') + L"ff");
  EXPECT_EQ(ProxyTokenText(bytes).size(), 67u);
}

TEST(LlmProxyRules, FailuresOfTheServiceAreTold) {
  EXPECT_EQ(UpstreamFailureBody("WinHttpOpen failed"),
            R"({"error":{"message":"WinHttpOpen failed","type":"upstream_error"}})");
  EXPECT_EQ(SendReceiveFailure(12029), "upstream send/receive failed (12029)");
  EXPECT_EQ(SendReceiveFailure(4294967295u), "upstream send/receive failed (4294967295)");
  EXPECT_EQ(ForwardedStatus(0), 200);
  EXPECT_EQ(ForwardedStatus(429), 429);
}

}  // namespace
}  // namespace qv
