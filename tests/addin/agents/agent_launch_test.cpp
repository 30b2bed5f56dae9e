#include <windows.h>

#include <chrono>
#include <vector>

#include "agent_world.h"
#include "foundation/json_text.h"
#include "foundation/text.h"
#include "panel/agent_services.h"
#include "services/agent_files.h"
#include "services/agent_launcher.h"
#include "services/agent_places.h"
#include "services/agent_requests.h"
#include "services/find_executable.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

class AgentLaunch : public AgentWorld {
 protected:
  AgentLaunch() { SetVariable(L"QV_TEST_AGENT_REPORT", ReportPath()); }
  ~AgentLaunch() override {
    // A console that is still closing holds the folder that it was started in.
    std::error_code ignored;
    EXPECT_TRUE(
        PumpUntil([&] { return fs::remove_all(Profile(), ignored) != static_cast<std::uintmax_t>(-1); }));
  }

  [[nodiscard]] std::wstring ReportPath() const { return In(L"report.txt"); }
  /// What the started agent says of itself.
  [[nodiscard]] std::string Report() const {
    EXPECT_TRUE(PumpUntil([&] { return fs::exists(ReportPath()); })) << ToUtf8(Log());
    return ReadBytes(ReportPath());
  }
  /// Whether the launcher has logged texts that begin like this, one after the other.
  [[nodiscard]] testing::AssertionResult LoggedInOrder(const std::vector<std::wstring>& texts) const {
    const std::wstring log = Log();
    std::size_t at = 0;
    for (const std::wstring& text : texts) {
      at = log.find(L"[AgentLauncher] " + text, at);
      if (at == std::wstring::npos)
        return testing::AssertionFailure() << ToUtf8(text) << " is not in\n" << ToUtf8(log);
      at += text.size();
    }
    return testing::AssertionSuccess();
  }
  [[nodiscard]] static bool HasLine(const std::string& report, std::wstring_view line) {
    return ("\n" + report).find("\n" + ToUtf8(line) + "\n") != std::string::npos;
  }
};

TEST_F(AgentLaunch, OpenCodeFindsFolderFileAndEnvironmentAndTheLogNoKey) {
  AddProgram(L"opencode.exe");
  SetVariable(L"openai_api_key", L"the user's own");
  const ProxyAccess access{L"http://127.0.0.1:7999/v1", L"qv_0123456789abcdef"};
  EXPECT_EQ(LaunchAgent(AgentKind::kOpenCode, access), L"");
  const std::string report = Report();
  const std::wstring workspace = Profile() + L"\\Quorvantis\\opencode-workspace";
  EXPECT_TRUE(HasLine(report, L"directory=" + workspace)) << report;
  EXPECT_TRUE(HasLine(report, L"console=1")) << report;
  EXPECT_TRUE(HasLine(report, L"OPENAI_API_KEY=qv_0123456789abcdef")) << report;
  EXPECT_TRUE(HasLine(report, L"OPENCODE_MODEL=quorvantis/deepseek-v4-flash")) << report;
  EXPECT_TRUE(HasLine(report, L"OPENAI_BASE_URL=http://127.0.0.1:7999/v1")) << report;
  EXPECT_TRUE(HasLine(report, L"OPENCODE_CONFIG=" + workspace + L"\\opencode.json")) << report;
  EXPECT_TRUE(HasLine(report, L"PATH=" + Programs())) << report;
  EXPECT_EQ(ReadBytes(workspace + L"\\opencode.json"), ToUtf8(OpenCodeConfig(access)));
  EXPECT_EQ(EnvironmentValue(L"OPENCODE_MODEL"), L"");
  EXPECT_TRUE(Contains(Log(), L"[AgentLauncher] attempt CreateProcessW in " + workspace)) << ToUtf8(Log());
  EXPECT_FALSE(Contains(Log(), L"0123456789abcdef"));
}

TEST_F(AgentLaunch, OtherAgentsRunInTheSameFolderWithTheUsersEnvironment) {
  AddBatch(L"claude.cmd");
  EXPECT_EQ(LaunchAgent(AgentKind::kClaude, {}), L"");
  const std::string report = Report();
  EXPECT_TRUE(HasLine(report, L"directory=" + Profile() + L"\\Quorvantis\\opencode-workspace")) << report;
  EXPECT_TRUE(HasLine(report, L"OPENCODE_CONFIG=")) << report;
  EXPECT_FALSE(fs::exists(AgentConfigPath(AgentKind::kOpenCode)));
  EXPECT_FALSE(fs::exists(AgentConfigPath(AgentKind::kClaude)));
}

