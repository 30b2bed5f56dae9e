#include <shlwapi.h>

#include <array>
#include <optional>

#include "addin_test.h"
#include "foundation/text.h"
#include "host/message_pump.h"

namespace qv {
namespace {

using devhost::PageItemKind;

constexpr wchar_t kFrameClass[] = L"QuorvantisExcelPanelFrame";

/// The windows that a pane opens beside itself.
class Surfaces : public AddinTest {
 protected:
  std::optional<devhost::ViewInfo> ViewWith(std::wstring_view part) {
    devhost::DispatchWaitingMessages();
    devhost::ViewInfo view{};
    for (std::uint32_t index = 0; Browser().View(index, &view); ++index) {
      if (!view.closed && Contains(view.source, part)) return view;
    }
    return std::nullopt;
  }

  /// Waits for a view whose address contains `part`.
  devhost::ViewInfo WaitForView(std::wstring_view part) {
    EXPECT_TRUE(devhost::PumpUntil([&] { return ViewWith(part).has_value(); }, kTimeoutMs));
    return ViewWith(part).value_or(devhost::ViewInfo{});
  }

  bool WaitUntilNoView(std::wstring_view part) {
    return devhost::PumpUntil([&] { return !ViewWith(part).has_value(); }, kTimeoutMs);
  }

  devhost::ViewInfo OpenWorkspace(const std::wstring& members = {}) {
    Post(pageView_, L"{\"action\":\"openWorkspace\"" + members + L"}");
    return WaitForView(L"&surface=workspace");
  }

  /// How often a view got exactly this script or message.
  int Times(std::uint32_t view, std::wstring_view text) {
    devhost::DispatchWaitingMessages();
    int times = 0;
    devhost::PageItem item{};
    for (std::uint64_t index = 0; Browser().Item(index, &item); ++index)
      times += item.view == view && item.text == text ? 1 : 0;
    return times;
  }

  /// Path of the file that a preview shows.
  static std::wstring FileOf(const devhost::ViewInfo& preview) {
    std::array<wchar_t, MAX_PATH> path{};
    auto length = static_cast<DWORD>(path.size());
    EXPECT_EQ(PathCreateFromUrlW(preview.source, path.data(), &length, 0), S_OK);
    return path.data();
  }

  void Start() { pageView_ = OpenPane(); }

