#include "services/mcp_server.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <string>

#include "foundation/loopback_server.h"
#include "http_client.h"

namespace qv {
namespace {

constexpr char kListSheets[] =
    R"({"id":1,"method":"tools/call","params":{"name":"worksheet","arguments":{"action":"list"}}})";

/// A server on a free port whose tool calls answer at once, or wait until they are woken like calls to a
/// thread that is busy.
struct TestServer {
  explicit TestServer(std::uint16_t port = ClosedPort()) : port_(port) {}

  [[nodiscard]] std::string Call() const { return BodyOf(Ask(port_, PostText("/mcp", kListSheets))); }

  const std::uint16_t port_;
  std::atomic<bool> busy{false};
  std::atomic<int> waits{0};
  UniqueKernelHandle woken{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
  McpServer server{[this](const std::wstring& action, const std::wstring& json) -> std::wstring {
                     if (!busy) return action + L" " + json;
                     ++waits;
                     return WaitForSingleObject(woken.Get(), 30'000) == WAIT_OBJECT_0 ? L"woken" : L"late";
                   },
                   [this] {
                     if (waits > 0) SetEvent(woken.Get());
                   },
                   port_};
};

std::string CallAnswer(const std::string& text) {
  return R"({"jsonrpc":"2.0","id":1,"result":{"content":[{"type":"text","text":")" + text + R"("}]}})";
}

TEST(McpServer, AnswersEverythingWithStatus200AndLetsAnyOriginRead) {
  struct Case {
    std::string request;
    std::string body;
  };
  const Case cases[] = {
      {PostText("/mcp", kListSheets), CallAnswer(R"(excelListSheets {\"action\":\"list\"})")},
      {GetText("/mcp"), R"({"jsonrpc":"2.0","id":0,"error":{"code":-32601,"message":"method not found"}})"},
      {PostText("/elsewhere", "{}"), R"({"error":"not found"})"},
      {PostText("/yield", "{}"), R"({"error":"unauthorized"})"},
      {PostText("/yield?x", "{}", "X-Quorvantis-Yield: 1\r\n"), R"({"error":"not found"})"},
      {"OPTIONS /yield HTTP/1.1\r\nHost: h\r\nX-Quorvantis-Yield: 1\r\n\r\n", "{}"},
      // Its body is not read, so there is no method in it.
      {"PUT /mcp HTTP/1.1\r\nHost: h\r\nContent-Length: 31\r\n\r\n{\"id\":1,\"method\":\"tools/list\"}  ",
       R"({"jsonrpc":"2.0","id":0,"error":{"code":-32601,"message":"method not found"}})"},
  };
  TestServer test;
  ASSERT_TRUE(test.server.Start());
  for (const Case& each : cases) {
    const std::string answer = Ask(test.port_, each.request);
    EXPECT_TRUE(
        answer.starts_with("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n"
                           "Access-Control-Allow-Origin: *\r\n"))
        << answer;
    EXPECT_EQ(BodyOf(answer), each.body) << each.request;
  }
  EXPECT_TRUE(test.server.IsRunning());
  EXPECT_EQ(BodyOf(Ask(test.port_, PostText("/yield", "{}", "X-Quorvantis-Yield: 1\r\n"))), R"({"ok":true})");
  EXPECT_TRUE(Eventually([&] { return !test.server.IsRunning(); }));
}

/// A call that waits for the thread that stops or starts servers must not hold it up.
class McpServerWithACall : public testing::Test {
 protected:
  void Begin() {
    ASSERT_TRUE(test_.server.Start());
    test_.busy = true;
    client_.emplace(test_.port_);
    client_->Send(PostText("/mcp", kListSheets));
    ASSERT_TRUE(Eventually([&] { return test_.waits == 1; }));
    begin_ = GetTickCount64();
  }
  void ExpectWoken() {
    EXPECT_LT(GetTickCount64() - begin_, 10'000u);
    EXPECT_EQ(BodyOf(client_->ReadAnswer()), CallAnswer("woken"));
    EXPECT_FALSE(test_.server.IsRunning());
  }

  TestServer test_;
  std::optional<HttpClient> client_;
  ULONGLONG begin_ = 0;
};

TEST_F(McpServerWithACall, IsStoppedAtOnceAndCanStartAgain) {
  Begin();
  test_.server.Stop();
  ExpectWoken();
  test_.busy = false;
  EXPECT_TRUE(test_.server.Start());
  EXPECT_EQ(test_.Call(), CallAnswer(R"(excelListSheets {\"action\":\"list\"})"));
}

TEST_F(McpServerWithACall, GivesWayToAnotherPaneOfTheProcess) {
  Begin();
  TestServer newer(test_.port_);
  EXPECT_TRUE(newer.server.Start());
  ExpectWoken();
  EXPECT_EQ(newer.Call(), CallAnswer(R"(excelListSheets {\"action\":\"list\"})"));
  // And back again.
  EXPECT_TRUE(test_.server.Start());
  EXPECT_FALSE(newer.server.IsRunning());
}

TEST(McpServer, APaneThatGoesMayHaveStartedLast) {
  TestServer older;
  {
    TestServer gone(older.port_);
    ASSERT_TRUE(gone.server.Start());
  }
  EXPECT_TRUE(older.server.Start());
}

}  // namespace
}  // namespace qv
