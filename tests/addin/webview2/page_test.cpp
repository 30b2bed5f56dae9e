#include <thread>

#include "web_view_fixture.h"

namespace qv::test {
namespace {

using Lines = std::vector<std::wstring>;

class WebViewPage : public WebViewTest {
 protected:
  void SetUp() override {
    WebViewTest::SetUp();
    ASSERT_NO_FATAL_FAILURE(Open());
  }

  [[nodiscard]] std::wstring Source() const {
    LPWSTR source = nullptr;
    EXPECT_HRESULT_SUCCEEDED(view_->get_Source(&source));
    return TakeText(source);
  }
};

TEST_F(WebViewPage, NavigatesLaterAndThenHasTheNewSource) {
  ListenToNavigation();
  ASSERT_HRESULT_SUCCEEDED(view_->Navigate(L"http://127.0.0.1/a"));
  EXPECT_TRUE(events_.empty());
  EXPECT_EQ(Source(), L"about:blank");
  ASSERT_TRUE(WaitForEvents(2));
  EXPECT_EQ(events_, (Lines{L"starting http://127.0.0.1/a", L"completed 1 0"}));
  EXPECT_EQ(Source(), L"http://127.0.0.1/a");
}

TEST_F(WebViewPage, CancelledFailedAndOvertakenNavigationsDoNotSucceed) {
  ListenToNavigation(L"/cancelled");
  ASSERT_HRESULT_SUCCEEDED(view_->Navigate(L"http://127.0.0.1/cancelled"));
  ASSERT_TRUE(WaitForEvents(2));
  EXPECT_EQ(events_.back(), L"completed 0 14");
  EXPECT_EQ(Source(), L"about:blank");

  Control().FailNextNavigation(COREWEBVIEW2_WEB_ERROR_STATUS_CANNOT_CONNECT);
  ASSERT_HRESULT_SUCCEEDED(view_->Navigate(L"http://127.0.0.1/down"));
  ASSERT_TRUE(WaitForEvents(4));
  EXPECT_EQ(events_.back(), L"completed 0 12");

  events_.clear();
  ASSERT_HRESULT_SUCCEEDED(view_->Navigate(L"http://127.0.0.1/old"));
  ASSERT_HRESULT_SUCCEEDED(view_->Navigate(L"http://127.0.0.1/new"));
  ASSERT_TRUE(WaitForEvents(4));
  EXPECT_EQ(events_, (Lines{L"starting http://127.0.0.1/old", L"starting http://127.0.0.1/new",
                            L"completed 0 14", L"completed 1 0"}));
  EXPECT_EQ(Source(), L"http://127.0.0.1/new");
}

TEST_F(WebViewPage, ScriptsAnswerLaterWithNullOrTheGivenResult) {
  Control().SetScriptResult(L"exportState", S_OK, L"{\"page\":1}");
  Lines results;
  const auto handler = MakeCallback<ICoreWebView2ExecuteScriptCompletedHandler>(
      [&](HRESULT, LPCWSTR json) { results.push_back(json); });
  ASSERT_HRESULT_SUCCEEDED(view_->ExecuteScript(L"f()", handler.Get()));
  ASSERT_HRESULT_SUCCEEDED(view_->ExecuteScript(L"g()", nullptr));
  ASSERT_HRESULT_SUCCEEDED(view_->ExecuteScript(L"window.exportState()", handler.Get()));
  EXPECT_TRUE(results.empty());
  ASSERT_TRUE(PumpUntil([&] { return results.size() == 2; }, kPatienceMs));
  EXPECT_EQ(results, (Lines{L"null", L"{\"page\":1}"}));
}

TEST_F(WebViewPage, EverythingSentIsKeptInOneOrder) {
  const auto before = Control().ItemCount();
  ASSERT_HRESULT_SUCCEEDED(view_->Navigate(L"http://127.0.0.1/"));
  ASSERT_HRESULT_SUCCEEDED(view_->ExecuteScript(L"f()", nullptr));
  ASSERT_HRESULT_SUCCEEDED(view_->PostWebMessageAsJson(L"{\"a\":\"\u4e2d\"}"));
  EXPECT_EQ(view_->PostWebMessageAsJson(L"{\"a\":"), E_INVALIDARG);
  const std::pair<PageItemKind, const wchar_t*> expected[] = {
      {PageItemKind::kNavigate, L"http://127.0.0.1/"},
      {PageItemKind::kScript, L"f()"},
      {PageItemKind::kJson, L"{\"a\":\"\u4e2d\"}"},
      {PageItemKind::kRejected, L"{\"a\":"},
  };
  ASSERT_EQ(Control().ItemCount(), before + std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    PageItem item{};
    ASSERT_TRUE(Control().Item(before + i, &item));
    EXPECT_EQ(item.sequence, before + i + 1);
    EXPECT_EQ(item.view, ViewNumber());
    EXPECT_EQ(item.kind, expected[i].first);
    EXPECT_STREQ(item.text, expected[i].second);
  }
}

TEST_F(WebViewPage, PageMessagesArriveLaterWithTheirSourceAndKind) {
  ListenToNavigation();
  ASSERT_HRESULT_SUCCEEDED(view_->Navigate(L"http://127.0.0.1/panel"));
  ASSERT_TRUE(WaitForEvents(2));
  Lines received;
  EventRegistrationToken token{};
  const auto handler = MakeCallback<ICoreWebView2WebMessageReceivedEventHandler>(
      [&](ICoreWebView2*, ICoreWebView2WebMessageReceivedEventArgs* args) {
        LPWSTR source = nullptr;
        LPWSTR text = nullptr;
        LPWSTR json = nullptr;
        ASSERT_HRESULT_SUCCEEDED(args->get_Source(&source));
        const HRESULT hr = args->TryGetWebMessageAsString(&text);
        ASSERT_HRESULT_SUCCEEDED(args->get_WebMessageAsJson(&json));
        received.push_back(TakeText(source) + L" " + (hr == S_OK ? TakeText(text) : L"(none)") + L" " +
                           TakeText(json));
        EXPECT_TRUE(hr == S_OK || hr == E_INVALIDARG);
      });
  ASSERT_HRESULT_SUCCEEDED(view_->add_WebMessageReceived(handler.Get(), &token));

  ASSERT_TRUE(Control().PostPageString(ViewNumber(), L"say \"hi\"", nullptr));
  ASSERT_TRUE(Control().PostPageJson(ViewNumber(), L"{\"a\":1}", L"http://evil.test/"));
  EXPECT_FALSE(Control().PostPageJson(ViewNumber(), L"{", nullptr));
  EXPECT_FALSE(Control().PostPageString(ViewNumber() + 1, L"x", nullptr));
  EXPECT_TRUE(received.empty());
  ASSERT_TRUE(PumpUntil([&] { return received.size() == 2; }, kPatienceMs));
  EXPECT_EQ(received, (Lines{L"http://127.0.0.1/panel say \"hi\" \"say \\\"hi\\\"\"",
                             L"http://evil.test/ (none) {\"a\":1}"}));
}

TEST_F(WebViewPage, NoMessagePassesWhileMessagesAreDisabled) {
  ComPtr<ICoreWebView2Settings> settings;
  ASSERT_HRESULT_SUCCEEDED(view_->get_Settings(settings.GetAddressOf()));
  ASSERT_HRESULT_SUCCEEDED(settings->put_IsWebMessageEnabled(FALSE));
  EXPECT_EQ(view_->PostWebMessageAsJson(L"1"), E_ACCESSDENIED);
  int received = 0;
  EventRegistrationToken token{};
  const auto handler =
      MakeCallback<ICoreWebView2WebMessageReceivedEventHandler>([&](auto*, auto*) { ++received; });
  ASSERT_HRESULT_SUCCEEDED(view_->add_WebMessageReceived(handler.Get(), &token));
  ASSERT_TRUE(Control().PostPageString(ViewNumber(), L"x", nullptr));
  devhost::DispatchWaitingMessages();
  EXPECT_EQ(received, 0);
}

TEST_F(WebViewPage, CloseDropsHandlersScriptsAndTheChildWindow) {
  int calls = 0;
  EventRegistrationToken token{};
  auto received = MakeCallback<ICoreWebView2WebMessageReceivedEventHandler>([&](auto*, auto*) { ++calls; });
  auto script = MakeCallback<ICoreWebView2ExecuteScriptCompletedHandler>([&](HRESULT, LPCWSTR) { ++calls; });
  ListenToNavigation();
  ASSERT_HRESULT_SUCCEEDED(view_->add_WebMessageReceived(received.Get(), &token));
  ASSERT_HRESULT_SUCCEEDED(view_->ExecuteScript(L"f()", script.Get()));
  ASSERT_HRESULT_SUCCEEDED(view_->Navigate(L"http://127.0.0.1/"));
  const auto number = ViewNumber();
  ASSERT_TRUE(Control().PostPageString(number, L"late", nullptr));

  ASSERT_HRESULT_SUCCEEDED(controller_->Close());
  EXPECT_EQ(received.Detach()->Release(), 0u);
  EXPECT_EQ(script.Detach()->Release(), 0u);
  EXPECT_EQ(GetWindow(parent_, GW_CHILD), nullptr);
  devhost::DispatchWaitingMessages();
  EXPECT_EQ(calls, 0);
  EXPECT_TRUE(events_.empty());
  EXPECT_EQ(view_->ExecuteScript(L"f()", nullptr), HRESULT_FROM_WIN32(ERROR_INVALID_STATE));
  EXPECT_FALSE(Control().PostPageString(number, L"x", nullptr));
}

TEST_F(WebViewPage, ControllerRemembersBoundsVisibilityAndColour) {
  ComPtr<ICoreWebView2Controller2> second;
  ASSERT_HRESULT_SUCCEEDED(controller_->QueryInterface(__uuidof(ICoreWebView2Controller2),
                                                       reinterpret_cast<void**>(second.GetAddressOf())));
  ASSERT_HRESULT_SUCCEEDED(second->put_Bounds({10, 20, 110, 220}));
  ASSERT_HRESULT_SUCCEEDED(second->put_IsVisible(FALSE));
  ASSERT_HRESULT_SUCCEEDED(second->put_DefaultBackgroundColor({255, 1, 2, 3}));
  EXPECT_EQ(second->put_DefaultBackgroundColor({128, 1, 2, 3}), E_INVALIDARG);

  const auto views = library_->ViewsIn(parent_);
  ASSERT_EQ(views.size(), 1u);
  EXPECT_FALSE(views[0].visible);
  EXPECT_EQ(views[0].background, 0xFF010203u);
  EXPECT_STREQ(views[0].userDataFolder, L"C:\\profile");
  RECT child{};
  GetWindowRect(GetWindow(parent_, GW_CHILD), &child);
  EXPECT_EQ(child.right - child.left, 100);
  EXPECT_EQ(child.bottom - child.top, 200);
}

TEST_F(WebViewPage, RefusesAnotherThread) {
  HRESULT script = S_OK;
  HRESULT close = S_OK;
  std::thread([&] {
    script = view_->ExecuteScript(L"f()", nullptr);
    close = controller_->Close();
  }).join();
  EXPECT_EQ(script, RPC_E_WRONG_THREAD);
  EXPECT_EQ(close, RPC_E_WRONG_THREAD);
}

}  // namespace
}  // namespace qv::test
