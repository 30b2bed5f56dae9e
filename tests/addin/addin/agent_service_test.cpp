#include <winsock2.h>

#include <atomic>
#include <thread>

#include "../services/http_client.h"
#include "addin_test.h"
#include "foundation/text.h"
#include "host/message_pump.h"

namespace qv {
namespace {

using devhost::PageItemKind;

/// The port that agents' configurations name.
constexpr std::uint16_t kPort = 7878;

/// Another program that has the port and says nothing.
class SilentProgram {
 public:
  explicit SilentProgram(std::uint16_t port) {
    WSADATA data{};
    static_cast<void>(WSAStartup(MAKEWORD(2, 2), &data));
    socket_ = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    // Connections of earlier tests are still remembered; this has its Unix meaning under Wine.
    const BOOL on = TRUE;
    setsockopt(socket_, SOL_SOCKET, SO_REUSEADDR, reinterpret_cast<const char*>(&on), sizeof(on));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    EXPECT_EQ(listen(socket_, 4), 0);
  }
  SilentProgram(const SilentProgram&) = delete;
  SilentProgram& operator=(const SilentProgram&) = delete;
  ~SilentProgram() {
    closesocket(socket_);
    WSACleanup();
  }

 private:
  SOCKET socket_;
};

/// A request to the tool server from a thread of its own, as an agent's is.
class AgentRequest {
 public:
  explicit AgentRequest(std::string body)
      : thread_([this, body = std::move(body)] {
          answer_ = BodyOf(qv::Ask(kPort, PostText("/mcp", body)));
          done_ = true;
        }) {}
  AgentRequest(const AgentRequest&) = delete;
  AgentRequest& operator=(const AgentRequest&) = delete;
  ~AgentRequest() { thread_.join(); }

  /// Handles messages until the answer is there.
  [[nodiscard]] std::string Wait() {
    EXPECT_TRUE(devhost::PumpUntil([this] { return done_.load(); }, 20'000));
    return done_ ? answer_ : "no answer";
  }

 private:
  std::string answer_;
  std::atomic<bool> done_{false};
  std::thread thread_;
};

constexpr char kWrite[] = R"({"method":"tools/call","id":5,"params":{"name":"range","arguments":)"
                          R"({"action":"write","range":"A1","values":[["by an agent"]]}}})";

class AgentServices : public AddinTest {
 protected:
  void SetUp() override { static_cast<void>(engine_.AddWorkbook(L"Book.xlsx", L"C:\\Books")); }

  /// The reply to a request of the page, from its success on.
  std::string Ask(std::uint32_t view, const std::wstring& action) {
    Post(view, L"{\"requestId\":\"r1\",\"action\":\"" + action + L"\"}");
    const std::string script = WaitForItem(PageItemKind::kScript, L"_onResponse");
    const std::string start = R"(_onResponse({"requestId":"r1",)";
    const std::size_t at = script.find(start);
    return at == std::string::npos ? script : script.substr(at + start.size());
  }
};

TEST_F(AgentServices, TheToolServerRunsAsThePageWishes) {
  const std::uint32_t view = OpenPane();
  const std::string none = R"("ok":true,"data":{"ok":true,"owner":"none","running":false,"port":7878}});)";
  const std::string started =
      R"("ok":true,"data":{"ok":true,"owner":"self","running":true,"mode":"external","port":7878}});)";
  EXPECT_EQ(Ask(view, L"getMcpServerStatus"), none);
  EXPECT_EQ(Ask(view, L"stopMcpServer"), none);
  EXPECT_EQ(Ask(view, L"ensureMcpServer"), started);
  EXPECT_EQ(Ask(view, L"ensureMcpServer"), started);
  EXPECT_EQ(Ask(view, L"getMcpServerStatus"),
            R"("ok":true,"data":{"ok":true,"owner":"self","running":true,"port":7878}});)");
  EXPECT_EQ(AgentRequest(kWrite).Wait(),
            R"({"jsonrpc":"2.0","id":5,"result":{"content":[{"type":"text","text":)"
            R"("{\"results\":[{\"row\":1,\"col\":1,\"status\":\"applied\"}],\"applied\":1}"}]}})");
  EXPECT_EQ(engine_.Cell(L"Sheet1", "A1")["text"], "by an agent");
  EXPECT_EQ(Ask(view, L"stopMcpServer"), none);
  EXPECT_EQ(Ask(view, L"getMcpServerStatus"), none);
  EXPECT_EQ(qv::Ask(kPort, GetText("/mcp")), "");
}

TEST_F(AgentServices, APortThatAnotherProgramHasIsNotTaken) {
  const std::uint32_t view = OpenPane();
  const SilentProgram foreign(kPort);
  EXPECT_EQ(Ask(view, L"getMcpServerStatus"),
            R"("ok":true,"data":{"ok":true,"owner":"other","running":false,"port":7878}});)");
  EXPECT_EQ(
      Ask(view, L"ensureMcpServer"),
      R"("ok":false,"data":{"ok":false,"owner":"other","running":false,"error":"端口已被其他表格占用"}});)");
}

TEST_F(AgentServices, AClosingPaneAnswersTheCallThatWaitsForItAtOnce) {
  const std::uint32_t view = OpenPane();
  static_cast<void>(Ask(view, L"ensureMcpServer"));
  // Nobody handles messages, so the call waits.
  AgentRequest request(kWrite);
  ASSERT_TRUE(Eventually(
      [&] { return Log().find("DispatchSync enter action=excelWriteRange") != std::string::npos; }));
  const ULONGLONG begin = GetTickCount64();
  pane_.frame->Close();
  EXPECT_LT(GetTickCount64() - begin, 10'000u);
  EXPECT_NE(request.Wait().find("操作超时"), std::string::npos);
  EXPECT_EQ(engine_.Cell(L"Sheet1", "A1")["text"], "");
  EXPECT_EQ(qv::Ask(kPort, GetText("/mcp")), "");
}

TEST_F(AgentServices, TheNewerOfTwoPanesHasThePort) {
  const std::uint32_t older = OpenPane();
  static_cast<void>(Ask(older, L"ensureMcpServer"));
  const std::uint32_t newer = OpenPane();
  EXPECT_NE(Ask(newer, L"ensureMcpServer").find(R"("owner":"self")"), std::string::npos);
  EXPECT_NE(Ask(older, L"getMcpServerStatus").find(R"("owner":"other")"), std::string::npos);
  EXPECT_NE(Ask(older, L"stopMcpServer").find(R"("ok":true)"), std::string::npos);
  EXPECT_NE(Ask(newer, L"getMcpServerStatus").find(R"("owner":"self")"), std::string::npos);
}

}  // namespace
}  // namespace qv
