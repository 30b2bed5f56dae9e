#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "echo_service.h"
#include "foundation/loopback_listener.h"
#include "http_client.h"
#include "owner_process.h"
#include "services/yield_client.h"

namespace qv {
namespace {

bool IsAnsweredBy(std::uint16_t port, const std::string& name) {
  return Eventually([&] { return BodyOf(Ask(port, GetText("/who"))) == name; });
}

TEST(PortContention, TheNewestOfThreeProcessesHasThePortAndTheOthersStop) {
  EchoService echo;
  const std::uint16_t port = echo.service.port;
  const OwnerProcess first(port, L"first");
  ASSERT_TRUE(IsAnsweredBy(port, "first"));
  const OwnerProcess second(port, L"second");
  EXPECT_EQ(first.WaitForEnd(), 0);
  ASSERT_TRUE(IsAnsweredBy(port, "second"));

  // The former owner lets go at once, so one or two pauses of the written length suffice.
  echo.service.patience = {2, 250};
  LoopbackListener third(echo.service);
  EXPECT_TRUE(third.Start());
  EXPECT_EQ(second.WaitForEnd(), 0);
  EXPECT_TRUE(IsAnsweredBy(port, "/who"));
}

TEST(PortContention, AnotherPaneOfTheSameProcessTakesOverTheSameWay) {
  EchoService older;
  EchoService newer(older.service.port);
  newer.service.patience = {2, 250};
  LoopbackListener first(older.service);
  LoopbackListener second(newer.service);
  ASSERT_TRUE(first.Start());
  ASSERT_TRUE(second.Start());
  EXPECT_TRUE(Eventually([&] { return !first.IsRunning(); }));
  EXPECT_EQ(BodyOf(Ask(second.Port(), GetText("/x"))), "/x");
  EXPECT_EQ(newer.Requests().size(), 1u);
  ASSERT_EQ(older.Requests().size(), 1u);
  EXPECT_EQ(older.Requests()[0].path, "/yield");

  // And back.
  EXPECT_TRUE(first.Start());
  EXPECT_TRUE(Eventually([&] { return !second.IsRunning(); }));
}

TEST(PortContention, ANewcomerMaySeeToAnOwnerInItsOwnProcessFirst) {
  EchoService older;
  EchoService newer(older.service.port);
  newer.service.patience = {0, 0};
  LoopbackListener first(older.service);
  int calls = 0;
  newer.service.beforeYield = [&] {
    ++calls;
    first.Stop();
  };
  LoopbackListener second(newer.service);
  ASSERT_TRUE(second.Start());
  EXPECT_EQ(calls, 0) << "the port was free";
  second.Stop();
  ASSERT_TRUE(first.Start());
  EXPECT_TRUE(second.Start());
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(older.Requests().empty()) << "nobody was left to be asked";
}

TEST(PortContention, AnOwnerThatDiesLeavesThePort) {
  EchoService echo;
  const OwnerProcess dead(echo.service.port, L"dead");
  ASSERT_TRUE(IsAnsweredBy(echo.service.port, "dead"));
  EXPECT_TRUE(IsPortTaken(echo.service.port));
  dead.Kill();
  EXPECT_TRUE(Eventually([&] { return !IsPortTaken(echo.service.port); }));
  LoopbackListener listener(echo.service);
  EXPECT_TRUE(listener.Start());
}

TEST(PortContention, AForeignProgramThatAnswersCostsTheRetries) {
  const std::string reply = "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n";
  auto foreign = std::make_unique<LoopbackServer>(std::vector<std::string>{reply, reply});
  EchoService echo(foreign->Endpoint().port);
  echo.service.patience = {3, 1};
  {
    LoopbackListener listener(echo.service);
    EXPECT_FALSE(listener.Start());
    EXPECT_FALSE(listener.IsRunning());
    // ERROR_SHARING_VIOLATION: not one of HTTP.sys's own.
    EXPECT_EQ(echo.log, std::vector<std::wstring>{L"HttpAddUrl failed rc=32"});
  }
  const auto requests = foreign->WaitForRequests(1);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_TRUE(requests[0].starts_with("POST /yield HTTP/1.1\r\n")) << requests[0];
  EXPECT_TRUE(requests[0].ends_with("\r\n\r\n{}")) << requests[0];
  for (const char* part : {"\r\nUser-Agent: QuorvantisTest/1.0\r\n", "\r\nContent-Type: application/json\r\n",
                           "\r\nX-Quorvantis-Yield: 1\r\n"}) {
    EXPECT_NE(requests[0].find(part), std::string::npos) << part << requests[0];
  }

  // Once it is gone the next retry succeeds.
  echo.service.patience = {1000, 10};
  LoopbackListener listener(echo.service);
  std::thread ending([&] {
    static_cast<void>(foreign->WaitForRequests(2));
    foreign.reset();
  });
  EXPECT_TRUE(listener.Start());
  ending.join();
}

/// Starts a service on a port that a foreign program has; any retry would outlast the test.
void ExpectNoRetry(std::uint16_t port) {
  EchoService echo(port);
  echo.service.patience = {1, 3'600'000};
  LoopbackListener listener(echo.service);
  EXPECT_FALSE(listener.Start());
  EXPECT_EQ(echo.log, std::vector<std::wstring>{L"HttpAddUrl failed rc=32"});
}

TEST(PortContention, AForeignProgramThatGivesNoAnswerGetsNoSecondChance) {
  const LoopbackServer closing({""});
  ExpectNoRetry(closing.Endpoint().port);

  // Nobody takes what arrives here: the three seconds that an answer may take are all that it costs.
  std::uint16_t port = 0;
  const SOCKET silent = ListenOnLoopback(port);
  const ULONGLONG begin = GetTickCount64();
  ExpectNoRetry(port);
  EXPECT_GE(GetTickCount64() - begin, 2'900u);
  EXPECT_LT(GetTickCount64() - begin, 10'000u);
  closesocket(silent);
}

/// Answers its one client with a head and then with piece after piece, until the client goes or ten seconds
/// are over.
class EndlessOwner {
 public:
  EndlessOwner() : listener_(ListenOnLoopback(port_)), thread_([this] { Serve(); }) {}
  EndlessOwner(const EndlessOwner&) = delete;
  EndlessOwner& operator=(const EndlessOwner&) = delete;
  ~EndlessOwner() {
    closesocket(listener_);
    thread_.join();
    WSACleanup();
  }

  [[nodiscard]] std::uint16_t Port() const { return port_; }
  [[nodiscard]] bool WasLeft() const { return left_; }

 private:
  void Serve() {
    const SOCKET client = accept(listener_, nullptr, nullptr);
    std::string bytes = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    left_ = Eventually([&] {
      const int sent = send(client, bytes.data(), static_cast<int>(bytes.size()), 0);
      bytes = "1\r\nx\r\n";
      return sent <= 0;
    });
    closesocket(client);
  }

  std::uint16_t port_ = 0;
  const SOCKET listener_;
  std::atomic<bool> left_{false};
  std::thread thread_;
};

TEST(PortContention, AnAnswerCountsFromItsHeadOnHoweverLongItsBody) {
  const EndlessOwner owner;
  const ULONGLONG begin = GetTickCount64();
  EXPECT_TRUE(RequestYield(owner.Port(), L"QuorvantisTest/1.0"));
  EXPECT_LT(GetTickCount64() - begin, 5'000u);
  EXPECT_TRUE(Eventually([&] { return owner.WasLeft(); }));
}

}  // namespace
}  // namespace qv