  std::uint32_t pageView_ = 0;
};

constexpr wchar_t kOpened[] = L"if(window.quorvantisOnWorkspaceOpen)window.quorvantisOnWorkspaceOpen();";
constexpr wchar_t kClosed[] = L"if(window.quorvantisOnWorkspaceClosed)window.quorvantisOnWorkspaceClosed();";
constexpr wchar_t kState[] = L"{\"text\":\"draft\"}";
constexpr wchar_t kImported[] =
    L"(function(s){if(window.quorvantisImportState)window.quorvantisImportState(s);})({\"text\":\"draft\"})";

constexpr wchar_t kNoToken[] = L"{\"action\":\"accessToken\",\"accessToken\":\"\"}";

TEST_F(Surfaces, AWorkspaceShowsThePageThatIsAskedFor) {
  Start();
  const devhost::ViewInfo workspace = OpenWorkspace(L",\"page\":\"glossary\"");
  EXPECT_TRUE(InOrder(ToUtf8(workspace.source), {"/panel/excel/glossary.html?_=", "&host=excel&pane=xl",
                                                 "&surface=workspace", "&uiLang="}));
  std::array<wchar_t, 64> className{};
  GetClassNameW(workspace.parent, className.data(), static_cast<int>(className.size()));
  EXPECT_STREQ(className.data(), kFrameClass);
  EXPECT_EQ(GetAncestor(workspace.parent, GA_ROOT), workspace.parent);
  EXPECT_EQ(Times(pageView_, kOpened), 1);

  Post(pageView_, L"{\"action\":\"openWorkspace\",\"page\":\"chat\"}");
  EXPECT_EQ(WaitForView(L"/panel/excel/chat.html").view, workspace.view);
  EXPECT_EQ(Times(pageView_, kOpened), 1);
}

TEST_F(Surfaces, AWorkspaceHearsAndSaysWhatThePaneDoes) {
  Start();
  const std::uint32_t workspace = OpenWorkspace().view;
  Post(workspace, L"{\"action\":\"uiLangGet\",\"requestId\":\"w\"}");
  const std::wstring reply =
      FromUtf8(WaitForItem(PageItemKind::kScript, L"_onResponse({\"requestId\":\"w\""));
  Post(pageView_, L"{\"action\":\"setAccessToken\",\"token\":\"secret\"}");
  Post(workspace, L"{\"action\":\"requestAccessToken\"}");
  constexpr wchar_t kToken[] = L"{\"action\":\"accessToken\",\"accessToken\":\"secret\"}";
  for (const std::uint32_t view : {pageView_, workspace}) {
    EXPECT_EQ(Times(view, reply), 1);
    EXPECT_EQ(Times(view, kToken), 1);
  }
}

TEST_F(Surfaces, StateGoesToTheWorkspaceAndBack) {
  Start();
  Browser().SetScriptResult(L"quorvantisExportState", S_OK, kState);
  const std::uint32_t workspace = OpenWorkspace().view;
  EXPECT_TRUE(devhost::PumpUntil([&] { return Times(workspace, kImported) == 1; }, kTimeoutMs));
  EXPECT_EQ(Times(pageView_, kImported), 0);
  // The token follows what was taken over.
  EXPECT_EQ(Times(workspace, kNoToken), 1);
  // A second page of the workspace keeps its own state.
  Post(workspace, L"{\"action\":\"openWorkspace\",\"page\":\"chat\"}");
  WaitForView(L"/panel/excel/chat.html");
  EXPECT_EQ(Times(workspace, kImported), 1);

  Post(pageView_, L"{\"action\":\"closeWorkspace\"}");
  EXPECT_TRUE(WaitUntilNoView(L"&surface=workspace"));
  EXPECT_EQ(Times(pageView_, kImported), 1);
  EXPECT_EQ(Times(pageView_, kClosed), 1);
}

TEST_F(Surfaces, WithoutStateNothingIsHandedOver) {
  struct Case {
    HRESULT result;
    const wchar_t* json;
  };
  for (const Case& test : {Case{S_OK, L"null"}, Case{S_OK, L""}, Case{E_FAIL, kState}}) {
    Start();
    Browser().SetScriptResult(L"quorvantisExportState", test.result, test.json);
    const std::uint32_t workspace = OpenWorkspace().view;
    Post(pageView_, L"{\"action\":\"closeWorkspace\"}");
    EXPECT_TRUE(WaitUntilNoView(L"&surface=workspace"));
    EXPECT_FALSE(WasSent(L"quorvantisImportState(s);})("));
    EXPECT_EQ(Times(workspace, kNoToken), 0);
    EXPECT_EQ(Times(pageView_, kClosed), 1);
    host_->End();
    host_.reset();
  }
}

TEST_F(Surfaces, ANewPageOfThePaneHearsThatTheWorkspaceIsOpen) {
  Start();
  OpenWorkspace();
  ASSERT_EQ(Times(pageView_, kOpened), 1);
  ASSERT_TRUE(Browser().CrashPage(pageView_));
  EXPECT_TRUE(devhost::PumpUntil([&] { return Times(pageView_, kOpened) == 2; }, kTimeoutMs));
}

TEST_F(Surfaces, AWorkspaceThatIsWantedAgainStays) {
  Start();
  Browser().SetScriptResult(L"quorvantisExportState", S_OK, kState);
  const devhost::ViewInfo workspace = OpenWorkspace();
  ASSERT_TRUE(devhost::PumpUntil([&] { return Times(workspace.view, kImported) == 1; }, kTimeoutMs));
  for (const wchar_t* action : {L"closeWorkspace", L"openWorkspace"}) {
    const std::wstring message = std::wstring(L"{\"action\":\"") + action + L"\"}";
    ASSERT_TRUE(Browser().PostPageString(pageView_, message.c_str(), nullptr));
  }
  EXPECT_TRUE(WaitForLog("OnJsMessage action=closeWorkspace"));
  Post(pageView_, L"{\"action\":\"uiLangGet\",\"requestId\":\"w\"}");
  EXPECT_TRUE(IsWindowVisible(workspace.parent));
  EXPECT_EQ(Times(pageView_, kClosed), 0);
  EXPECT_EQ(Times(pageView_, kImported), 0);
}

TEST_F(Surfaces, AWorkspaceHandsNothingBackThatItNeverHad) {
  Start();
  Browser().SetScriptResult(L"quorvantisExportState", S_OK, kState);
  Browser().SetDelay(300);
  Post(pageView_, L"{\"action\":\"openWorkspace\"}");
  const devhost::ViewInfo workspace = WaitForView(L"&surface=workspace");
  // Loaded, but the state is still on its way.
  SendMessageW(workspace.parent, WM_CLOSE, 0, 0);
  EXPECT_TRUE(WaitUntilNoView(L"&surface=workspace"));
  Browser().SetDelay(0);
  EXPECT_EQ(Times(pageView_, kClosed), 1);
  EXPECT_EQ(Times(pageView_, kImported), 0);
}

TEST_F(Surfaces, AWorkspaceOfAPageThatHangsClosesAllTheSame) {
  Start();
  const devhost::ViewInfo workspace = OpenWorkspace();
  Browser().SetDelay(60'000);
  Post(pageView_, L"{\"action\":\"closeWorkspace\"}");
  EXPECT_TRUE(IsWindow(workspace.parent));
  EXPECT_FALSE(IsWindowVisible(workspace.parent));
  EXPECT_TRUE(devhost::PumpUntil([&] { return !IsWindow(workspace.parent); }, kTimeoutMs));
  EXPECT_EQ(Times(pageView_, kClosed), 1);
}

TEST_F(Surfaces, AWorkspaceEndsWithItsPage) {
  Start();
  const devhost::ViewInfo workspace = OpenWorkspace();
  ASSERT_TRUE(Browser().CrashPage(workspace.view));
  EXPECT_TRUE(devhost::PumpUntil([&] { return !IsWindow(workspace.parent); }, kTimeoutMs));
  EXPECT_EQ(Times(pageView_, kClosed), 1);
  EXPECT_NE(OpenWorkspace().view, workspace.view);
}

TEST_F(Surfaces, AFrameThatSomebodyElseDestroysCanBeOpenedAgain) {
  Start();
  const devhost::ViewInfo workspace = OpenWorkspace();
  DestroyWindow(workspace.parent);
  EXPECT_EQ(Times(pageView_, kClosed), 1);
  EXPECT_NE(OpenWorkspace().parent, workspace.parent);
  EXPECT_EQ(Times(pageView_, kOpened), 2);
}

TEST_F(Surfaces, APageThatIsLostIsLoadedAgainOnce) {
  Start();
  const auto loads = [this] {
    const std::string log = Log();
    int count = 0;
    for (std::size_t at = 0; (at = log.find("NavigationCompleted success=1", at)) != std::string::npos; ++at)
      ++count;
    return count;
  };
  ASSERT_TRUE(Browser().CrashPage(pageView_));
  EXPECT_TRUE(devhost::PumpUntil([&] { return loads() == 2; }, kTimeoutMs));
  EXPECT_TRUE(WaitForLog("ProcessFailed page"));
  EXPECT_EQ(boxes_.Count(), 0);

  ASSERT_TRUE(Browser().CrashPage(pageView_));
  EXPECT_TRUE(WaitForLog("ProcessFailed browser"));
  EXPECT_TRUE(devhost::PumpUntil([&] { return boxes_.Count() == 1; }, kTimeoutMs));
  EXPECT_EQ(loads(), 2);
}

TEST_F(Surfaces, ALostBrowserIsToldOnceForAllItsPanes) {
  Start();
  OpenPane();
  const std::size_t before = Log().size();
  ASSERT_TRUE(Browser().CrashBrowser());
  EXPECT_TRUE(devhost::PumpUntil([&] { return boxes_.Count() == 1; }, kTimeoutMs));
  devhost::DispatchWaitingMessages();
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_EQ(boxes_.Title(), L"AI Assistant");
  // Not the message of a start-up that failed.
  EXPECT_EQ(Log().find("初始化失败", before), std::string::npos);
}

TEST_F(Surfaces, TheUserClosesTheWorkspaceByItsFrame) {
  Start();
  const devhost::ViewInfo workspace = OpenWorkspace();
  SendMessageW(workspace.parent, WM_CLOSE, 0, 0);
  EXPECT_TRUE(devhost::PumpUntil([&] { return !IsWindow(workspace.parent); }, kTimeoutMs));
  EXPECT_EQ(Times(pageView_, kClosed), 1);

  // Closing what is closed changes nothing, and it can be opened again.
  Post(pageView_, L"{\"action\":\"closeWorkspace\"}");
  EXPECT_EQ(Times(pageView_, kClosed), 1);
  Post(pageView_, L"{\"action\":\"focusWorkspace\"}");
  EXPECT_TRUE(Contains(WaitForView(L"&surface=workspace").source, L"/panel/excel?_="));
  EXPECT_EQ(Times(pageView_, kOpened), 2);
}

TEST_F(Surfaces, AMinimisedWorkspaceIsRestored) {
  Start();
  const devhost::ViewInfo workspace = OpenWorkspace();
  ShowWindow(workspace.parent, SW_MINIMIZE);
  ASSERT_TRUE(IsIconic(workspace.parent));
  Post(pageView_, L"{\"action\":\"focusWorkspace\"}");
  EXPECT_TRUE(devhost::PumpUntil([&] { return !IsIconic(workspace.parent); }, kTimeoutMs));
  EXPECT_EQ(Times(pageView_, kOpened), 1);
}

TEST_F(Surfaces, GoWithTheirPane) {
  Start();
  const HWND workspace = OpenWorkspace().parent;
  Post(pageView_, L"{\"action\":\"openImagePreview\",\"imageBase64\":\"QUJD\"}");
  const HWND preview = WaitForView(L"quorvantis-preview-").parent;
  const std::wstring file = FileOf(WaitForView(L"quorvantis-preview-"));
  pane_.frame->Close();
  EXPECT_FALSE(IsWindow(workspace));
  EXPECT_FALSE(IsWindow(preview));
  EXPECT_EQ(GetFileAttributesW(file.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(Surfaces, TheUserClosesThePreviewByItsFrame) {
  Start();
  Post(pageView_, L"{\"action\":\"openImagePreview\",\"imageBase64\":\"QUJD\"}");
  const devhost::ViewInfo preview = WaitForView(L"quorvantis-preview-");
  const std::wstring file = FileOf(preview);
  ASSERT_NE(GetFileAttributesW(file.c_str()), INVALID_FILE_ATTRIBUTES);
  SendMessageW(preview.parent, WM_CLOSE, 0, 0);
  EXPECT_TRUE(devhost::PumpUntil([&] { return !IsWindow(preview.parent); }, kTimeoutMs));
  EXPECT_EQ(GetFileAttributesW(file.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(Surfaces, APreviewLeavesNoFileBehind) {
  Start();
  Post(pageView_,
       L"{\"action\":\"openImagePreview\",\"imageBase64\":\"QUJD\",\"mediaType\":\"image/png\","
       L"\"title\":\"Sales & more\",\"downloadName\":\"sales.png\"}");
  const devhost::ViewInfo preview = WaitForView(L"quorvantis-preview-");
  std::array<wchar_t, 64> title{};
  GetWindowTextW(preview.parent, title.data(), static_cast<int>(title.size()));
  EXPECT_STREQ(title.data(), L"Sales & more");
  const std::wstring file = FileOf(preview);
  EXPECT_NE(GetFileAttributesW(file.c_str()), INVALID_FILE_ATTRIBUTES);

  // Its page has no say in the add-in.
  const std::size_t before = Log().size();
  ASSERT_TRUE(
      Browser().PostPageString(preview.view, L"{\"action\":\"setAccessToken\",\"token\":\"x\"}", nullptr));
  devhost::DispatchWaitingMessages();
  EXPECT_EQ(Log().find("OnJsMessage", before), std::string::npos);

  Post(pageView_, L"{\"action\":\"closeImagePreview\"}");
  EXPECT_FALSE(IsWindow(preview.parent));
  EXPECT_EQ(GetFileAttributesW(file.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(Surfaces, APictureThatIsNoneOpensNothing) {
  Start();
  Post(pageView_, L"{\"action\":\"openImagePreview\",\"imageBase64\":\"<b>\"}");
  EXPECT_TRUE(WaitForLog("Image preview not shown"));
  EXPECT_FALSE(ViewWith(L"quorvantis-preview-").has_value());
}

}  // namespace
}  // namespace qv
