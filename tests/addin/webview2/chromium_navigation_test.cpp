#include "chromium_fixture.h"

namespace qv::test {
namespace {

class ChromiumNavigation : public ChromiumTest {
 protected:
  void SetUp() override {
    ChromiumTest::SetUp();
    ASSERT_NO_FATAL_FAILURE(Open());
  }
};

std::wstring Starting(const std::wstring& uri) {
  return L"starting " + uri;
}

TEST_F(ChromiumNavigation, LoadsPagesOfEveryKindAndTellsTheirAddress) {
  PageServer server({{"/a", Html("<title>first</title>")}});
  ListenToNavigation();
  EXPECT_EQ(Source(), L"about:blank");
  for (const auto& uri : {server.Url(L"/a"), std::wstring(L"data:text/html,x"), std::wstring(L"about:blank"),
                          server.Url(L"/a#part")}) {
    events_.clear();
    ASSERT_NO_FATAL_FAILURE(Load(uri));
    EXPECT_EQ(events_, (Lines{Starting(uri), L"completed 1 0"}));
    EXPECT_EQ(Source(), uri);
  }
  EXPECT_EQ(Run(L"document.title"), L"\"first\"");
}

TEST_F(ChromiumNavigation, SaysWhyAPageDidNotLoad) {
  PageServer server({{"/gone", Html("<p>not here", "404 Not Found")},
                     {"/broken", Html("<p>oh", "500 Internal Server Error")},
                     {"/bare", Html("", "404 Not Found")},
                     {"/dropped", ""},
                     {"/nothing", "HTTP/1.1 204 No Content\r\nConnection: close\r\n\r\n"},
                     {"/loop", "HTTP/1.1 302 Found\r\nLocation: /loop\r\nConnection: close\r\n\r\n"}});
  const std::wstring address = server.Url(L"");
  const struct {
    std::wstring uri;
    COREWEBVIEW2_WEB_ERROR_STATUS status;
  } cases[] = {
      {address + L"/gone", COREWEBVIEW2_WEB_ERROR_STATUS_UNKNOWN},
      {address + L"/broken", COREWEBVIEW2_WEB_ERROR_STATUS_UNKNOWN},
      {address + L"/bare", COREWEBVIEW2_WEB_ERROR_STATUS_UNKNOWN},
      {address + L"/dropped", COREWEBVIEW2_WEB_ERROR_STATUS_CONNECTION_ABORTED},
      {address + L"/nothing", COREWEBVIEW2_WEB_ERROR_STATUS_OPERATION_CANCELED},
      {address + L"/loop", COREWEBVIEW2_WEB_ERROR_STATUS_REDIRECT_FAILED},
      {L"http://127.0.0.1:" + std::to_wstring(ClosedPort()) + L"/",
       COREWEBVIEW2_WEB_ERROR_STATUS_CANNOT_CONNECT},
      {L"https://nowhere.test/", COREWEBVIEW2_WEB_ERROR_STATUS_HOST_NAME_NOT_RESOLVED},
      {L"http://", COREWEBVIEW2_WEB_ERROR_STATUS_UNKNOWN},
  };
  ListenToNavigation();
  for (const auto& entry : cases) {
    events_.clear();
    ASSERT_NO_FATAL_FAILURE(Load(entry.uri));
    EXPECT_EQ(events_, (Lines{Starting(entry.uri), L"completed 0 " + std::to_wstring(entry.status)}));
  }
}

TEST_F(ChromiumNavigation, FollowsWhatThePageDoesByItself) {
  PageServer server({{"/a", Html("<a id=link href=/b>b</a>")},
                     {"/b", Html("b")},
                     {"/c", Html("c")},
                     {"/gone", Html("gone", "404 Not Found")}});
  ASSERT_NO_FATAL_FAILURE(Load(server.Url(L"/a")));
  ListenToNavigation();
  const struct {
    const wchar_t* script;
    const wchar_t* path;
    int success;
  } cases[] = {
      {L"document.getElementById('link').click()", L"/b", 1},
      {L"location.href = '/c'", L"/c", 1},
      {L"location.reload()", L"/c", 1},
      {L"history.back()", L"/b", 1},
      {L"location.replace('/gone')", L"/gone", 0},
  };
  for (const auto& entry : cases) {
    events_.clear();
    ASSERT_HRESULT_SUCCEEDED(view_->ExecuteScript(entry.script, nullptr));
    ASSERT_TRUE(WaitForEvents(2)) << ToUtf8(entry.script);
    EXPECT_EQ(events_, (Lines{Starting(server.Url(entry.path)),
                              std::wstring(L"completed ") + (entry.success ? L"1 0" : L"0 0")}));
    EXPECT_EQ(Source(), server.Url(entry.path));
  }
  events_.clear();
  EXPECT_EQ(Run(L"location.hash = 'part'"), L"\"part\"");
  ASSERT_TRUE(PumpUntil([&] { return Source() == server.Url(L"/gone#part"); }, kPatienceMs));
  EXPECT_TRUE(events_.empty());
}

TEST_F(ChromiumNavigation, CancelsWhatIsSuperseded) {
  PageServer server({{"/new", Html("<script>location.href = '/newer'</script>")}, {"/newer", Html("newer")}});
  ListenToNavigation();
  ASSERT_HRESULT_SUCCEEDED(view_->Navigate(server.Url(L"/never").c_str()));
  ASSERT_TRUE(PumpUntil([&] { return server.WasAsked("/never"); }, kPatienceMs));
  ASSERT_HRESULT_SUCCEEDED(view_->Navigate(server.Url(L"/new").c_str()));
  ASSERT_TRUE(WaitForEvents(6));
  EXPECT_EQ(events_, (Lines{Starting(server.Url(L"/never")), Starting(server.Url(L"/new")), L"completed 0 14",
                            Starting(server.Url(L"/newer")), L"completed 0 14", L"completed 1 0"}));
  EXPECT_EQ(Source(), server.Url(L"/newer"));
}

TEST_F(ChromiumNavigation, RefusesWhatAHandlerCancels) {
  PageServer server({{"/a", Html("a")}});
  ASSERT_NO_FATAL_FAILURE(Load(server.Url(L"/a")));
  ListenToNavigation(L"refused");
  ASSERT_HRESULT_SUCCEEDED(view_->Navigate(server.Url(L"/refused").c_str()));
  ASSERT_TRUE(WaitForEvents(2));
  ASSERT_HRESULT_SUCCEEDED(view_->ExecuteScript(L"location.href = '/refused-too'", nullptr));
  ASSERT_TRUE(WaitForEvents(4));
  EXPECT_EQ(events_, (Lines{Starting(server.Url(L"/refused")), L"completed 0 14",
                            Starting(server.Url(L"/refused-too")), L"completed 0 14"}));
  EXPECT_FALSE(server.WasAsked("/refused"));
  EXPECT_TRUE(Becomes(L"location.pathname", L"\"/a\""));
  EXPECT_EQ(Source(), server.Url(L"/a"));
}

TEST_F(ChromiumNavigation, ClosesWhileAPageLoads) {
  PageServer server({});
  ListenToNavigation();
  ASSERT_HRESULT_SUCCEEDED(view_->Navigate(server.Url(L"/never").c_str()));
  ASSERT_HRESULT_SUCCEEDED(view_->ExecuteScript(L"1", nullptr));
  ASSERT_TRUE(PumpUntil([&] { return server.WasAsked("/never"); }, kPatienceMs));
  ASSERT_HRESULT_SUCCEEDED(controller_->Close());
  EXPECT_EQ(events_, Lines{Starting(server.Url(L"/never"))});
  EXPECT_EQ(view_->Navigate(L"about:blank"), HRESULT_FROM_WIN32(ERROR_INVALID_STATE));
}

}  // namespace
}  // namespace qv::test
