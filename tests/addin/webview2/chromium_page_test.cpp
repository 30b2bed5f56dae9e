#include "chromium_fixture.h"

namespace qv::test {
namespace {

class ChromiumPage : public ChromiumTest {
 protected:
  void SetUp() override {
    ChromiumTest::SetUp();
    ASSERT_NO_FATAL_FAILURE(Open());
  }

  /// The result of a script that the host runs.
  [[nodiscard]] std::pair<HRESULT, std::wstring> Evaluate(const wchar_t* script) {
    const auto number = Control().Evaluate(ViewNumber(), script);
    devhost::Evaluation result{};
    if (!PumpUntil([&] { return Control().TakeEvaluation(number, &result); }, kPatienceMs))
      return {E_PENDING, L""};
    return {result.result, result.text};
  }
};

TEST_F(ChromiumPage, GivesTheJsonTextOfWhatAScriptIsWorth) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      {L"1 + 1", L"2"},
      {L"({b: 1, a: [true, null, 'x']})", L"{\"b\":1,\"a\":[true,null,\"x\"]}"},
      {L"'\u4e2d\\u00e9\\ud83d\\ude00 \"q\" \\n'", L"\"\u4e2d\u00e9\xD83D\xDE00 \\\"q\\\" \\n\""},
      {L"'a\\ud800b\\udc00'", L"\"a\uFFFDb\uFFFD\""},
      {L"'\\\\ud800'", L"\"\\\\ud800\""},
      {L"undefined", L"null"},
      {L"throw new Error('no')", L"null"},
      {L"syntax error", L"null"},
      {L"NaN", L"null"},
      {L"-0", L"0"},
      {L"document.body", L"{}"},
      {L"let kept = 7; kept", L"7"},
      {L"kept + 1", L"8"},
  };
  for (const auto& [script, json] : cases)
    EXPECT_EQ(Run(script), json) << ToUtf8(script);
}

TEST_F(ChromiumPage, AnswersManyScriptsInOrderAndOnItsThread) {
  constexpr int kCount = 200;
  std::vector<int> results;
  bool otherThread = false;
  const auto handler = MakeCallback<ICoreWebView2ExecuteScriptCompletedHandler>([&](HRESULT, LPCWSTR json) {
    otherThread |= GetCurrentThreadId() != thread_;
    results.push_back(std::stoi(json));
  });
  for (int i = 0; i < kCount; ++i) {
    const std::wstring script = std::to_wstring(i);
    ASSERT_HRESULT_SUCCEEDED(view_->ExecuteScript(script.c_str(), i % 2 ? handler.Get() : nullptr));
  }
  EXPECT_TRUE(results.empty());
  ASSERT_TRUE(PumpUntil([&] { return results.size() == kCount / 2; }, kPatienceMs));
  EXPECT_FALSE(otherThread);
  for (int i = 0; i < kCount / 2; ++i)
    EXPECT_EQ(results[static_cast<std::size_t>(i)], 2 * i + 1);
}