TEST_F(AgentLaunch, WithoutTheWorkspaceTheProfileIsTheFolder) {
  AddProgram(L"codex.exe");
  WriteBytes(Profile() + L"\\Quorvantis", "a file in its place");
  EXPECT_EQ(LaunchAgent(AgentKind::kCodex, {}), L"");
  EXPECT_TRUE(HasLine(Report(), L"directory=" + Profile()));
  // OpenCode would not find its configuration.
  AddProgram(L"opencode.exe");
  EXPECT_TRUE(LaunchAgent(AgentKind::kOpenCode, {}).starts_with(L"写入配置文件失败 ("));
}

TEST_F(AgentLaunch, WhatIsNotInstalledOrCannotStartIsSaid) {
  EXPECT_EQ(LaunchAgent(AgentKind::kCodex, {}), L"未安装该 Agent");
  AddProgram(L"codex.exe");
  SetVariable(L"ComSpec", L"C:\\none\\cmd.exe");
  EXPECT_EQ(LaunchAgent(AgentKind::kCodex, {}), L"无法启动该 Agent");
  EXPECT_TRUE(LoggedInOrder({L"attempt CreateProcessW in ", L"failed with ", L"attempt CreateProcessW in ",
                             L"failed with ", L"attempt ShellExecuteExW in ", L"failed with "}));
  SetVariable(L"USERPROFILE", nullptr);
  EXPECT_EQ(LaunchAgent(AgentKind::kCodex, {}), L"无法确定用户目录");
}

TEST_F(AgentLaunch, AnElevatedHostHandsItsRightsOnOnlyWhereTheDesktopHasNoLesserOnes) {
  AddProgram(L"codex.exe");
  constexpr auto kElevated = [] { return true; };
  constexpr auto kRefused = [](const ConsoleProgram&, const std::wstring&) -> unsigned long { return 5; };
  EXPECT_EQ(LaunchAgent(AgentKind::kCodex, {}, {kElevated, [] { return DesktopShell::kUsual; }, kRefused}),
            L"无法启动该 Agent");
  EXPECT_TRUE(LoggedInOrder(
      {L"attempt CreateProcessWithTokenW explorer in " + AgentWorkspaceDirectory(), L"failed with 5\r\n",
       L"attempt CreateProcessWithTokenW explorer in " + Profile() + L"\r\n", L"failed with 5\r\n"}));
  EXPECT_FALSE(Contains(Log(), L"attempt CreateProcessW in "));
  EXPECT_FALSE(Contains(Log(), L"attempt ShellExecuteExW in "));
  EXPECT_FALSE(fs::exists(ReportPath()));

  const struct {
    LaunchSystem system;
    std::vector<std::wstring> log;
  } cases[] = {
      {{kElevated, [] { return DesktopShell::kUsual; }, &StartInConsole},
       {L"attempt CreateProcessWithTokenW explorer in ", L"started\r\n"}},
      {{kElevated, [] { return DesktopShell::kNone; }, kRefused},
       {L"skip CreateProcessWithTokenW explorer: no desktop shell\r\n", L"attempt CreateProcessW in "}},
      {{kElevated, [] { return DesktopShell::kElevated; }, kRefused},
       {L"skip CreateProcessWithTokenW explorer: desktop shell is elevated\r\n",
        L"attempt CreateProcessW in "}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(LaunchAgent(AgentKind::kCodex, {}, c.system), L"");
    EXPECT_TRUE(HasLine(Report(), L"console=1"));
    EXPECT_TRUE(LoggedInOrder(c.log));
    EXPECT_TRUE(PumpUntil([&] {
      std::error_code busy;
      return fs::remove(ReportPath(), busy);
    }));
  }
}

/// A pane that is nothing but a window for tasks, and a page that keeps what it is told.
class AgentRequestsTest : public AgentLaunch, public PanelOutput {
 protected:
  AgentRequestsTest() {
    window_ = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(pane_.get()));
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&OnMessage));
    pane_->Tasks().Open(window_);
  }
  ~AgentRequestsTest() override {
    pane_->Tasks().Close();
    DestroyWindow(window_);
  }

  void RunPanelScript(const std::wstring& script) override { scripts_.push_back(script); }
  void PostPanelJson(const std::wstring&) override {}
  void PostPanelScript(const std::wstring&) override {}

  using Request = std::optional<AgentReply> (AgentRequests::*)(std::wstring_view) const;

  /// The answer to a request, which must not come while it is being made.
  std::wstring Ask(const AgentRequests& requests, Request request, std::wstring_view members) {
    scripts_.clear();
    EXPECT_FALSE((requests.*request)(Concat(L"{\"requestId\":\"r1\"", members, L"}")));
    EXPECT_TRUE(scripts_.empty());
    EXPECT_TRUE(PumpUntil([&] { return !scripts_.empty(); }));
    return scripts_.empty() ? std::wstring() : scripts_.front();
  }

  /// The text of a request that is refused at once.
  static std::wstring Refused(const std::optional<AgentReply>& reply) {
    EXPECT_TRUE(reply && !reply->ok);
    return reply ? JsonGetString(reply->data, L"error") : std::wstring();
  }

  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const pane = reinterpret_cast<PaneContext*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == kUiTaskMessage) pane->Tasks().OnMessage(lParam);
    return DefWindowProcW(window, message, wParam, lParam);
  }

  std::shared_ptr<PaneContext> pane_ = std::make_shared<PaneContext>(1);
  HWND window_ = nullptr;
  std::vector<std::wstring> scripts_;
};

