#include "services/http_api.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <thread>
#include <vector>

#include "foundation/loopback_server.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "http_client.h"

namespace qv {
namespace {

/// A queue on a free port, used through the API as it is.
class HttpApiTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(HttpApi::Get(), nullptr);
    ASSERT_EQ(api_.initialize(HTTPAPI_VERSION_1, HTTP_INITIALIZE_SERVER, nullptr), NO_ERROR);
    ASSERT_EQ(api_.createQueue(queue_.Put(), 0), NO_ERROR);
    ASSERT_EQ(api_.addUrl(queue_.Get(), url_.c_str(), nullptr), NO_ERROR);
  }
  void TearDown() override {
    queue_.Reset();
    api_.terminate(HTTP_INITIALIZE_SERVER, nullptr);
  }

  ULONG Receive(HTTP_REQUEST_ID id, ULONG size) {
    buffer_.assign(16 * 1024, 0);
    return api_.receiveRequest(queue_.Get(), id, 0, Request(), size, &received_, nullptr);
  }
  HTTP_REQUEST* Request() { return reinterpret_cast<HTTP_REQUEST*>(buffer_.data()); }
  ULONG Answer(HTTP_REQUEST_ID id, ULONG flags = 0) {
    HTTP_RESPONSE response{};
    response.StatusCode = 200;
    response.pReason = "OK";
    response.ReasonLength = 2;
    return api_.sendResponse(queue_.Get(), id, flags, &response, nullptr, nullptr, nullptr, 0, nullptr,
                             nullptr);
  }
  ULONG AddUrlElsewhere(std::uint16_t port) {
    UniqueKernelHandle other;
    EXPECT_EQ(api_.createQueue(other.Put(), 0), NO_ERROR);
    return api_.addUrl(other.Get(), Concat(L"http://127.0.0.1:", port, L"/").c_str(), nullptr);
  }

  const HttpApi& api_ = *HttpApi::Get();
  const std::uint16_t port_ = ClosedPort();
  const std::wstring url_ = Concat(L"http://127.0.0.1:", port_, L"/");
  UniqueKernelHandle queue_;
  std::vector<std::uint64_t> buffer_;
  ULONG received_ = 0;
};

TEST_F(HttpApiTest, AUrlHasOneOwner) {
  EXPECT_EQ(AddUrlElsewhere(port_), static_cast<ULONG>(ERROR_ALREADY_EXISTS));
  const LoopbackServer foreign({});
  EXPECT_EQ(AddUrlElsewhere(foreign.Endpoint().port), static_cast<ULONG>(ERROR_SHARING_VIOLATION));
  EXPECT_EQ(api_.addUrl(queue_.Get(), L"http://127.0.0.1/", nullptr),
            static_cast<ULONG>(ERROR_INVALID_PARAMETER));
  EXPECT_EQ(api_.removeUrl(queue_.Get(), url_.c_str()), NO_ERROR);
  EXPECT_EQ(api_.removeUrl(queue_.Get(), url_.c_str()), static_cast<ULONG>(ERROR_FILE_NOT_FOUND));
  EXPECT_EQ(AddUrlElsewhere(port_), NO_ERROR);
}

TEST_F(HttpApiTest, ClosingTheHandleGivesEverythingBack) {
  HttpClient client(port_);
  client.Send(GetText("/"));
  ASSERT_EQ(Receive(HTTP_NULL_ID, 16 * 1024), NO_ERROR);
  const HANDLE closed = queue_.Get();
  queue_.Reset();
  EXPECT_TRUE(Eventually([&] { return AddUrlElsewhere(port_) == NO_ERROR; }));
  EXPECT_EQ(client.ReadToEnd(), "");
  EXPECT_TRUE(Eventually([&] { return api_.shutdownQueue(closed) == ERROR_INVALID_HANDLE; }));
}