TEST_F(ChromiumPage, CarriesMessagesBothWaysInOrderAlsoAfterAReload) {
  PageServer server({{"/echo", Html(R"(<script>
    chrome.webview.addEventListener('message', e => chrome.webview.postMessage({got: e.data}));
    chrome.webview.postMessage('ready');
    </script>)")}});
  ListenToMessages();
  const std::wstring from = server.Url(L"/echo") + L" ";
  for (const bool isReload : {false, true}) {
    received_.clear();
    if (isReload) {
      ASSERT_HRESULT_SUCCEEDED(view_->ExecuteScript(L"location.reload()", nullptr));
    } else {
      ASSERT_NO_FATAL_FAILURE(Load(server.Url(L"/echo")));
    }
    ASSERT_TRUE(WaitForMessages(1));
    ASSERT_HRESULT_SUCCEEDED(view_->PostWebMessageAsJson(L"{\"z\":1,\"a\":\"\u4e2d\"}"));
    ASSERT_HRESULT_SUCCEEDED(view_->ExecuteScript(L"chrome.webview.postMessage('between')", nullptr));
    ASSERT_HRESULT_SUCCEEDED(view_->PostWebMessageAsJson(L"[2]"));
    ASSERT_TRUE(WaitForMessages(4));
    EXPECT_EQ(received_,
              (Lines{L"string " + from + L"ready", L"json " + from + L"{\"got\":{\"z\":1,\"a\":\"\u4e2d\"}}",
                     L"string " + from + L"between", L"json " + from + L"{\"got\":[2]}"}));
  }
  EXPECT_EQ(Run(L"Object.keys(chrome.webview).length + typeof quorvantisDevhostPost"), L"\"0undefined\"");
}

TEST_F(ChromiumPage, ListenersCanBeRemovedAndFramesHaveNone) {
  ListenToMessages();
  ASSERT_NO_FATAL_FAILURE(LoadHtml(L"<iframe srcdoc='<p>x</p>'></iframe>"));
  EXPECT_EQ(Run(L"var n = 0, f = () => ++n; chrome.webview.addEventListener('message', f);"
                L"typeof (frames[0].chrome || {}).webview"),
            L"\"undefined\"");
  ASSERT_HRESULT_SUCCEEDED(view_->PostWebMessageAsJson(L"1"));
  EXPECT_EQ(Run(L"chrome.webview.removeEventListener('message', f); n"), L"1");
  ASSERT_HRESULT_SUCCEEDED(view_->PostWebMessageAsJson(L"1"));
  EXPECT_EQ(Run(L"n"), L"1");
  EXPECT_EQ(Run(L"try { chrome.webview.postMessage(undefined) } catch (e) { e.name }"), L"\"TypeError\"");
  EXPECT_TRUE(received_.empty());
}

TEST_F(ChromiumPage, MessagesAheadOfThePageAreLost) {
  PageServer server({{"/listen", Html(R"(<script>var got = [];
    chrome.webview.addEventListener('message', e => got.push(e.data));</script>)")}});
  bool ended = false;
  EventRegistrationToken token{};
  const auto completed =
      MakeCallback<ICoreWebView2NavigationCompletedEventHandler>([&](auto*, auto*) { ended = true; });
  ASSERT_HRESULT_SUCCEEDED(view_->add_NavigationCompleted(completed.Get(), &token));
  ASSERT_HRESULT_SUCCEEDED(view_->PostWebMessageAsJson(L"1"));
  ASSERT_HRESULT_SUCCEEDED(view_->Navigate(server.Url(L"/listen").c_str()));
  ASSERT_HRESULT_SUCCEEDED(view_->PostWebMessageAsJson(L"2"));
  ASSERT_TRUE(PumpUntil([&] { return ended; }, kPatienceMs));
  ASSERT_HRESULT_SUCCEEDED(view_->PostWebMessageAsJson(L"3"));
  EXPECT_EQ(Run(L"got"), L"[3]");
}

TEST_F(ChromiumPage, SettingsStopMessagesAndScripts) {
  ListenToMessages();
  ComPtr<ICoreWebView2Settings> settings;
  ASSERT_HRESULT_SUCCEEDED(view_->get_Settings(settings.GetAddressOf()));
  ASSERT_HRESULT_SUCCEEDED(settings->put_IsWebMessageEnabled(FALSE));
  EXPECT_EQ(Run(L"chrome.webview.postMessage('unheard')"), L"null");
  EXPECT_EQ(view_->PostWebMessageAsJson(L"1"), E_ACCESSDENIED);
  ASSERT_HRESULT_SUCCEEDED(settings->put_IsWebMessageEnabled(TRUE));
  EXPECT_EQ(Run(L"chrome.webview.postMessage('heard')"), L"null");
  ASSERT_TRUE(WaitForMessages(1));
  EXPECT_EQ(received_, Lines{L"string about:blank heard"});

  const std::wstring page = L"<title>off</title><script>document.title = 'on'</script>";
  ASSERT_HRESULT_SUCCEEDED(settings->put_IsScriptEnabled(FALSE));
  ASSERT_NO_FATAL_FAILURE(LoadHtml(page));
  EXPECT_EQ(Run(L"document.title"), L"\"off\"");
  ASSERT_HRESULT_SUCCEEDED(settings->put_IsScriptEnabled(TRUE));
  ASSERT_NO_FATAL_FAILURE(LoadHtml(page));
  EXPECT_EQ(Run(L"document.title"), L"\"on\"");
}

TEST_F(ChromiumPage, KeepsWhatPagesAndTheAddInSay) {
  const auto before = Control().ItemCount();
  ASSERT_NO_FATAL_FAILURE(Load(L"data:text/html,x"));
  EXPECT_EQ(Run(L"chrome.webview.postMessage('text'); chrome.webview.postMessage({a: 1})"), L"null");
  ASSERT_TRUE(PumpUntil([&] { return Control().ItemCount() == before + 4; }, kPatienceMs));
  const std::pair<PageItemKind, const wchar_t*> expected[] = {
      {PageItemKind::kNavigate, L"data:text/html,x"},
      {PageItemKind::kScript, L"chrome.webview.postMessage('text'); chrome.webview.postMessage({a: 1})"},
      {PageItemKind::kMessage, L"text"},
      {PageItemKind::kMessage, L"{\"a\":1}"},
  };
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    PageItem item{};
    ASSERT_TRUE(Control().Item(before + i, &item));
    EXPECT_EQ(item.kind, expected[i].first);
    EXPECT_STREQ(item.text, expected[i].second);
    EXPECT_EQ(item.view, ViewNumber());
  }
}

TEST_F(ChromiumPage, RunsScriptsOfTheHostAndTellsHowTheyEnded) {
  const auto before = Control().ItemCount();
  using Result = std::pair<HRESULT, std::wstring>;
  EXPECT_EQ(Evaluate(L"new Promise(done => setTimeout(() => done({a: 1}), 20))"), Result(S_OK, L"{\"a\":1}"));
  const auto thrown = Evaluate(L"throw new Error('on purpose')");
  EXPECT_EQ(thrown.first, DISP_E_EXCEPTION);
  EXPECT_TRUE(Contains(thrown.second, L"Error: on purpose"));
  EXPECT_EQ(Control().Evaluate(ViewNumber() + 1, L"1"), 0u);
  EXPECT_EQ(Control().ItemCount(), before);

  const auto endless = Control().Evaluate(ViewNumber(), L"new Promise(() => {})");
  devhost::Evaluation result{};
  ASSERT_HRESULT_SUCCEEDED(controller_->Close());
  ASSERT_TRUE(Control().TakeEvaluation(endless, &result));
  EXPECT_EQ(result.result, HRESULT_FROM_WIN32(ERROR_INVALID_STATE));
  EXPECT_FALSE(Control().TakeEvaluation(endless, &result));
}

TEST_F(ChromiumPage, NeitherDialogsNorNewWindowsHoldThePageUp) {
  PageServer server({{"/a", Html("<a id=link target=_blank rel=noopener href=/popup>x</a>")}});
  ASSERT_NO_FATAL_FAILURE(Load(server.Url(L"/a")));
  EXPECT_EQ(Run(L"[alert('x'), confirm('y'), prompt('z', 'w')]"), L"[null,false,null]");
  // Only the user opens windows: a press of Enter is one.
  EXPECT_EQ(Run(L"document.getElementById('link').focus()"), L"null");
  SendMessageW(Control().ViewWindow(ViewNumber()), WM_KEYDOWN, VK_RETURN, 0);
  SendMessageW(Control().ViewWindow(ViewNumber()), WM_CHAR, VK_RETURN, 0);
  EXPECT_EQ(Run(L"window.onkeyup = () => { window.released = 1 }; 1"), L"1");
  SendMessageW(Control().ViewWindow(ViewNumber()), WM_KEYUP, VK_RETURN, 0);
  ASSERT_TRUE(Becomes(L"window.released", L"1"));
  EXPECT_TRUE(
      Becomes(L"fetch('/popup-may-come').catch(() => 0); performance.getEntries().length > 0", L"true"));
  ASSERT_TRUE(PumpUntil([&] { return server.WasAsked("/popup-may-come"); }, kPatienceMs));
  EXPECT_FALSE(server.WasAsked("/popup"));
}

TEST_F(ChromiumPage, ViewsShareOneStoreAlsoWithLaterBrowsers) {
  PageServer server({{"/a", Html("a")}});
  ASSERT_NO_FATAL_FAILURE(Load(server.Url(L"/a")));
  ASSERT_NO_FATAL_FAILURE(OpenAnother());
  ICoreWebView2* other = others_[0].page.Get();
  ASSERT_NO_FATAL_FAILURE(LoadIn(other, server.Url(L"/a")));
  EXPECT_EQ(Run(L"localStorage.setItem('key', 'value')"), L"null");
  EXPECT_EQ(RunIn(other, L"localStorage.getItem('key')"), L"\"value\"");

  ASSERT_HRESULT_SUCCEEDED(others_[0].controller->Close());
  ASSERT_HRESULT_SUCCEEDED(controller_->Close());
  others_.clear();
  view_.Reset();
  controller_.Reset();
  environment_.Reset();
  ASSERT_NO_FATAL_FAILURE(Open());
  ASSERT_NO_FATAL_FAILURE(Load(server.Url(L"/a")));
  EXPECT_EQ(Run(L"localStorage.getItem('key')"), L"\"value\"");
}

}  // namespace
}  // namespace qv::test
