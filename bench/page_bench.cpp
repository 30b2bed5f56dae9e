// What a user of the panel waits for, with the panel's own page in a real browser:  qv_page_bench SERVICE
// The first press in this process starts the browser, on a new profile; the second one finds it running.

#include <ole2.h>
#include <windows.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "engines/memory/memory_engine.h"
#include "foundation/text.h"
#include "host/command_line.h"
#include "host/development_host.h"
#include "host/message_pump.h"
#include "host/settings_file.h"
#include "host/windows_path.h"
#include "measure.h"
#include "ole_program.h"

namespace qv::bench {
namespace {

constexpr DWORD kPatienceMs = 30'000;

/// The page's own record of its first paint with anything in it: when the page began to load, in milliseconds
/// since 1970, and how much later it was painted.
constexpr wchar_t kPaintScript[] =
    LR"(new Promise(resolve => {
  new PerformanceObserver((list, observer) => {
    const paint = list.getEntriesByName('first-contentful-paint')[0];
    if (!paint) return;
    observer.disconnect();
    resolve({begun: performance.timeOrigin, after: paint.startTime});
  }).observe({type: 'paint', buffered: true});
}))";

/// The milliseconds of 300 requests, one after the other, each from the post to its answer.
constexpr wchar_t kRequestScript[] =
    LR"((async () => {
  const times = [];
  let settle;
  window.QuorvantisTerminology._onResponse = answer => settle(answer);
  for (let i = 0; i < 300; ++i) {
    const requestId = `bench-${i}`;
    const begun = performance.now();
    const answered = new Promise(resolve => { settle = resolve; });
    chrome.webview.postMessage(JSON.stringify({action: 'uiLangGet', requestId}));
    const answer = await answered;
    times.push(performance.now() - begun);
    if (answer.requestId !== requestId || !answer.ok || !answer.data.uiLang)
      throw new Error(`the answer to ${requestId} is ${JSON.stringify(answer)}`);
  }
  return times;
})())";

/// Milliseconds since 1970.
double Now() {
  constexpr double kTicksPerMs = 10'000;
  constexpr double kEpochMs = 11'644'473'600'000;
  FILETIME now{};
  GetSystemTimePreciseAsFileTime(&now);
  const ULARGE_INTEGER ticks{.u = {now.dwLowDateTime, now.dwHighDateTime}};
  return static_cast<double>(ticks.QuadPart) / kTicksPerMs - kEpochMs;
}

/// What the script is worth in the page that the pane shows.
nlohmann::json Evaluate(devhost::DevelopmentHost& host, std::uint32_t view, const wchar_t* script) {
  devhost::WebViewControl& control = host.WebViews().Control();
  const std::uint64_t number = control.Evaluate(view, script);
  devhost::Evaluation result{};
  Require(devhost::PumpUntil([&] { return control.TakeEvaluation(number, &result); }, kPatienceMs),
          "the page does not answer");
  const std::string text = ToUtf8(result.text);
  if (FAILED(result.result)) throw std::runtime_error("the page's script failed: " + text);
  return nlohmann::json::parse(text);
}

/// Presses the button and waits for the page; the number of its view.
std::uint32_t OpenPage(devhost::DevelopmentHost& host) {
  host.PressButton(*host.Session().TheRibbon()->Find(L"btnTranslateFullDoc"));
  const auto panes = host.Panes().OpenPanes();
  Require(!panes.empty() && host.WaitForPage(panes.back(), kPatienceMs), "the page has not loaded");
  return host.WebViews().ViewsIn(panes.back().frame->Window()).front().view;
}

/// Opens a pane in the active window and reports when its page was painted; the number of its view.
std::uint32_t ReportPaint(devhost::DevelopmentHost& host, const std::string& name) {
  const double pressed = Now();
  const std::uint32_t view = OpenPage(host);
  const nlohmann::json paint = Evaluate(host, view, kPaintScript);
  const double begun = paint.at("begun").get<double>() - pressed;
  const double after = paint.at("after").get<double>();
  Require(begun > 0 && pressed + begun + after < Now(), "the browser's clock is not this program's");
  Row(name + ", press to the page's first paint", begun + after, "ms");
  Row(name + ", of it the page itself", after, "ms");
  return view;
}

void ReportRequests(devhost::DevelopmentHost& host, std::uint32_t view) {
  const auto times = Evaluate(host, view, kRequestScript).get<std::vector<double>>();
  Row("page to add-in to page, median", Median(times), "ms");
  Row("page to add-in to page, 95th percentile", Quantile(times, 0.95), "ms");
}

void Run(const std::string& url) {
  const auto service = devhost::ParseServiceAddress(url);
  Require(service.has_value(), "usage: qv_page_bench SERVICE");
  devhost::WriteServiceAddress(*service);
  SetEnvironmentVariableW(L"QV_DEVHOST_BROWSER", L"chromium");
  devhost::MemoryEngine engine(devhost::HostStyle::kExcel);
  engine.AddWorkbook(L"bench.xlsx", L"c:\\books");
  devhost::CallLog calls;
  devhost::DevelopmentHost host(devhost::ProgramFolder() + L"\\QuorvantisExcel.dll", engine, calls);
  const std::uint32_t view = ReportPaint(host, "first pane");
  ReportRequests(host, view);
  engine.AddWorkbook(L"second.xlsx", L"c:\\books");
  Require(ReportPaint(host, "pane in another window") != view, "no second pane was opened");
  Require(host.End().Clean(), "something was left behind");
}

}  // namespace
}  // namespace qv::bench

int main(int count, char** arguments) {
  return qv::bench::RunOleProgram([&] { qv::bench::Run(count > 1 ? arguments[1] : ""); });
}