TEST_F(AgentRequestsTest, EachIsAnsweredLaterInTheFormOfAReply) {
  constexpr auto kProxy = [] { return ProxyAccess{L"http://127.0.0.1:7879/v1", L"qv_k"}; };
  const AgentRequests requests(pane_, *this, {[] { return true; }, kProxy, kProxy});
  EXPECT_TRUE(
      Contains(Ask(requests, &AgentRequests::Detect, L""),
               L"_onResponse({\"requestId\":\"r1\",\"ok\":true,\"data\":{\"agents\":[{\"id\":\"opencode\""));
  EXPECT_EQ(Ask(requests, &AgentRequests::Configure, L",\"id\":\"claude\""),
            BuildReplyScript(L"r1", true,
                             Concat(L"{\"success\":true,\"configPath\":",
                                    JsonQuote(Profile() + L"\\.claude.json"), L"}")));
  EXPECT_EQ(Ask(requests, &AgentRequests::Configure, L",\"id\":\"opencode\""),
            BuildReplyScript(L"r1", true,
                             Concat(L"{\"success\":true,\"configPath\":",
                                    JsonQuote(AgentConfigPath(AgentKind::kOpenCode)), L"}")));
  EXPECT_NE(ReadBytes(AgentConfigPath(AgentKind::kOpenCode)).find("\"apiKey\": \"qv_k\""), std::string::npos);
  AddProgram(L"codex.exe");
  EXPECT_EQ(Ask(requests, &AgentRequests::Launch, L",\"id\":\"codex\""),
            BuildReplyScript(L"r1", true, L"{\"success\":true}"));
  EXPECT_TRUE(HasLine(Report(), L"OPENAI_API_KEY="));
  EXPECT_EQ(Ask(requests, &AgentRequests::Install, L",\"location\":\"file:///C:/none.zip\""),
            BuildReplyScript(L"r1", false,
                             L"{\"success\":false,\"exePath\":\"\",\"error\":\"下载 OpenCode 安装包失败\"}"));
}

TEST_F(AgentRequestsTest, NothingIsWrittenOrStartedForNobodyOrWithoutTheServersThatItNeeds) {
  AddProgram(L"opencode.exe");
  bool mcp = false;
  const AgentRequests requests(pane_, *this, {[&mcp] { return mcp; }, {}, {}});
  EXPECT_EQ(Refused(requests.Configure(LR"({"id":"Claude"})")), L"未找到该 Agent");
  EXPECT_EQ(Refused(requests.Launch(LR"({"id":""})")), L"未找到该 Agent");
  EXPECT_EQ(Refused(requests.Launch(LR"({"id":"opencode"})")), L"MCP 服务未能启动");
  mcp = true;
  EXPECT_EQ(Refused(requests.Launch(LR"({"id":"opencode"})")), L"LLM 代理未能启动");
  const auto refused = requests.Configure(LR"({"id":"opencode"})");
  EXPECT_EQ(Refused(refused), L"LLM 代理未能启动");
  EXPECT_EQ(JsonGetString(refused->data, L"configPath"), AgentConfigPath(AgentKind::kOpenCode));
  EXPECT_FALSE(fs::exists(AgentWorkspaceDirectory()));
  EXPECT_FALSE(fs::exists(ReportPath()));
}

