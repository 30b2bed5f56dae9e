#include <algorithm>

#include "chromium_fixture.h"

namespace qv::test {
namespace {

constexpr HRESULT kLost = HRESULT_FROM_WIN32(ERROR_PROCESS_ABORTED);
constexpr HRESULT kInvalidState = HRESULT_FROM_WIN32(ERROR_INVALID_STATE);

class ChromiumLoss : public ChromiumTest {
 protected:
  /// Writes "failed KIND" into `events_`.
  void ListenToFailures(ICoreWebView2* view) {
    EventRegistrationToken token{};
    const auto failed = MakeCallback<ICoreWebView2ProcessFailedEventHandler>(
        [this](ICoreWebView2*, ICoreWebView2ProcessFailedEventArgs* args) {
          COREWEBVIEW2_PROCESS_FAILED_KIND kind{};
          ASSERT_HRESULT_SUCCEEDED(args->get_ProcessFailedKind(&kind));
          events_.push_back(L"failed " + std::to_wstring(kind));
        });
    ASSERT_HRESULT_SUCCEEDED(view->add_ProcessFailed(failed.Get(), &token));
  }

  /// Runs a script that never ends by itself and writes "script HRESULT" into `events_`.
  void WaitInVain() {
    const auto handler = MakeCallback<ICoreWebView2ExecuteScriptCompletedHandler>(
        [this](HRESULT hr, LPCWSTR) { events_.push_back(hr == kLost ? L"script lost" : L"script ended"); });
    ASSERT_HRESULT_SUCCEEDED(view_->ExecuteScript(L"while (true) {}", handler.Get()));
  }
};

TEST_F(ChromiumLoss, OfTheBrowserEndsEverythingOnceInEachView) {
  PageServer server({{"/a", Html("a")}});
  ASSERT_NO_FATAL_FAILURE(Open());
  ASSERT_NO_FATAL_FAILURE(OpenAnother());
  ASSERT_NO_FATAL_FAILURE(Load(server.Url(L"/a")));
  ListenToNavigation();
  ListenToFailures(view_.Get());
  ListenToFailures(others_[0].page.Get());
  WaitInVain();
  ASSERT_HRESULT_SUCCEEDED(view_->Navigate(server.Url(L"/never").c_str()));
  ASSERT_TRUE(WaitForEvents(1));
  const auto evaluation = Control().Evaluate(ViewNumber(), L"1");

  ASSERT_TRUE(Control().CrashBrowser());
  ASSERT_TRUE(WaitForEvents(5));
  devhost::DispatchWaitingMessages();
  // In this order; the other view hears of it some time in between.
  const auto other = std::find(events_.begin(), events_.end(), L"failed 0");
  ASSERT_NE(other, events_.end());
  events_.erase(other);
  EXPECT_EQ(events_,
            (Lines{L"starting " + server.Url(L"/never"), L"script lost", L"completed 0 16", L"failed 0"}));
  devhost::Evaluation result{};
  ASSERT_TRUE(Control().TakeEvaluation(evaluation, &result));
  EXPECT_EQ(result.result, kLost);
  EXPECT_EQ(view_->Navigate(L"about:blank"), kInvalidState);
  EXPECT_EQ(view_->ExecuteScript(L"1", nullptr), kInvalidState);
  EXPECT_EQ(view_->PostWebMessageAsJson(L"1"), kInvalidState);
  EXPECT_EQ(controller_->put_Bounds({0, 0, 9, 9}), kInvalidState);
  Outcome<ICoreWebView2Controller> late;
  EXPECT_EQ(CreateController(late), kInvalidState);
  EXPECT_FALSE(Control().CrashBrowser());
  EXPECT_EQ(Control().ViewWindow(ViewNumber()), nullptr);
}

TEST_F(ChromiumLoss, OfTheBrowserIsMendedByANewEnvironmentOnTheSameProfile) {
  PageServer server({{"/a", Html("a")}});
  ASSERT_NO_FATAL_FAILURE(Open());
  ASSERT_NO_FATAL_FAILURE(Load(server.Url(L"/a")));
  EXPECT_EQ(Run(L"document.cookie = 'key=value; max-age=1000'; navigator.storage.persist().then(() => 1); 1"),
            L"1");
  // The failed environment makes the new one, as an add-in would.
  Outcome<ICoreWebView2Environment> second;
  EventRegistrationToken token{};
  const auto failed = MakeCallback<ICoreWebView2ProcessFailedEventHandler>(
      [&](auto*, auto*) { ASSERT_HRESULT_SUCCEEDED(CreateEnvironment(second)); });
  ASSERT_HRESULT_SUCCEEDED(view_->add_ProcessFailed(failed.Get(), &token));
  ASSERT_TRUE(Control().CrashBrowser());
  ASSERT_TRUE(PumpUntil([&] { return second.calls == 1; }, kPatienceMs));
  ASSERT_HRESULT_SUCCEEDED(second.result);
  ASSERT_HRESULT_SUCCEEDED(controller_->Close());
  view_.Reset();
  environment_ = second.object;
  ASSERT_NO_FATAL_FAILURE(OpenAnother());
  ASSERT_NO_FATAL_FAILURE(LoadIn(others_[0].page.Get(), server.Url(L"/a")));
  EXPECT_EQ(RunIn(others_[0].page.Get(), L"1 + 1"), L"2");
}

TEST_F(ChromiumLoss, OfAPageEndsItsScriptsAndANavigationMendsIt) {
  PageServer server({{"/a", Html("a")}});
  ASSERT_NO_FATAL_FAILURE(Open());
  ASSERT_NO_FATAL_FAILURE(OpenAnother());
  ASSERT_NO_FATAL_FAILURE(Load(server.Url(L"/a")));
  ListenToFailures(view_.Get());
  ListenToFailures(others_[0].page.Get());
  ListenToMessages();
  WaitInVain();
  ASSERT_TRUE(Control().CrashPage(ViewNumber()));
  ASSERT_TRUE(WaitForEvents(2));
  EXPECT_EQ(events_, (Lines{L"script lost", L"failed 1"}));
  EXPECT_EQ(Run(L"1"), L"(failed)");
  ASSERT_HRESULT_SUCCEEDED(view_->PostWebMessageAsJson(L"1"));

  ASSERT_NO_FATAL_FAILURE(Load(server.Url(L"/a")));
  EXPECT_EQ(Run(L"chrome.webview.postMessage('back'); 1"), L"1");
  ASSERT_TRUE(WaitForMessages(1));
  EXPECT_EQ(RunIn(others_[0].page.Get(), L"2"), L"2");
  EXPECT_EQ(events_.size(), 2u);
}

TEST_F(ChromiumLoss, OfTheParentWindowAbortsTheViewThatIsOnItsWay) {
  ASSERT_NO_FATAL_FAILURE(OpenEnvironment());
  Outcome<ICoreWebView2Controller> outcome;
  ASSERT_HRESULT_SUCCEEDED(CreateController(outcome));
  DestroyWindow(parent_);
  EXPECT_EQ(outcome.calls, 1);
  EXPECT_EQ(outcome.result, E_ABORT);
}

/// Not a test of its own: what the next one starts in another process.
TEST_F(ChromiumLoss, DISABLED_OpensAndDies) {
  ASSERT_NO_FATAL_FAILURE(Open());
  ASSERT_EQ(ScratchFolders(GetCurrentProcessId()).size(), 1u);
  if (GetEnvironmentVariableW(L"QV_TEST_EXIT", nullptr, 0) != 0) ExitProcess(7);
  TerminateProcess(GetCurrentProcess(), 7);
}

TEST_F(ChromiumLoss, OfTheProcessEndsTheBrowserAndRemovesItsProfile) {
  wchar_t program[MAX_PATH] = L"";
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  for (const wchar_t* exit : {L"ExitProcess", static_cast<const wchar_t*>(nullptr)}) {
    SetEnvironmentVariableW(L"QV_TEST_EXIT", exit);
    std::wstring line =
        std::wstring(L"\"") + program +
        L"\" --gtest_also_run_disabled_tests --gtest_filter=ChromiumLoss.DISABLED_OpensAndDies";
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    ASSERT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                               nullptr, &startup, &process));
    const UniqueKernelHandle child(process.hProcess);
    const UniqueKernelHandle thread(process.hThread);
    ASSERT_EQ(WaitForSingleObject(child.Get(), 60'000), WAIT_OBJECT_0);
    DWORD code = 0;
    GetExitCodeProcess(child.Get(), &code);
    EXPECT_EQ(code, 7u);
    EXPECT_TRUE(PumpUntil([&] { return ScratchFolders(process.dwProcessId).empty(); }, kPatienceMs));
  }
}

TEST_F(ChromiumLoss, AMissingBrowserFailsTheEnvironmentAtOnce) {
  SetEnvironmentVariableW(L"QV_DEVHOST_CHROMIUM", L"/nonexistent/chromium");
  Outcome<ICoreWebView2Environment> outcome;
  ASSERT_HRESULT_SUCCEEDED(CreateEnvironment(outcome));
  ASSERT_TRUE(PumpUntil([&] { return outcome.calls == 1; }, kPatienceMs));
  EXPECT_EQ(outcome.result, HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
  EXPECT_EQ(outcome.object.Get(), nullptr);
}

}  // namespace
}  // namespace qv::test
