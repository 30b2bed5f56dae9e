// How fast scripts reach the panel's page in a real browser:  qv_script_bench SERVICE
// 5 000 that a worker posts through the bridge, which must all run, in the order in which they were posted;
// and one after the other, each waiting for its result.

#include <ole2.h>
#include <windows.h>

#include <cstddef>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "foundation/host_session.h"
#include "foundation/text.h"
#include "host/command_line.h"
#include "host/message_pump.h"
#include "host/settings_file.h"
#include "measure.h"
#include "ole_program.h"
#include "panel/pane_window.h"
#include "panel/panel_bridge.h"

namespace qv::bench {
namespace {

constexpr std::size_t kPosted = 5000;
constexpr int kPostRounds = 5;
constexpr int kAwaited = 300;
constexpr DWORD kPatienceMs = 30'000;
constexpr wchar_t kEndMessage[] = L"all scripts have run";

/// A pane's window, view and bridge without the control around them.
class ScriptPane final : private PaneWindowEvents, private WebViewEvents {
 public:
  /// Shows a page of the panel, the only kind that gets scripts through the bridge. Throws when it does not
  /// load.
  explicit ScriptPane(HWND parent) {
    const bool created = window_.Create(parent, {0, 0, 400, 600});
    Require(created && Wait([this] { return loaded_ || failed_; }) && loaded_, "the page has not loaded");
  }

  [[nodiscard]] PanelBridge& Bridge() { return bridge_; }

  /// The JSON text of the script's result.
  [[nodiscard]] std::wstring Run(const std::wstring& script) {
    std::optional<std::wstring> json;
    const bool taken =
        view_.ExecuteScript(script, [&](HRESULT, const std::wstring& result) { json = result; });
    Require(taken && Wait([&] { return json.has_value(); }), "the page does not answer");
    return *json;
  }

  /// Whether the page has posted `kEndMessage` since the last call that gave true, or does so in time.
  [[nodiscard]] bool WaitForEnd() {
    const bool came = Wait([this] { return ended_; });
    ended_ = false;
    return came;
  }

 private:
  template <typename Condition>
  static bool Wait(Condition condition) {
    return devhost::PumpUntil(condition, kPatienceMs);
  }

  void OnWindowCreated(HWND window, HWND parent) override {
    context_->SetWindows(window, parent);
    context_->Tasks().Open(window);
    view_.Start(window);
  }
  void OnWindowResized() override { view_.Fit(); }
  void OnWindowFocused() override {}
  void OnWindowTimer(UINT_PTR) override {}
  void OnWindowTask(LPARAM task) override { context_->Tasks().OnMessage(task); }
  void OnWindowDestroyed() override {
    context_->MarkClosing();
    context_->Tasks().Close();
    view_.Close();
  }

  void OnWebViewReady() override {
    failed_ = !view_.Navigate(HostSession::Get().Endpoint().Origin() + L"/panel/excel/support.html");
  }
  void OnWebMessage(const std::wstring&, const std::optional<std::wstring>& text) override {
    ended_ |= text == kEndMessage;
  }
  void OnNavigated() override { loaded_ = true; }
  void OnNavigationFailed() override { failed_ = true; }
  void OnWebViewFailed(const wchar_t*, HRESULT) override { failed_ = true; }
  void OnBrowserLost() override { failed_ = true; }
  void OnPageLost() override { failed_ = true; }

  std::shared_ptr<PaneContext> context_ = std::make_shared<PaneContext>(1);
  WebView view_{*context_, *this};
  WebView workspace_{*context_, *this};
  AccessTokens tokens_;
  PanelActions actions_;
  PanelBridge bridge_{context_, view_, workspace_, tokens_, actions_};
  bool loaded_ = false;
  bool failed_ = false;
  bool ended_ = false;
  // Destroyed first: it reports to all the others.
  PaneWindow window_{*this};
};

/// Milliseconds from the worker's first post until the page says that it has run the last one. What the page
/// has run is left in its `ran`.
double PostAll(ScriptPane& pane) {
  static_cast<void>(pane.Run(L"globalThis.ran = []"));
  bool ended = false;
  const double total = Milliseconds([&] {
    std::jthread worker([&bridge = pane.Bridge()] {
      for (std::size_t i = 0; i < kPosted; ++i)
        bridge.PostPanelScript(Concat(L"ran.push(", i, L")"));
      bridge.PostPanelScript(Concat(L"chrome.webview.postMessage('", kEndMessage, L"')"));
    });
    ended = pane.WaitForEnd();
  });
  Require(ended, "the last script has not run");
  return total;
}

/// How many of the posted scripts are missing in the page's list or come behind a later one.
std::size_t CountMisplaced(ScriptPane& pane) {
  const auto ran = nlohmann::json::parse(ToUtf8(pane.Run(L"ran"))).get<std::vector<int>>();
  std::size_t misplaced = kPosted - std::set<int>(ran.begin(), ran.end()).size();
  for (std::size_t i = 1; i < ran.size(); ++i)
    misplaced += ran[i] <= ran[i - 1];
  return misplaced;
}

void ReportPosts(ScriptPane& pane) {
  std::vector<double> totals;
  for (int round = 0; round < kPostRounds; ++round) {
    totals.push_back(PostAll(pane));
    const std::size_t misplaced = CountMisplaced(pane);
    Require(misplaced == 0, (std::to_string(misplaced) + " scripts are lost or out of order").c_str());
  }
  Row("5 000 scripts posted by a worker, all run in order", Median(totals), "ms");
}

void ReportRoundTrips(ScriptPane& pane) {
  std::vector<double> times;
  for (int i = 0; i < kAwaited; ++i)
    times.push_back(Milliseconds([&] { static_cast<void>(pane.Run(L"1")); }));
  Row("add-in to page to add-in, median", Median(times), "ms");
  Row("add-in to page to add-in, 95th percentile", Quantile(times, 0.95), "ms");
}

void Run(const std::string& url) {
  const auto service = devhost::ParseServiceAddress(url);
  Require(service.has_value(), "usage: qv_script_bench SERVICE");
  devhost::WriteServiceAddress(*service);
  // The bridge learns from it where the panel's own pages come from.
  HostSession::Get().Connect(nullptr, HostKind::kExcel, L"16.0");
  SetEnvironmentVariableW(L"QV_DEVHOST_BROWSER", L"chromium");
  const HWND parent =
      CreateWindowW(L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 500, 700, nullptr, nullptr, nullptr, nullptr);
  ScriptPane pane(parent);
  ReportPosts(pane);
  ReportRoundTrips(pane);
}

}  // namespace
}  // namespace qv::bench

int main(int count, char** arguments) {
  return qv::bench::RunOleProgram([&] { qv::bench::Run(count > 1 ? arguments[1] : ""); });
}