/// A window of the host that asks to be painted again as soon as it has been.
class PaintedWindow {
 public:
  PaintedWindow()
      : window_(CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr,
                                nullptr, nullptr)) {
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&OnMessage));
  }
  PaintedWindow(const PaintedWindow&) = delete;
  PaintedWindow& operator=(const PaintedWindow&) = delete;
  ~PaintedWindow() { DestroyWindow(window_); }

  [[nodiscard]] int Paints() const { return paints_; }
  void AskForPaint() const { InvalidateRect(window_, nullptr, FALSE); }

 private:
  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const self = reinterpret_cast<PaintedWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_PAINT) ++self->paints_;
    return DefWindowProcW(window, message, wParam, lParam);
  }

  HWND window_;
  int paints_ = 0;
};

TEST_F(AgentRequestsTest, TheHostPaintsWhileAnAgentHangs) {
  AddProgram(L"claude.exe");
  SetVariable(L"QV_TEST_AGENT", L"hang");
  const AgentRequests requests(pane_, *this, {});
  const PaintedWindow window;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(requests.Detect(LR"({"requestId":"r1"})"));
  // Painted once in each tenth of a second of the five that the program is given.
  for (int tenth = 0; tenth < 45; ++tenth) {
    const int before = window.Paints();
    window.AskForPaint();
    EXPECT_TRUE(PumpUntil([&] {
      return window.Paints() > before &&
             std::chrono::steady_clock::now() - start >= std::chrono::milliseconds(100 * tenth);
    }));
    if (!scripts_.empty()) break;
  }
  EXPECT_GE(window.Paints(), 40);
  EXPECT_TRUE(PumpUntil([&] { return !scripts_.empty(); }));
  EXPECT_TRUE(Contains(scripts_.at(0), L"\"version\":\"0.1 (stopped\""));
}

TEST_F(AgentRequestsTest, ConnectingAsksForTheProxysKeyAtMostAndWithoutAProfileForNothing) {
  int asked = 0;
  const auto start = [](auto answer) {
    return [answer] {
      ADD_FAILURE() << "a server was started";
      return answer;
    };
  };
  const AgentRequests requests(pane_, *this, {start(true), start(std::optional<ProxyAccess>()), [&asked] {
                                                ++asked;
                                                return ProxyAccess{{}, L"qv_k"};
                                              }});
  Ask(requests, &AgentRequests::Configure, L",\"id\":\"claude\"");
  EXPECT_EQ(asked, 0);
  Ask(requests, &AgentRequests::Configure, L",\"id\":\"opencode\"");
  EXPECT_EQ(asked, 1);
  EXPECT_NE(ReadBytes(AgentConfigPath(AgentKind::kOpenCode)).find("\"apiKey\": \"qv_k\""), std::string::npos);
  SetVariable(L"USERPROFILE", nullptr);
  EXPECT_EQ(Ask(requests, &AgentRequests::Configure, L",\"id\":\"opencode\""),
            BuildReplyScript(L"r1", false,
                             L"{\"success\":false,\"configPath\":\"\","
                             L"\"error\":\"无法确定该 Agent 的配置文件路径\"}"));
  EXPECT_EQ(asked, 1);
}

TEST_F(AgentRequestsTest, APaneThatHasClosedHearsNothing) {
  AddProgram(L"codex.exe");
  const AgentRequests requests(pane_, *this, {});
  EXPECT_FALSE(requests.Detect(LR"({"requestId":"r1"})"));
  pane_->MarkClosing();
  pane_->Tasks().Close();
  // The worker lets go of the pane when it is done.
  EXPECT_TRUE(PumpUntil([&] { return pane_.use_count() == 2; }));
  EXPECT_TRUE(scripts_.empty());
}

TEST_F(AgentRequestsTest, AnActionThatNobodyHandlesIsSaidSo) {
  AgentServices services(pane_, *this, nullptr);
  EXPECT_EQ(services.Handle({L"sellAgent", LR"({"requestId":"r1"})"}),
            BuildReplyScript(L"r1", false, LR"({"error":"unknown_agent_action"})"));
}

}  // namespace
}  // namespace qv
