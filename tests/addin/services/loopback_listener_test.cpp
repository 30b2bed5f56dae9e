#include "services/loopback_listener.h"

#include <gtest/gtest.h>

#include <objbase.h>
#include <tlhelp32.h>

#include <stdexcept>

#include "echo_service.h"
#include "http_client.h"

namespace qv {
namespace {

TEST(LoopbackListener, RequestsArriveWithTheFieldsThatServicesNeed) {
  struct Case {
    std::string head;
    std::string body;
    const char* method;
    const char* path;
    const char* authorization;
    bool yield;
    std::string seenBody;
  };
  const Case cases[] = {
      {"POST /mcp?a=%20b HTTP/1.1\r\nAuthorization: Bearer  x\r\n", "{}", "POST", "/mcp?a=%20b", "Bearer  x",
       false, "{}"},
      {"GET / HTTP/1.1\r\nX-QUORVANTIS-YIELD: 1\r\n", "", "GET", "/", "", true, ""},
      {"GET / HTTP/1.1\r\nX-Quorvantis-Yield: 0\r\nX-Quorvantis-Yield-2: 1\r\n", "", "GET", "/", "", false,
       ""},
      {"OPTIONS /x HTTP/1.1\r\n", "", "OPTIONS", "/x", "", false, ""},
      {"PATCH /x HTTP/1.1\r\n", "patched", "PATCH", "/x", "", false, "patched"},
      {"BREW /x HTTP/1.1\r\n", "coffee", "BREW", "/x", "", false, ""},
      {"PUT /x HTTP/1.1\r\n", "unread", "OTHER", "/x", "", false, ""},
      {"DELETE /x HTTP/1.1\r\n", "", "OTHER", "/x", "", false, ""},
  };
  EchoService echo;
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  // One connection for all: what a handler leaves unread must not become the next request.
  HttpClient client(listener.Port());
  std::size_t count = 0;
  for (const Case& c : cases) {
    client.Send(c.head + "Host: h\r\nAccept: text/a\r\nContent-Type: text/b\r\nContent-Length: " +
                std::to_string(c.body.size()) + "\r\n\r\n" + c.body);
    ASSERT_TRUE(client.ReadAnswer().starts_with("HTTP/1.1 200 OK\r\n")) << c.head;
    const auto requests = echo.Requests();
    ASSERT_EQ(requests.size(), ++count);
    const ListenerRequest& seen = requests.back();
    EXPECT_EQ(seen.method, c.method);
    EXPECT_EQ(seen.path, c.path) << c.head;
    EXPECT_EQ(seen.authorization, c.authorization) << c.head;
    EXPECT_EQ(seen.accept, "text/a");
    EXPECT_EQ(seen.contentType, "text/b");
    EXPECT_EQ(seen.yield, c.yield) << c.head;
    EXPECT_EQ(seen.body, c.seenBody) << c.head;
  }
}

TEST(LoopbackListener, AnswersHaveTheirHeadersAndNoOthers) {
  struct Case {
    ListenerStatus status;
    std::string body;
    /// Null for an answer of the service's own.
    const char* contentType;
    std::string start;
    std::string end;
  };
  const Case cases[] = {
      {{200, "OK"},
       "{}",
       nullptr,
       "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nAccess-Control-Allow-Origin: *\r\nServer: ",
       "Content-Length: 2\r\n\r\n{}"},
      {{502, "Bad Gateway"},
       "x",
       "text/plain; q=1",
       "HTTP/1.1 502 Bad Gateway\r\nContent-Type: text/plain; q=1\r\nAccess-Control-Allow-Origin: "
       "*\r\nServer: ",
       "Content-Length: 1\r\n\r\nx"},
      {{204, "No Content"},
       "",
       nullptr,
       "HTTP/1.1 204 No Content\r\nAccess-Control-Allow-Origin: *\r\nServer: ",
       " GMT\r\n\r\n"},
      {{500, "OK"},
       "",
       "text/html",
       "HTTP/1.1 500 OK\r\nContent-Type: text/html\r\nAccess-Control-Allow-Origin: *\r\nServer: ",
       "Content-Length: 0\r\n\r\n"},
  };
  for (const Case& c : cases) {
    EchoService echo;
    echo.service.handle = [&c](const ListenerRequest&, ListenerResponder& responder) {
      if (c.contentType == nullptr) return responder.Send(c.status, c.body);
      responder.Send(c.status, c.body, c.contentType);
    };
    LoopbackListener listener(echo.service);
    ASSERT_TRUE(listener.Start());
    const std::string answer = Ask(listener.Port(), GetText("/"));
    EXPECT_TRUE(answer.starts_with(c.start)) << answer;
    EXPECT_TRUE(answer.ends_with(c.end)) << answer;
  }
}

TEST(LoopbackListener, ABodyOfAnySizeArrivesWhole) {
  EchoService echo;
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  std::string big(5'000'000, '\0');
  for (std::size_t i = 0; i < big.size(); ++i)
    big[i] = static_cast<char>(i * 31 + i / 7919);
  for (const std::size_t size : {0u, 1u, 65'535u, 65'536u, 65'537u, 5'000'000u}) {
    const std::string body = big.substr(0, size);
    const std::string answer = Ask(listener.Port(), PostText("/p", body));
    EXPECT_TRUE(BodyOf(answer) == (size == 0 ? "/p" : body)) << size;
  }
  std::string chunks;
  for (std::size_t at = 0; at < 200'000; at += 50'000)
    chunks += "C350\r\n" + big.substr(at, 50'000) + "\r\n";
  const std::string answer =
      Ask(listener.Port(),
          "POST / HTTP/1.1\r\nHost: h\r\nTransfer-Encoding: chunked\r\n\r\n" + chunks + "0\r\n\r\n");
  EXPECT_TRUE(BodyOf(answer) == big.substr(0, 200'000));
}

TEST(LoopbackListener, PipelinedRequestsAreAnsweredInOrder) {
  EchoService echo;
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  HttpClient client(listener.Port());
  client.Send(PostText("/1", "one") + GetText("/2") + PostText("/3", "three"));
  EXPECT_EQ(BodyOf(client.ReadAnswer()), "one");
  EXPECT_EQ(BodyOf(client.ReadAnswer()), "/2");
  EXPECT_EQ(BodyOf(client.ReadAnswer()), "three");
}

TEST(LoopbackListener, AClientIsAskedForItsBodyBeforeItSendsIt) {
  EchoService echo;
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  HttpClient client(listener.Port());
  client.Send("POST / HTTP/1.1\r\nHost: h\r\nExpect: 100-continue\r\nContent-Length: 2\r\n\r\n");
  EXPECT_EQ(client.ReadUntil("\r\n\r\n"), "HTTP/1.1 100 Continue\r\n\r\n");
  client.Send("{}");
  EXPECT_EQ(BodyOf(client.ReadAnswer()), "{}");
  // Nobody reads the body of a PUT, so nobody asks for it, and the connection ends.
  client.Send("PUT / HTTP/1.1\r\nHost: h\r\nExpect: 100-continue\r\nContent-Length: 2\r\n\r\n");
  const std::string answer = client.ReadToEnd();
  EXPECT_TRUE(answer.starts_with("HTTP/1.1 200 OK\r\n") && answer.ends_with("\r\n\r\n/")) << answer;
}

TEST(LoopbackListener, AStreamArrivesPieceByPiece) {
  EchoService echo;
  const UniqueKernelHandle firstRead(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  echo.service.handle = [&](const ListenerRequest&, ListenerResponder& responder) {
    EXPECT_EQ(responder.StartStream({200, "OK"}, "text/event-stream"), NO_ERROR);
    EXPECT_EQ(responder.SendPiece("data: 1\n\n"), NO_ERROR);
    EXPECT_EQ(WaitForSingleObject(firstRead.Get(), 10'000), WAIT_OBJECT_0);
    EXPECT_EQ(responder.SendPiece("data: 2\n\n"), NO_ERROR);
    responder.EndStream();
  };
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  HttpClient client(listener.Port());
  client.Send(GetText("/"));
  const std::string head = client.ReadUntil("\r\n\r\n");
  EXPECT_TRUE(
      head.starts_with("HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nCache-Control: no-cache\r\n"
                       "Access-Control-Allow-Origin: *\r\n"))
      << head;
  EXPECT_EQ(client.ReadUntil("\n\n"), "data: 1\n\n");
  SetEvent(firstRead.Get());
  EXPECT_EQ(client.ReadToEnd(), "data: 2\n\n");
}

TEST(LoopbackListener, AYieldEndsTheServiceAndWithoutTheHeaderNothingDoes) {
  EchoService echo;
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  const std::string refused = Ask(listener.Port(), PostText("/yield", "{}"));
  EXPECT_TRUE(refused.starts_with("HTTP/1.1 401 Unauthorized\r\n")) << refused;
  EXPECT_EQ(BodyOf(refused), "{\"error\":\"unauthorized\"}");
  EXPECT_EQ(BodyOf(Ask(listener.Port(), PostText("/yield?now", "{}", "X-Quorvantis-Yield: 1\r\n"))), "{}");
  EXPECT_TRUE(listener.IsRunning());

  const std::string granted = Ask(listener.Port(), PostText("/yield/", "{}", "X-Quorvantis-Yield: 1\r\n"));
  EXPECT_TRUE(granted.starts_with("HTTP/1.1 200 OK\r\n")) << granted;
  EXPECT_EQ(BodyOf(granted), "{\"ok\":true}");
  EXPECT_TRUE(Eventually([&] { return !listener.IsRunning(); }));
  EXPECT_FALSE(IsPortTaken(listener.Port()));

  ASSERT_TRUE(listener.Start()) << "it can start again";
  EXPECT_EQ(BodyOf(Ask(listener.Port(), GetText("/again"))), "/again");
}

TEST(LoopbackListener, AHeadBeyondItsBufferEndsTheService) {
  const std::string request = "GET / HTTP/1.1\r\nHost: h\r\nA: " + std::string(40'000, 'a') +
                              "\r\nB: " + std::string(40'000, 'b') + "\r\n\r\n";
  EchoService echo;
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  // As a rule such a head does not come that far.
  EXPECT_TRUE(Ask(listener.Port(), request).starts_with("HTTP/1.1 400 Bad Request\r\n"));
  EXPECT_EQ(BodyOf(Ask(listener.Port(), GetText("/on"))), "/on");
  listener.Stop();

  const EnvironmentScope lifted(L"QV_DEVHOST_HTTP_HEAD_BYTES", L"200000");
  ASSERT_TRUE(listener.Start());
  EXPECT_EQ(Ask(listener.Port(), request), "");
  EXPECT_TRUE(Eventually([&] { return !listener.IsRunning(); }));
  EXPECT_FALSE(IsPortTaken(listener.Port()));
  EXPECT_EQ(echo.Requests().size(), 1u);
}

TEST(LoopbackListener, AHandlerThatFailsCostsOneConnectionOnly) {
  EchoService echo;
  const auto handle = echo.service.handle;
  echo.service.handle = [handle](const ListenerRequest& request, ListenerResponder& responder) {
    if (request.path == "/fail") throw std::runtime_error("test");
    handle(request, responder);
  };
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  EXPECT_EQ(Ask(listener.Port(), GetText("/fail")), "");
  EXPECT_EQ(BodyOf(Ask(listener.Port(), GetText("/on"))), "/on");
}

TEST(LoopbackListener, TheWorkerJoinsComOnlyWhereTheServiceWantsIt) {
  for (const bool joins : {true, false}) {
    EchoService echo;
    echo.service.workerJoinsCom = joins;
    echo.service.handle = [](const ListenerRequest&, ListenerResponder& responder) {
      APTTYPE type{};
      APTTYPEQUALIFIER qualifier{};
      const HRESULT hr = CoGetApartmentType(&type, &qualifier);
      const bool member = hr == S_OK && type == APTTYPE_MTA && qualifier == APTTYPEQUALIFIER_NONE;
      responder.Send({200, "OK"}, member ? "member" : "none");
    };
    LoopbackListener listener(echo.service);
    ASSERT_TRUE(listener.Start());
    EXPECT_EQ(BodyOf(Ask(listener.Port(), GetText("/"))), joins ? "member" : "none");
  }
}

/// Whether anybody in this process has initialized the API and not terminated it.
bool IsApiInUse() {
  UniqueKernelHandle queue;
  return HttpApi::Get()->createQueue(queue.Put(), 0) != ERROR_DLL_INIT_FAILED;
}

TEST(LoopbackListener, AStartThatFailsLeavesNothingAndSaysWhy) {
  for (const wchar_t* function : {L"HttpInitialize", L"HttpCreateHttpHandle"}) {
    EchoService echo;
    LoopbackListener listener(echo.service);
    {
      const EnvironmentScope failing(L"QV_DEVHOST_HTTP_FAIL", function);
      EXPECT_FALSE(listener.Start());
      EXPECT_FALSE(listener.IsRunning());
    }
    EXPECT_FALSE(IsApiInUse());
    EXPECT_TRUE(listener.Start()) << "the next start finds nothing in its way";
    const std::vector<std::wstring> said = {std::wstring(function) + L" failed",
                                            L"started on 127.0.0.1:" + std::to_wstring(listener.Port())};
    EXPECT_EQ(echo.log, said);
  }
}

TEST(LoopbackListener, StartAndStopMayBeRepeatedAtWill) {
  EchoService echo;
  LoopbackListener listener(echo.service);
  listener.Stop();
  ASSERT_TRUE(listener.Start());
  EXPECT_TRUE(listener.Start()) << "it runs already";
  EXPECT_EQ(echo.log.size(), 1u);
  EXPECT_TRUE(IsPortTaken(listener.Port()));
  EXPECT_TRUE(IsApiInUse());
  listener.Stop();
  listener.Stop();
  EXPECT_FALSE(listener.IsRunning());
  EXPECT_FALSE(IsApiInUse());
  EXPECT_FALSE(IsPortTaken(listener.Port()));
}

DWORD ThreadsOfThisProcess() {
  const UniqueFile snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
  THREADENTRY32 entry{};
  entry.dwSize = sizeof(entry);
  DWORD count = 0;
  for (BOOL more = Thread32First(snapshot.Get(), &entry); more; more = Thread32Next(snapshot.Get(), &entry))
    count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
  return count;
}

/// By trying each: Wine does not count them.
DWORD HandlesOfThisProcess() {
  DWORD count = 0;
  for (std::uintptr_t value = 4; value < 0x8000; value += 4) {
    DWORD flags = 0;
    count += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != FALSE ? 1 : 0;
  }
  return count;
}

TEST(LoopbackListener, AHundredRoundsLeaveNoThreadHandleOrPort) {
  EchoService echo;
  LoopbackListener listener(echo.service);
  const auto round = [&] {
    ASSERT_TRUE(listener.Start());
    EXPECT_EQ(BodyOf(Ask(listener.Port(), GetText("/"))), "/");
    listener.Stop();
  };
  // What the first rounds load stays.
  for (int i = 0; i < 10; ++i)
    round();
  const DWORD threads = ThreadsOfThisProcess();
  const DWORD handles = HandlesOfThisProcess();
  ASSERT_GT(handles, 0u);
  for (int i = 0; i < 100; ++i)
    round();
  // The thread library keeps a few handles for its next threads; one left by each round would be a hundred.
  EXPECT_TRUE(Eventually([&] { return ThreadsOfThisProcess() <= threads; })) << ThreadsOfThisProcess();
  EXPECT_TRUE(Eventually([&] { return HandlesOfThisProcess() <= handles + 10; })) << HandlesOfThisProcess();
  EXPECT_FALSE(IsPortTaken(listener.Port()));
}

}  // namespace
}  // namespace qv
