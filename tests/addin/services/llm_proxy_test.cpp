#include "services/llm_proxy.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "foundation/logging.h"
#include "foundation/loopback_server.h"
#include "foundation/text.h"
#include "http_client.h"
#include "live_upstream.h"

namespace qv {
namespace {

constexpr wchar_t kUserToken[] = L"user-token-1";
constexpr std::string_view kChatPath = "/v1/chat/completions";

/// The pane trace log's text, bytes as they are.
std::string LogBytes() {
  std::ifstream file(ToUtf8(GetPaneTraceLogPath()), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// As it stands in the log, which is UTF-16.
std::string InLog(std::wstring_view text) {
  return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
}

class LlmProxyTest : public testing::Test {
 protected:
  LlmProxyTest() { EXPECT_TRUE(Prepare()); }

  [[nodiscard]] bool Prepare() { return proxy_.PrepareLlmProxy(kUserToken, upstream_.Endpoint()); }
  [[nodiscard]] std::string Key() const {
    return "Authorization: Bearer " + ToUtf8(proxy_.GetProxyToken()) + "\r\n";
  }
  [[nodiscard]] std::string Chat(std::string_view body, std::string_view headers = {}) const {
    return PostText(kChatPath, body, Key() + std::string(headers));
  }
  /// What the log says since the test began.
  [[nodiscard]] std::string Log() const { return LogBytes().substr(logStart_); }
  [[nodiscard]] bool Logged(std::wstring_view text) const {
    return Log().find(InLog(L"[LlmProxy] " + std::wstring(text) + L"\r\n")) != std::string::npos;
  }

  const std::size_t logStart_ = LogBytes().size();
  LiveUpstream upstream_;
  LlmProxy proxy_{ClosedPort()};
  const std::uint16_t port_ = proxy_.Port();
};

constexpr std::string_view kStreamHead =
    "HTTP/1.1 200 Fine\r\nContent-Type: text/event-stream; charset=utf-8\r\n\r\n";

TEST_F(LlmProxyTest, WhatItAnswersItselfIsExact) {
  struct Case {
    const char* name;
    std::string request;
    std::string status;
    std::string body;
  };
  const std::string invalidKey = R"({"error":{"message":"invalid api key","type":"unauthorized"}})";
  const Case cases[] = {
      {"preflight", "OPTIONS /v1/chat/completions HTTP/1.1\r\nHost: h\r\n\r\n", "204 No Content", ""},
      {"yield without permission", PostText("/yield", "{}"), "401 Unauthorized",
       R"({"error":"unauthorized"})"},
      {"models", GetText("/v1/models"), "404 Not Found",
       R"({"error":{"message":"endpoint not found","type":"invalid_request_error"}})"},
      {"no key", PostText(kChatPath, "{}"), "401 Unauthorized", invalidKey},
      {"wrong key", PostText(kChatPath, "{}", "Authorization: Bearer qv_1\r\n"), "401 Unauthorized",
       invalidKey},
      {"the user's own token", PostText(kChatPath, "{}", "Authorization: Bearer user-token-1\r\n"),
       "401 Unauthorized", invalidKey},
  };
  for (const Case& c : cases) {
    const std::string answer = Ask(port_, c.request);
    EXPECT_TRUE(answer.starts_with("HTTP/1.1 " + c.status + "\r\n")) << c.name << answer;
    EXPECT_EQ(BodyOf(answer), c.body) << c.name;
    EXPECT_NE(answer.find("\r\nAccess-Control-Allow-Origin: *\r\n"), std::string::npos) << c.name;
    EXPECT_EQ(answer.find("Content-Type: application/json") != std::string::npos, !c.body.empty()) << c.name;
  }
  EXPECT_TRUE(Logged(L"auth header len=0 providedPrefix=(empty) expectedPrefix=Bearer q"));
  EXPECT_TRUE(Logged(L"auth header len=11 providedPrefix=Bearer q expectedPrefix=Bearer q"));
  EXPECT_TRUE(Logged(L"proxy token mismatch: providedLen=11 expectedLen=67"));
}

TEST_F(LlmProxyTest, WhoIsNotSignedInOrHasNoServiceIsTold) {
  proxy_.SetProxyAccessToken({});
  std::string answer = Ask(port_, Chat("{}"));
  EXPECT_TRUE(answer.starts_with("HTTP/1.1 401 Unauthorized\r\n"));
  EXPECT_EQ(BodyOf(answer),
            R"({"error":{"message":"user not signed in to Quorvantis","type":"unauthorized"}})");
  ASSERT_TRUE(proxy_.PrepareLlmProxy(kUserToken, {L"", 443, true}));
  answer = Ask(port_, Chat("{}"));
  EXPECT_TRUE(answer.starts_with("HTTP/1.1 503 Service Unavailable\r\n"));
  EXPECT_EQ(BodyOf(answer), R"({"error":{"message":"upstream not configured","type":"server_error"}})");
  ASSERT_TRUE(proxy_.PrepareLlmProxy(kUserToken, {L"127.0.0.1", ClosedPort(), false}));
  answer = Ask(port_, Chat("{}"));
  EXPECT_TRUE(answer.starts_with("HTTP/1.1 502 Bad Gateway\r\n"));
  EXPECT_EQ(BodyOf(answer),
            R"x({"error":{"message":"upstream send/receive failed (12029)","type":"upstream_error"}})x");
}

TEST_F(LlmProxyTest, TheKeyIsMadeOnceAndTheUsersTokenMayChangeAnyTime) {
  const std::wstring key = proxy_.GetProxyToken();
  EXPECT_EQ(key.size(), 67u);
  EXPECT_NE(key, L"qv_" + std::wstring(64, L'0'));
  LlmProxy other(ClosedPort());
  EXPECT_EQ(other.GetProxyToken(), L"");
  const std::wstring early = other.EnsureProxyToken();
  EXPECT_FALSE(other.IsRunning());
  ASSERT_TRUE(other.PrepareLlmProxy(kUserToken, upstream_.Endpoint()));
  EXPECT_EQ(other.GetProxyToken(), early);
  EXPECT_NE(early, key);
  EXPECT_TRUE(Prepare());
  EXPECT_EQ(proxy_.GetProxyToken(), key);
  for (const std::string token : {"second", "third"}) {
    proxy_.SetProxyAccessToken(FromUtf8(token));
    HttpClient client(port_);
    client.Send(Chat("{}"));
    EXPECT_NE(upstream_.TakeRequest().find("\r\nAuthorization: Bearer " + token + "\r\n"), std::string::npos);
    upstream_.Say("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}");
    EXPECT_EQ(BodyOf(client.ReadAnswer()), "{}");
  }
}

TEST_F(LlmProxyTest, TheServiceGetsTheBodyByteForByteAndTheUsersTokenForTheKey) {
  std::string big = R"({"model":"any","messages":[)";
  for (std::size_t i = 0; i < 8'000'000; ++i)
    big += static_cast<char>(i * 31 + i / 7919);
  struct Case {
    std::string body;
    std::string headers;
    bool stream;
  };
  const Case cases[] = {
      {"", "", false},
      {std::string("\0{\"a\":\"\xE4\xB8\xAD\xFF\"}", 13), "", false},
      {R"({"stream" : True})", "", true},
      {"{}", "Accept: text/Event-Stream\r\n", true},
      {big, "", false},
  };
  for (const Case& c : cases) {
    HttpClient client(port_);
    ASSERT_TRUE(client.Send(Chat(c.body, "Content-Type: text/plain\r\nX-Own: 1\r\n" + c.headers)));
    const std::string request = upstream_.TakeRequest();
    EXPECT_TRUE(request.starts_with("POST /v1/agents/chat-completions HTTP/1.1\r\n"));
    EXPECT_TRUE(BodyOf(request) == c.body) << c.body.size();
    const std::string head = request.substr(0, request.find("\r\n\r\n") + 2);
    EXPECT_NE(head.find("\r\nContent-Type: application/json\r\n"), std::string::npos) << head;
    EXPECT_NE(head.find("\r\nAuthorization: Bearer user-token-1\r\n"), std::string::npos) << head;
    EXPECT_NE(head.find("\r\nUser-Agent: QuorvantisLlmProxy/1.0\r\n"), std::string::npos) << head;
    EXPECT_EQ(head.find("\r\nAccept: text/event-stream\r\n") != std::string::npos, c.stream) << head;
    EXPECT_EQ(head.find("X-Own"), std::string::npos) << head;
    EXPECT_EQ(head.find("qv_"), std::string::npos) << "the key is nobody else's concern";
    upstream_.Say("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}");
    EXPECT_EQ(BodyOf(client.ReadAnswer()), "{}");
    EXPECT_TRUE(Logged(Concat(L"forward body=", c.body.size(), L" bytes stream=", c.stream,
                              L" upstream=127.0.0.1:", upstream_.Endpoint().port)));
  }
}

TEST_F(LlmProxyTest, AnswersPassWithTheirStatusTypeAndBody) {
  const std::string big(300'000, 'x');
  struct Case {
    std::string head;
    std::string body;
    std::string status;
    std::string contentType;
  };
  const Case cases[] = {
      {"200 Fine\r\nContent-Type: application/json; charset=utf-8\r\n", R"({"id":"1"})", "200",
       "application/json; charset=utf-8"},
      {"400 Bad Request\r\nContent-Type: application/json\r\n", R"({"error":{"message":"m"}})", "400",
       "application/json"},
      {"401 Unauthorized\r\n", "a", "401", "application/json"},
      {"429 Too Many Requests\r\nContent-Type: text/plain\r\n", "slow down", "429", "text/plain"},
      {"500 Oops\r\nContent-Type: text/html\r\n", big, "500", "text/html"},
      {"302 Found\r\nLocation: http://127.0.0.1:1/\r\nContent-Type: text/html\r\n", "moved", "302",
       "text/html"},
      {"200 OK\r\nContent-Type: " + std::string(300, 'x') + "\r\n", "long", "200", "application/json"},
      {"500 Oops\r\nContent-Type: text/plain\r\n", "", "500", "text/plain"},
      {"200 OK\r\n", "", "200", "application/json"},
      {"000 None\r\n", "no status", "200", "application/json"},
  };
  for (const Case& c : cases) {
    HttpClient client(port_);
    // It asks for a stream, and gets what the service gives.
    client.Send(Chat(R"({"stream":true})"));
    static_cast<void>(upstream_.TakeRequest());
    upstream_.Say("HTTP/1.1 " + c.head + "Content-Length: " + std::to_string(c.body.size()) + "\r\n\r\n" +
                  c.body);
    const std::string answer = client.ReadAnswer();
    EXPECT_TRUE(answer.starts_with("HTTP/1.1 " + c.status + " OK\r\nContent-Type: " + c.contentType +
                                   "\r\nAccess-Control-Allow-Origin: *\r\n"))
        << answer.substr(0, 300);
    EXPECT_TRUE(BodyOf(answer) == c.body) << c.status;
    EXPECT_TRUE(Eventually([&] {
      return Logged(
          Concat(L"non-stream forward done bytes=", c.body.size(), L" status=", FromUtf8(c.status)));
    }));
  }
}

TEST_F(LlmProxyTest, AnAnswerThatBreaksOffIsNoAnswer) {
  const char* const halves[] = {
      "",
      "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc",
      "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 10\r\n\r\n",
  };
  for (const char* const half : halves) {
    HttpClient client(port_);
    client.Send(Chat("{}"));
    static_cast<void>(upstream_.TakeRequest());
    upstream_.Say(half);
    upstream_.End();
    const std::string answer = client.ReadAnswer();
    EXPECT_TRUE(answer.starts_with("HTTP/1.1 502 Bad Gateway\r\n")) << half;
    EXPECT_TRUE(BodyOf(answer).starts_with(R"x({"error":{"message":"upstream send/receive failed (12)x"))
        << BodyOf(answer);
  }
}

TEST_F(LlmProxyTest, AStreamIsHandedOnPieceByPieceAsItComes) {
  HttpClient client(port_);
  // It does not ask for a stream, and gets what the service gives.
  client.Send(Chat("{}"));
  static_cast<void>(upstream_.TakeRequest());
  upstream_.Say(kStreamHead);
  const std::string head = client.ReadUntil("\r\n\r\n");
  EXPECT_TRUE(
      head.starts_with("HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nCache-Control: no-cache\r\n"
                       "Access-Control-Allow-Origin: *\r\n"))
      << head;
  // Each must be there before the next is said; half an event is as good as a whole one.
  for (const std::string piece : {"data: 1\n\n", "da", "ta: \xE4\xB8", "\xAD\n\n"}) {
    upstream_.Say(piece);
    EXPECT_EQ(client.ReadUntil(piece), piece);
  }
  std::string big(100'000, 'y');
  big += "end";
  upstream_.Say(big);
  EXPECT_TRUE(client.ReadUntil("end") == big);
  upstream_.End();
  EXPECT_EQ(client.ReadToEnd(), "");
  EXPECT_TRUE(Eventually([&] { return Logged(L"stream forward done"); }));
}

TEST_F(LlmProxyTest, AStreamKeepsItsStatusAndEndsWithItsService) {
  HttpClient client(port_);
  client.Send(Chat("{}"));
  static_cast<void>(upstream_.TakeRequest());
  upstream_.Say("HTTP/1.1 429 No\r\nContent-Type: TEXT/Event-Stream\r\n\r\ndata: 1\n\n");
  EXPECT_TRUE(client.ReadUntil("\n\n").starts_with("HTTP/1.1 429 OK\r\n"));
  upstream_.Cut();
  EXPECT_EQ(client.ReadToEnd(), "");
}

TEST_F(LlmProxyTest, AClientThatLeavesEndsTheRelay) {
  HttpClient leaving(port_);
  leaving.Send(Chat("{}"));
  static_cast<void>(upstream_.TakeRequest());
  upstream_.Say(kStreamHead);
  static_cast<void>(leaving.ReadUntil("\r\n\r\n"));
  leaving.Cut();
  EXPECT_TRUE(Eventually([&] { return !upstream_.Say("data: x\n\n"); })) << "the service is let go";
  EXPECT_EQ(Ask(port_, GetText("/")).substr(0, 12), "HTTP/1.1 404") << "and the proxy serves on";
}

TEST_F(LlmProxyTest, AStopNeedNotWaitForASilentService) {
  for (const std::string_view said : {std::string_view(), kStreamHead}) {
    ASSERT_TRUE(Prepare());
    HttpClient client(port_);
    client.Send(Chat(R"({"stream":true})"));
    static_cast<void>(upstream_.TakeRequest());
    upstream_.Say(said);
    if (!said.empty()) static_cast<void>(client.ReadUntil("\r\n\r\n"));
    const ULONGLONG begin = GetTickCount64();
    proxy_.Stop();
    // Far less than the ten minutes that a service may think.
    EXPECT_LT(GetTickCount64() - begin, 5'000u);
    EXPECT_FALSE(proxy_.IsRunning());
    EXPECT_FALSE(IsPortTaken(port_));
  }
}

TEST_F(LlmProxyTest, ANewerProxyTakesThePortAndTheOlderKeyOpensNothingThere) {
  LlmProxy newer(port_);
  ASSERT_TRUE(newer.PrepareLlmProxy(kUserToken, upstream_.Endpoint()));
  EXPECT_TRUE(Eventually([&] { return !proxy_.IsRunning(); }));
  EXPECT_EQ(BodyOf(Ask(port_, Chat("{}"))),
            R"({"error":{"message":"invalid api key","type":"unauthorized"}})");
}

TEST_F(LlmProxyTest, AStreamOfAnOlderProxyOfTheProcessDoesNotHoldUpTheNewer) {
  HttpClient client(port_);
  client.Send(Chat("{}"));
  static_cast<void>(upstream_.TakeRequest());
  upstream_.Say(kStreamHead);
  static_cast<void>(client.ReadUntil("\r\n\r\n"));
  LlmProxy newer(port_);
  const ULONGLONG begin = GetTickCount64();
  EXPECT_TRUE(newer.PrepareLlmProxy(kUserToken, upstream_.Endpoint()));
  // The stop's grace, and less than it takes to ask somebody who is busy to yield.
  EXPECT_LT(GetTickCount64() - begin, 3'000u);
  EXPECT_FALSE(proxy_.IsRunning());
  // And back, so that neither remembers one that is gone.
  EXPECT_TRUE(Prepare());
  EXPECT_FALSE(newer.IsRunning());
}

TEST_F(LlmProxyTest, TheLogHoldsNeitherTheKeyNorTheUsersToken) {
  HttpClient client(port_);
  client.Send(Chat("{}"));
  static_cast<void>(upstream_.TakeRequest());
  upstream_.Say("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}");
  static_cast<void>(client.ReadAnswer());
  static_cast<void>(
      Ask(port_, PostText(kChatPath, "{}", "Authorization: " + ToUtf8(proxy_.GetProxyToken()) + "\r\n")));
  const std::wstring key = proxy_.GetProxyToken();
  const std::string log = Log();
  EXPECT_NE(log.find(InLog(L"LLM Proxy token generated prefix=" + key.substr(0, 8) + L"\r\n")),
            std::string::npos);
  EXPECT_TRUE(Logged(L"started on 127.0.0.1:" + std::to_wstring(port_)));
  EXPECT_EQ(log.find(InLog(key.substr(8))), std::string::npos);
  EXPECT_EQ(log.find(InLog(key.substr(0, 9))), std::string::npos);
  EXPECT_EQ(log.find(InLog(kUserToken)), std::string::npos);
}

}  // namespace
}  // namespace qv
