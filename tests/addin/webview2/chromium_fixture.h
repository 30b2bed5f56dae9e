#pragma once

#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "page_server.h"
#include "web_view_fixture.h"

namespace qv::test {

using Lines = std::vector<std::wstring>;

/// A web view with Chromium behind it. The last test of a suite waits until its browsers are gone.
class ChromiumTest : public WebViewTest {
 protected:
  void SetUp() override {
    SetEnvironmentVariableW(L"QV_DEVHOST_BROWSER", L"chromium");
    WebViewTest::SetUp();
    timer_ = WakeOften();
  }

  void TearDown() override {
    for (auto& view : others_) {
      EXPECT_HRESULT_SUCCEEDED(view.controller->Close());
    }
    others_.clear();
    WebViewTest::TearDown();
    KillTimer(nullptr, timer_);
    SetEnvironmentVariableW(L"QV_DEVHOST_BROWSER", nullptr);
    SetEnvironmentVariableW(L"QV_DEVHOST_CHROMIUM", nullptr);
  }

  /// For conditions that come true without a message.
  [[nodiscard]] static UINT_PTR WakeOften() { return SetTimer(nullptr, 0, 20, nullptr); }

  static void TearDownTestSuite() {
    const auto timer = WakeOften();
    EXPECT_TRUE(PumpUntil([] { return Browsers(L"started-*") == Browsers(L"ended-*"); }, kPatienceMs))
        << "a browser was left behind";
    KillTimer(nullptr, timer);
  }

  /// How many files of this kind lie in the scratch folders of this process's browsers.
  [[nodiscard]] static std::size_t Browsers(const wchar_t* pattern) {
    std::size_t count = 0;
    for (const auto& folder : ScratchFolders(GetCurrentProcessId()))
      count += FilesLike(folder + L"\\" + pattern).size();
    return count;
  }

  /// The scratch folders of the browsers of a process.
  [[nodiscard]] static Lines ScratchFolders(DWORD process) {
    wchar_t temporary[MAX_PATH] = L"/tmp";
    GetEnvironmentVariableW(L"TMPDIR", temporary, MAX_PATH);
    const std::wstring parent = L"Z:" + std::wstring(temporary) + L"\\";
    Lines folders = FilesLike(parent + L"quorvantis-browser-" + std::to_wstring(process) + L"-*");
    for (auto& folder : folders)
      folder.insert(0, parent);
    return folders;
  }

  [[nodiscard]] static Lines FilesLike(const std::wstring& pattern) {
    Lines names;
    WIN32_FIND_DATAW found{};
    const UniqueFind search(FindFirstFileW(pattern.c_str(), &found));
    if (!search) return names;
    do {
      names.push_back(found.cFileName);
    } while (FindNextFileW(search.Get(), &found));
    return names;
  }

  /// Navigates and waits for the end, successful or not.
  void Load(const std::wstring& uri) { LoadIn(view_.Get(), uri); }

  static void LoadIn(ICoreWebView2* view, const std::wstring& uri) {
    bool ended = false;
    EventRegistrationToken token{};
    const auto completed =
        MakeCallback<ICoreWebView2NavigationCompletedEventHandler>([&](auto*, auto*) { ended = true; });
    ASSERT_HRESULT_SUCCEEDED(view->add_NavigationCompleted(completed.Get(), &token));
    ASSERT_HRESULT_SUCCEEDED(view->Navigate(uri.c_str()));
    ASSERT_TRUE(PumpUntil([&] { return ended; }, kPatienceMs)) << ToUtf8(uri);
    ASSERT_HRESULT_SUCCEEDED(view->remove_NavigationCompleted(token));
  }

  /// Loads a page of this text.
  void LoadHtml(const std::wstring& html) { Load(L"data:text/html;charset=utf-8," + html); }

  /// The script's JSON result.
  [[nodiscard]] std::wstring Run(const std::wstring& script) { return RunIn(view_.Get(), script); }

  [[nodiscard]] static std::wstring RunIn(ICoreWebView2* view, const std::wstring& script) {
    std::wstring result = L"(no answer)";
    bool answered = false;
    const auto handler =
        MakeCallback<ICoreWebView2ExecuteScriptCompletedHandler>([&](HRESULT hr, LPCWSTR json) {
          result = SUCCEEDED(hr) ? json : L"(failed)";
          answered = true;
        });
    EXPECT_HRESULT_SUCCEEDED(view->ExecuteScript(script.c_str(), handler.Get()));
    EXPECT_TRUE(PumpUntil([&] { return answered; }, kPatienceMs)) << ToUtf8(script);
    return result;
  }

  /// Runs the script again and again until it gives this result, for what the page does in its own time.
  [[nodiscard]] bool Becomes(const std::wstring& script, const std::wstring& wanted) {
    std::wstring last;
    const ULONGLONG deadline = GetTickCount64() + kPatienceMs;
    while ((last = Run(script)) != wanted && GetTickCount64() < deadline) {
    }
    EXPECT_EQ(last, wanted) << ToUtf8(script);
    return last == wanted;
  }

  [[nodiscard]] std::wstring Source() const {
    LPWSTR source = nullptr;
    EXPECT_HRESULT_SUCCEEDED(view_->get_Source(&source));
    return TakeText(source);
  }

  /// Writes "kind source text" of each message into `received_`.
  void ListenToMessages() {
    EventRegistrationToken token{};
    const auto handler = MakeCallback<ICoreWebView2WebMessageReceivedEventHandler>(
        [this](ICoreWebView2*, ICoreWebView2WebMessageReceivedEventArgs* args) {
          EXPECT_EQ(GetCurrentThreadId(), thread_);
          LPWSTR source = nullptr;
          LPWSTR text = nullptr;
          ASSERT_HRESULT_SUCCEEDED(args->get_Source(&source));
          const bool isString = SUCCEEDED(args->TryGetWebMessageAsString(&text));
          if (!isString) {
            ASSERT_HRESULT_SUCCEEDED(args->get_WebMessageAsJson(&text));
          }
          received_.push_back((isString ? L"string " : L"json ") + TakeText(source) + L" " + TakeText(text));
        });
    ASSERT_HRESULT_SUCCEEDED(view_->add_WebMessageReceived(handler.Get(), &token));
  }

  [[nodiscard]] bool WaitForMessages(std::size_t count) {
    return PumpUntil([&] { return received_.size() >= count; }, kPatienceMs);
  }

  struct View {
    ComPtr<ICoreWebView2Controller> controller;
    ComPtr<ICoreWebView2> page;
  };

  /// Another view of the same environment, in the same parent.
  void OpenAnother() {
    Outcome<ICoreWebView2Controller> outcome;
    ASSERT_HRESULT_SUCCEEDED(CreateController(outcome));
    ASSERT_TRUE(PumpUntil([&] { return outcome.calls == 1; }, kPatienceMs));
    ASSERT_HRESULT_SUCCEEDED(outcome.result);
    auto& view = others_.emplace_back();
    view.controller = outcome.object;
    ASSERT_HRESULT_SUCCEEDED(view.controller->get_CoreWebView2(view.page.GetAddressOf()));
  }

  DWORD thread_ = GetCurrentThreadId();
  UINT_PTR timer_ = 0;
  Lines received_;
  std::vector<View> others_;
};

}  // namespace qv::test
