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

  void Start() { pageView_ = OpenPane(); }

  std::uint32_t pageView_ = 0;
};

constexpr wchar_t kOpened[] = L"if(window.quorvantisOnWorkspaceOpen)window.quorvantisOnWorkspaceOpen();";
constexpr wchar_t kClosed[] = L"if(window.quorvantisOnWorkspaceClosed)window.quorvantisOnWorkspaceClosed();";
constexpr wchar_t kState[] = L"{\"text\":\"draft\"}";
constexpr wchar_t kImported[] =
    L"(function(s){if(window.quorvantisImportState)window.quorvantisImportState(s);})({\"text\":\"draft\"})";

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
    constexpr wchar_t kNoToken[] = L"{\"action\":\"accessToken\",\"accessToken\":\"\"}";
    Post(pageView_, L"{\"action\":\"closeWorkspace\"}");
    EXPECT_TRUE(WaitUntilNoView(L"&surface=workspace"));
    EXPECT_FALSE(WasSent(L"quorvantisImportState(s);})("));
    EXPECT_EQ(Times(workspace, kNoToken), 0);
    EXPECT_EQ(Times(pageView_, kClosed), 1);
    host_->End();
    host_.reset();
  }
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
  pane_.frame->Close();
  EXPECT_FALSE(IsWindow(workspace));
  EXPECT_FALSE(IsWindow(preview));
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
  std::array<wchar_t, MAX_PATH> path{};
  auto length = static_cast<DWORD>(path.size());
  ASSERT_EQ(PathCreateFromUrlW(preview.source, path.data(), &length, 0), S_OK);
  EXPECT_NE(GetFileAttributesW(path.data()), INVALID_FILE_ATTRIBUTES);

  // Its page has no say in the add-in.
  const std::size_t before = Log().size();
  ASSERT_TRUE(
      Browser().PostPageString(preview.view, L"{\"action\":\"setAccessToken\",\"token\":\"x\"}", nullptr));
  devhost::DispatchWaitingMessages();
  EXPECT_EQ(Log().find("OnJsMessage", before), std::string::npos);

  Post(pageView_, L"{\"action\":\"closeImagePreview\"}");
  EXPECT_FALSE(IsWindow(preview.parent));
  EXPECT_EQ(GetFileAttributesW(path.data()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(Surfaces, APictureThatIsNoneOpensNothing) {
  Start();
  Post(pageView_, L"{\"action\":\"openImagePreview\",\"imageBase64\":\"<b>\"}");
  EXPECT_TRUE(WaitForLog("Image preview not shown"));
  EXPECT_FALSE(ViewWith(L"quorvantis-preview-").has_value());
}

}  // namespace
}  // namespace qv
