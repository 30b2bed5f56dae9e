#include <gtest/gtest.h>

#include <optional>

#include "echo_service.h"
#include "http_client.h"
#include "scarce_memory.h"

namespace qv {
namespace {

TEST(TroubledClient, OneThatStallsInItsHeadHoldsNobodyUpAndIsDropped) {
  const EnvironmentScope impatient(L"QV_DEVHOST_HTTP_WAIT_MS", L"300");
  EchoService echo;
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  HttpClient silent(listener.Port());
  HttpClient halfway(listener.Port());
  halfway.Send("GET / HTTP/1.1\r\nHo");
  EXPECT_EQ(BodyOf(Ask(listener.Port(), GetText("/on"))), "/on");
  EXPECT_EQ(silent.ReadToEnd(), "");
  EXPECT_EQ(halfway.ReadToEnd(), "");
}

TEST(TroubledClient, OneThatStallsOrVanishesInItsBodyLeavesWhatCame) {
  const EnvironmentScope impatient(L"QV_DEVHOST_HTTP_WAIT_MS", L"300");
  EchoService echo;
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  const std::string part = "POST / HTTP/1.1\r\nHost: h\r\nContent-Length: 100\r\n\r\nsome";
  HttpClient stalled(listener.Port());
  stalled.Send(part);
  EXPECT_EQ(stalled.ReadToEnd(), "");
  HttpClient vanished(listener.Port());
  vanished.Send(part);
  ASSERT_TRUE(Eventually([&] { return echo.Requests().size() >= 1; }));
  vanished.Cut();
  EXPECT_EQ(BodyOf(Ask(listener.Port(), GetText("/on"))), "/on");
  EXPECT_EQ(echo.Requests()[0].body, "some");
}

TEST(TroubledClient, OneThatLeavesItsStreamIsNoticed) {
  EchoService echo;
  const UniqueKernelHandle left(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  ULONG result = NO_ERROR;
  echo.service.handle = [&](const ListenerRequest& request, ListenerResponder& responder) {
    if (request.path != "/stream") return responder.Send({200, "OK"}, "on");
    EXPECT_EQ(responder.StartStream({200, "OK"}, "text/event-stream"), NO_ERROR);
    WaitForSingleObject(left.Get(), 10'000);
    EXPECT_TRUE(Eventually([&] { return (result = responder.SendPiece("data: x\n\n")) != NO_ERROR; }));
    responder.EndStream();
  };
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  HttpClient client(listener.Port());
  client.Send(GetText("/stream"));
  static_cast<void>(client.ReadUntil("\r\n\r\n"));
  client.Cut();
  SetEvent(left.Get());
  EXPECT_EQ(BodyOf(Ask(listener.Port(), GetText("/"))), "on");
  EXPECT_EQ(result, static_cast<ULONG>(ERROR_CONNECTION_INVALID));
}

TEST(TroubledClient, OneWhoseBodyMemoryCannotHoldLosesItsConnectionOnly) {
  EchoService echo;
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  const std::string big = PostText("/big", std::string(3'000'000, 'x'));
  {
    const ScarceMemory scarce(1'000'000);
    EXPECT_EQ(Ask(listener.Port(), big), "");
    EXPECT_EQ(BodyOf(Ask(listener.Port(), GetText("/on"))), "/on");
  }
  EXPECT_GT(Ask(listener.Port(), big).size(), 3'000'000u) << "nothing of it stays behind";
}

TEST(TroubledClient, NoneKeepsAStopWaiting) {
  EchoService echo;
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  HttpClient stalled(listener.Port());
  stalled.Send("POST / HTTP/1.1\r\nHost: h\r\nExpect: 100-continue\r\nContent-Length: 100\r\n\r\n");
  // From here on the worker waits for the body.
  ASSERT_EQ(stalled.ReadUntil("\r\n\r\n"), "HTTP/1.1 100 Continue\r\n\r\n");
  HttpClient waiting(listener.Port());
  waiting.Send(GetText("/"));
  const ULONGLONG begin = GetTickCount64();
  listener.Stop();
  // Far less than the two minutes that a client may stall, with room for a busy machine.
  EXPECT_LT(GetTickCount64() - begin, 10'000u);
  EXPECT_FALSE(IsPortTaken(listener.Port()));
}

TEST(TroubledClient, AHandlerThatWaitsForTheStoppingThreadIsWokenFirst) {
  EchoService echo;
  const UniqueKernelHandle entered(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  const UniqueKernelHandle wake(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  DWORD waited = WAIT_FAILED;
  echo.service.handle = [&](const ListenerRequest&, ListenerResponder& responder) {
    SetEvent(entered.Get());
    waited = WaitForSingleObject(wake.Get(), 10'000);
    responder.Send({200, "OK"}, "woken");
  };
  int calls = 0;
  // The stop has gone on by then, but not so far that the answer is lost.
  echo.service.wakeWaiters = [&] {
    if (++calls == 2) SetEvent(wake.Get());
  };
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  HttpClient client(listener.Port());
  client.Send(GetText("/"));
  ASSERT_EQ(WaitForSingleObject(entered.Get(), 10'000), WAIT_OBJECT_0);
  listener.Stop();
  EXPECT_EQ(waited, static_cast<DWORD>(WAIT_OBJECT_0));
  EXPECT_EQ(BodyOf(client.ReadAnswer()), "woken") << "and still gives its answer";
}

TEST(TroubledClient, AStopAsksAgainWhenTheQueueDoesNotListen) {
  EchoService echo;
  std::optional<EnvironmentScope> deaf;
  int calls = 0;
  echo.service.wakeWaiters = [&] {
    if (++calls == 3) deaf.reset();
  };
  LoopbackListener listener(echo.service);
  ASSERT_TRUE(listener.Start());
  // From here on the worker waits for the next request, or is about to.
  ASSERT_EQ(BodyOf(Ask(listener.Port(), GetText("/on"))), "/on");
  deaf.emplace(L"QV_DEVHOST_HTTP_FAIL", L"HttpShutdownRequestQueue");
  listener.Stop();
  EXPECT_FALSE(listener.IsRunning());
  EXPECT_FALSE(IsPortTaken(listener.Port()));
}

}  // namespace
}  // namespace qv