TEST_F(HttpApiTest, ARequestIsLaidOutInTheBuffer) {
  HttpClient client(port_);
  client.Send(
      "BREW /a%20b?c=%20 HTTP/1.1\r\nHost: h:1\r\nAccept: text/x\r\nX-A: 1\r\nX-B: \r\nContent-Length: "
      "3\r\n\r\nabc");
  ASSERT_EQ(Receive(HTTP_NULL_ID, 16 * 1024), NO_ERROR);
  const HTTP_REQUEST& request = *Request();
  EXPECT_EQ(request.Verb, HttpVerbUnknown);
  EXPECT_STREQ(request.pUnknownVerb, "BREW");
  EXPECT_EQ(request.UnknownVerbLength, 4);
  EXPECT_STREQ(request.pRawUrl, "/a%20b?c=%20");
  EXPECT_EQ(request.RawUrlLength, 12);
  EXPECT_EQ(ToUtf8(request.CookedUrl.pFullUrl), "http://h:1/a b?c=%20");
  EXPECT_EQ(ToUtf8({request.CookedUrl.pAbsPath, request.CookedUrl.AbsPathLength / sizeof(wchar_t)}), "/a b");
  EXPECT_EQ(ToUtf8(request.CookedUrl.pQueryString), "?c=%20");
  EXPECT_EQ(ToUtf8({request.CookedUrl.pHost, request.CookedUrl.HostLength / sizeof(wchar_t)}), "h:1");
  EXPECT_STREQ(request.Headers.KnownHeaders[HttpHeaderAccept].pRawValue, "text/x");
  ASSERT_EQ(request.Headers.UnknownHeaderCount, 2);
  EXPECT_STREQ(request.Headers.pUnknownHeaders[0].pName, "X-A");
  EXPECT_EQ(request.Headers.pUnknownHeaders[1].RawValueLength, 0);
  EXPECT_EQ(request.Version.MinorVersion, 1);
  EXPECT_EQ(request.Flags, static_cast<ULONG>(HTTP_REQUEST_FLAG_MORE_ENTITY_BODY_EXISTS));
  EXPECT_EQ(request.EntityChunkCount, 0);

  std::array<char, 2> piece;
  const HTTP_REQUEST_ID id = request.RequestId;
  const auto read = [&] {
    return api_.receiveBody(queue_.Get(), id, 0, piece.data(), 2, &received_, nullptr);
  };
  EXPECT_EQ(read(), NO_ERROR);
  EXPECT_EQ(received_, 2u);
  EXPECT_EQ(read(), NO_ERROR);
  EXPECT_EQ(std::string(piece.data(), received_), "c");
  EXPECT_EQ(read(), static_cast<ULONG>(ERROR_HANDLE_EOF));
  EXPECT_EQ(Answer(id), NO_ERROR);
  EXPECT_EQ(Answer(id), static_cast<ULONG>(ERROR_CONNECTION_INVALID)) << "answered once";
  EXPECT_TRUE(client.ReadAnswer().starts_with("HTTP/1.1 200 OK\r\n"));
}

TEST_F(HttpApiTest, ARequestTooLargeForTheBufferCanBeAskedForAgain) {
  HttpClient client(port_);
  client.Send("GET / HTTP/1.1\r\nHost: h\r\nA: " + std::string(3000, 'a') + "\r\n\r\n");
  EXPECT_EQ(Receive(HTTP_NULL_ID, sizeof(HTTP_REQUEST) - 1), static_cast<ULONG>(ERROR_INSUFFICIENT_BUFFER));
  ASSERT_EQ(Receive(HTTP_NULL_ID, 3000), static_cast<ULONG>(ERROR_MORE_DATA));
  const HTTP_REQUEST_ID id = Request()->RequestId;
  const ULONG needed = received_;
  EXPECT_EQ(Receive(id, needed - 1), static_cast<ULONG>(ERROR_MORE_DATA));
  ASSERT_EQ(Receive(id, needed), NO_ERROR);
  EXPECT_EQ(Request()->Headers.pUnknownHeaders[0].RawValueLength, 3000);
  EXPECT_EQ(Receive(id + 1, needed), static_cast<ULONG>(ERROR_CONNECTION_INVALID));
}

TEST_F(HttpApiTest, AShutdownWakesWhoReceivesAndAnswers503) {
  ULONG result = NO_ERROR;
  std::thread receiver([&] { result = Receive(HTTP_NULL_ID, 16 * 1024); });
  EXPECT_EQ(api_.shutdownQueue(queue_.Get()), NO_ERROR);
  receiver.join();
  EXPECT_EQ(result, static_cast<ULONG>(ERROR_OPERATION_ABORTED));
  EXPECT_TRUE(Ask(port_, GetText("/")).starts_with("HTTP/1.1 503 Service Unavailable\r\n"));
}

TEST_F(HttpApiTest, AShutdownCutsWhatIsReceivedUnlessItsAnswerHasBegun) {
  HttpClient unanswered(port_);
  unanswered.Send(GetText("/unanswered"));
  ASSERT_EQ(Receive(HTTP_NULL_ID, 16 * 1024), NO_ERROR);
  const HTTP_REQUEST_ID cut = Request()->RequestId;
  HttpClient answered(port_);
  answered.Send(GetText("/answered"));
  ASSERT_EQ(Receive(HTTP_NULL_ID, 16 * 1024), NO_ERROR);
  const HTTP_REQUEST_ID begun = Request()->RequestId;
  EXPECT_EQ(Answer(begun, HTTP_SEND_RESPONSE_FLAG_MORE_DATA), NO_ERROR);

  EXPECT_EQ(api_.shutdownQueue(queue_.Get()), NO_ERROR);
  EXPECT_EQ(unanswered.ReadToEnd(), "");
  EXPECT_EQ(Answer(cut), static_cast<ULONG>(ERROR_CONNECTION_INVALID));
  EXPECT_EQ(api_.sendBody(queue_.Get(), begun, 0, 0, nullptr, nullptr, nullptr, 0, nullptr, nullptr),
            NO_ERROR);
  EXPECT_TRUE(answered.ReadToEnd().starts_with("HTTP/1.1 200 OK\r\n"));
}

