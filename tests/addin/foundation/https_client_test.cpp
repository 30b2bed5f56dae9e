#include "foundation/https_client.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "loopback_server.h"

namespace qv {
namespace {

HttpRequest RequestTo(const ServiceEndpoint& endpoint) {
  HttpRequest request;
  request.endpoint = endpoint;
  request.path = L"/v1/translate?x=1";
  request.headers = L"Content-Type: application/json\r\nAuthorization: Bearer t0\r\n";
  request.body = "{\"texts\":[\"\xE4\xB8\xAD\"]}";
  return request;
}

TEST(HttpsClient, SendsThePathHeadersAndBodyAsGiven) {
  LoopbackServer server({"HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}"});
  const HttpResponse response = SendHttp(RequestTo(server.Endpoint()));
  EXPECT_TRUE(response.ok) << response.error;
  EXPECT_EQ(response.status, 200);
  EXPECT_EQ(response.body, "{}");
  const auto requests = server.WaitForRequests(1);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_TRUE(requests[0].starts_with("POST /v1/translate?x=1 HTTP/1.1\r\n")) << requests[0];
  for (const char* part : {"\r\nUser-Agent: Quorvantis/1.0\r\n", "\r\nContent-Type: application/json\r\n",
                           "\r\nAuthorization: Bearer t0\r\n"}) {
    EXPECT_NE(requests[0].find(part), std::string::npos) << part << requests[0];
  }
  EXPECT_TRUE(requests[0].ends_with("\r\n\r\n{\"texts\":[\"\xE4\xB8\xAD\"]}")) << requests[0];
}

TEST(HttpsClient, TellsWholeAnswersFromBrokenOnes) {
  struct Case {
    const char* name;
    std::string reply;
    bool ok;
    int status;
    std::string body;
  };
  const std::string big(300'000, 'x');
  const Case cases[] = {
      {"an error status is an answer", "HTTP/1.1 402 No\r\nContent-Length: 3\r\n\r\nabc", true, 402, "abc"},
      {"a 401 is not retried", "HTTP/1.1 401 No\r\nContent-Length: 0\r\n\r\n", true, 401, ""},
      {"no announced length", "HTTP/1.1 200 OK\r\n\r\nabc", true, 200, "abc"},
      {"a large body", "HTTP/1.1 200 OK\r\nContent-Length: 300000\r\n\r\n" + big, true, 200, big},
      {"pieces", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n",
       true, 200, "abcde"},
      {"a redirection is not followed",
       "HTTP/1.1 307 Go\r\nLocation: http://127.0.0.1:1/x\r\nContent-Length: 0\r\n\r\n", true, 307, ""},
      {"shorter than announced", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc", false, 200, ""},
      {"nothing of what was announced", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n", false, 200, ""},
      {"no answer at all", "", false, 0, ""},
      {"no HTTP", "hello\r\n\r\n", false, 0, ""},
  };
  for (const Case& c : cases) {
    LoopbackServer server({c.reply});
    const HttpResponse response = SendHttp(RequestTo(server.Endpoint()));
    EXPECT_EQ(response.ok, c.ok) << c.name;
    EXPECT_EQ(response.status, c.status) << c.name;
    EXPECT_EQ(response.body, c.body) << c.name;
    EXPECT_EQ(response.error, c.ok ? L"" : L"HTTP request failed") << c.name;
    EXPECT_EQ(response.systemError == 0, c.ok) << c.name;
  }
}

TEST(HttpsClient, ASecureRequestSendsNothingInTheClear) {
  LoopbackServer server({""});
  ServiceEndpoint endpoint = server.Endpoint();
  endpoint.secure = true;
  const HttpResponse response = SendHttp(RequestTo(endpoint));
  EXPECT_FALSE(response.ok);
  EXPECT_EQ(response.error, L"HTTP request failed");
  const auto requests = server.WaitForRequests(1);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0].find("Bearer"), std::string::npos);
  EXPECT_EQ(requests[0].find("/v1/translate"), std::string::npos);
}

TEST(HttpsClient, EveryRequestHasItsOwnConnection) {
  // Neither answer says "close", yet the server closes: a kept connection would fail the second request.
  const std::string reply = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}";
  LoopbackServer server({reply, reply, reply});
  for (int i = 0; i < 3; ++i)
    EXPECT_TRUE(SendHttp(RequestTo(server.Endpoint())).ok) << i;
  const auto requests = server.WaitForRequests(3);
  EXPECT_EQ(requests.size(), 3u);
  for (const std::string& request : requests)
    EXPECT_EQ(request.find("Keep-Alive"), std::string::npos) << request;
}

TEST(HttpsClient, ASinkReceivesTheBodyAndMayEndIt) {
  const std::string reply = "HTTP/1.1 201 OK\r\nContent-Length: 5\r\n\r\nabcde";
  LoopbackServer server({reply, reply});
  std::string received;
  const HttpResponse whole = SendHttp(RequestTo(server.Endpoint()), [&](int status, std::string_view piece) {
    EXPECT_EQ(status, 201);
    received += piece;
    return true;
  });
  EXPECT_TRUE(whole.ok);
  EXPECT_EQ(received, "abcde");
  EXPECT_EQ(whole.body, "");
  const HttpResponse ended =
      SendHttp(RequestTo(server.Endpoint()), [](int, std::string_view) { return false; });
  EXPECT_FALSE(ended.ok);
  EXPECT_EQ(ended.error, L"HTTP request failed");
  EXPECT_EQ(ended.systemError, 1223u) << "ERROR_CANCELLED";
}

TEST(HttpsClient, TheHeadIsToldAheadOfTheBodyWhichComesInSmallPieces) {
  const std::string reply =
      "HTTP/1.1 429 No\r\nContent-Type: text/event-stream\r\nContent-Length: 100000\r\n\r\n" +
      std::string(100'000, 'x');
  LoopbackServer server({reply, reply});
  std::vector<std::size_t> pieces;
  std::size_t total = 0;
  const HttpByteSink take = [&](int, std::string_view piece) {
    pieces.push_back(piece.size());
    total += piece.size();
    return true;
  };
  std::wstring seen;
  const HttpResponse whole = SendHttp(RequestTo(server.Endpoint()), take, [&](const HttpResponse& head) {
    EXPECT_TRUE(pieces.empty());
    seen = std::to_wstring(head.status) + head.contentType;
    return true;
  });
  EXPECT_TRUE(whole.ok);
  EXPECT_EQ(whole.systemError, 0u);
  EXPECT_EQ(seen, L"429text/event-stream");
  EXPECT_EQ(total, 100'000u);
  EXPECT_LE(*std::ranges::max_element(pieces), 16'384u);
  const HttpResponse ended =
      SendHttp(RequestTo(server.Endpoint()), take, [](const HttpResponse&) { return false; });
  EXPECT_FALSE(ended.ok);
  EXPECT_EQ(total, 100'000u) << "nothing of a refused answer";
}

TEST(HttpsClient, FailuresBeforeAnAnswerHaveNoStatus) {
  const HttpResponse refused = SendHttp(RequestTo({L"127.0.0.1", ClosedPort(), false}));
  EXPECT_FALSE(refused.ok);
  EXPECT_EQ(refused.status, 0);
  EXPECT_EQ(refused.error, L"HTTP request failed");
  EXPECT_EQ(refused.systemError, 12029u) << "ERROR_WINHTTP_CANNOT_CONNECT";
}

}  // namespace
}  // namespace qv