TEST_F(HttpApiTest, ClientsThatComeWhileTheQueueClosesAreSentAwayToo) {
  std::vector<std::unique_ptr<HttpClient>> clients;
  const auto connect = [&] {
    clients.push_back(std::make_unique<HttpClient>(port_));
    return clients.back()->IsConnected();
  };
  // Cutting these takes the queue a while.
  while (clients.size() < 200 && connect()) {
  }
  queue_.Reset();
  while (clients.size() < 1000 && connect()) {
  }
  EXPECT_LT(clients.size(), 1000u) << "no crowd at the door keeps it from closing";
  for (const auto& client : clients)
    ASSERT_EQ(client->ReadToEnd().find("(still open)"), std::string::npos);
}

TEST_F(HttpApiTest, WhoSendsABodyThatNobodyAskedForMayFinishItAndReadTheAnswer) {
  HttpClient client(port_);
  client.Send("PUT / HTTP/1.1\r\nHost: h\r\nExpect: 100-continue\r\nContent-Length: 3000000\r\n\r\n");
  ASSERT_EQ(Receive(HTTP_NULL_ID, 16 * 1024), NO_ERROR);
  EXPECT_EQ(Answer(Request()->RequestId), NO_ERROR);
  EXPECT_TRUE(client.Send(std::string(3'000'000, 'x')));
  const std::string answer = client.ReadToEnd();
  EXPECT_TRUE(answer.starts_with("HTTP/1.1 200 OK\r\n") && answer.ends_with("\r\n\r\n")) << answer;
}

TEST_F(HttpApiTest, AnEndlessBodyThatNobodyReadsIsCutOff) {
  const EnvironmentScope impatient(L"QV_DEVHOST_HTTP_WAIT_MS", L"300");
  ASSERT_EQ(api_.removeUrl(queue_.Get(), url_.c_str()), NO_ERROR);
  ASSERT_EQ(api_.addUrl(queue_.Get(), url_.c_str(), nullptr), NO_ERROR);
  const std::string piece(16 * 1024, 'x');
  for (const char* connection : {"close", "keep-alive"}) {
    HttpClient client(port_);
    client.Send(std::string("PUT / HTTP/1.1\r\nHost: h\r\nConnection: ") + connection +
                "\r\nContent-Length: 1000000000000\r\n\r\n");
    ASSERT_EQ(Receive(HTTP_NULL_ID, 16 * 1024), NO_ERROR);
    EXPECT_EQ(Answer(Request()->RequestId), NO_ERROR);
    EXPECT_TRUE(client.ReadAnswer().starts_with("HTTP/1.1 200 OK\r\n"));
    EXPECT_TRUE(Eventually([&] { return !client.Send(piece); })) << connection;
  }
}

TEST_F(HttpApiTest, ARequestWhoseClientHasGoneIsNotReceived) {
  HttpClient gone(port_);
  gone.Send(GetText("/gone"));
  HttpClient here(port_);
  // Received once so that both are known to be queued, the first one in front.
  ASSERT_EQ(Receive(HTTP_NULL_ID, 16 * 1024), NO_ERROR);
  gone.Send(GetText("/gone-too"));
  EXPECT_EQ(Answer(Request()->RequestId), NO_ERROR);
  static_cast<void>(gone.ReadAnswer());
  gone.Cut();
  here.Send(GetText("/here"));
  ASSERT_EQ(Receive(HTTP_NULL_ID, 16 * 1024), NO_ERROR);
  EXPECT_STREQ(Request()->pRawUrl, "/here");
}

TEST_F(HttpApiTest, AThousandRequestsWaitAndOneMoreIsTurnedAway) {
  std::vector<std::unique_ptr<HttpClient>> clients;
  for (int i = 0; i < 1001; ++i) {
    clients.push_back(std::make_unique<HttpClient>(port_));
    ASSERT_TRUE(clients.back()->Send(GetText("/")));
  }
  const auto turnedAway = [&] {
    return std::find_if(clients.begin(), clients.end(), [](const auto& client) { return client->HasNews(); });
  };
  ASSERT_TRUE(Eventually([&] { return turnedAway() != clients.end(); }));
  EXPECT_EQ((*turnedAway())->ReadUntil("\r\n"), "HTTP/1.1 503 Service Unavailable\r\n");
  clients.erase(turnedAway());
  EXPECT_EQ(turnedAway(), clients.end());
}

}  // namespace
}  // namespace qv
