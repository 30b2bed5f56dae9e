#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "addin_test.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "host/host_dispatch.h"
#include "host/message_pump.h"
#include "stored_width.h"
#include "workbook/doc_key.h"

namespace qv {
namespace {

using devhost::PageItemKind;

constexpr DISPID kWholeSheet = 100;
constexpr DISPID kSelection = 101;
constexpr DISPID kAccount = 106;

/// Ribbon buttons pressed in a host with one workbook.
class TaskPanes : public AddinTest {
 protected:
  void SetUp() override {
    book_ = engine_.AddWorkbook(L"one.xlsx", L"c:\\books");
    Connect();
    // Room for every width that the tests ask for.
    SetWindowPos(host_->Documents().TopWindow(), nullptr, 0, 0, 1800, 900,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  }

  static HRESULT PressIn(const devhost::DevelopmentHost& host, DISPID id) {
    DISPPARAMS none{};
    return host.Session().Addin()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, nullptr,
                                          nullptr, nullptr);
  }

  /// Presses a button; what the log says about it.
  std::string Press(DISPID id) {
    const std::size_t before = Log().size();
    EXPECT_EQ(PressIn(*host_, id), S_OK);
    const auto open = host_->Panes().OpenPanes();
    if (!open.empty()) pane_ = open.back();
    return Log().substr(before);
  }

  /// Presses a button and waits until the page of the newest pane was offered the token.
  std::string PressAndLoad(DISPID id) {
    std::string log = Press(id);
    EXPECT_NE(WaitForItem(PageItemKind::kJson, L"\"accessToken\""), "");
    return log;
  }

  [[nodiscard]] std::size_t OpenPanes() { return host_->Panes().OpenPanes().size(); }
  [[nodiscard]] devhost::TaskPane& NewestTaskPane() { return *host_->Factory().Made().back().Get(); }

  [[nodiscard]] int Width() {
    int width = 0;
    EXPECT_EQ(NewestTaskPane().get_Width(&width), S_OK);
    return width;
  }
  void Drag(int points) { EXPECT_TRUE(pane_.frame->DragWidthPt(points)); }

  StoredWidth storedWidth_;
  std::shared_ptr<devhost::memory::Workbook> book_;
};

TEST_F(TaskPanes, AreMadeAtTheFirstPress) {
  const std::string log = PressAndLoad(kWholeSheet);
  EXPECT_TRUE(InOrder(
      log,
      {"Excel ShowPanePage\r\n", "Excel EnsureTaskPane no-match panes=0 want hwnd=0x", " id=one.xlsx\r\n",
       "PaneWidth load pt=520 source=default file=", "config.json\r\n",
       "Excel CreateCTP OK pane=", " panes=1 degraded=0\r\n", "Excel pane width begin pt=520 host=excel\r\n",
       "Excel ShowPanePage page=translate\r\n", "Excel ShowPanePage visible panes=1 justCreated=1\r\n"}));
  EXPECT_TRUE(pane_.frame->IsVisible());
  EXPECT_EQ(Width(), 520);
  EXPECT_FALSE(pane_.frame->Title().empty());
  const std::string url = ToUtf8(NewestView().source);
  EXPECT_TRUE(InOrder(url, {"/panel/excel?_=", "&mode=full"})) << url;
  EXPECT_EQ(boxes_.Count(), 0);
}

TEST_F(TaskPanes, TellALoadedPageOnlyItsMode) {
  PressAndLoad(kWholeSheet);
  const std::wstring address = NewestView().source;
  const std::string log = Press(kSelection);
  EXPECT_TRUE(InOrder(log, {"Excel EnsureTaskPane reuse panes=1\r\n",
                            "Excel ShowPanePage visible panes=1 justCreated=0\r\n"}));
  EXPECT_EQ(WaitForItem(PageItemKind::kJson, L"setMode"), R"({"action":"setMode","mode":"selection"})");
  EXPECT_NE(WaitForItem(PageItemKind::kScript, L"quorvantisSetMode(m)"), "");
  EXPECT_EQ(NewestView().source, address);
  EXPECT_EQ(OpenPanes(), 1U);

  // Another page is loaded, and the way back leads through the address again.
  PressAndLoad(kAccount);
  EXPECT_NE(ToUtf8(NewestView().source).find("/panel/excel/account.html?"), std::string::npos);
  PressAndLoad(kSelection);
  EXPECT_NE(ToUtf8(NewestView().source).find("&mode=selection"), std::string::npos);
}

TEST_F(TaskPanes, LoadAPageAgainThatCouldNotBeLoaded) {
  Browser().FailNextNavigation(COREWEBVIEW2_WEB_ERROR_STATUS_CANNOT_CONNECT);
  Press(kWholeSheet);
  ASSERT_TRUE(WaitForLog("NavigationCompleted success=0"));
  PressAndLoad(kWholeSheet);
  EXPECT_FALSE(WasSent(L"setMode"));
}

TEST_F(TaskPanes, KeepPageAndModeForABrowserThatStillStarts) {
  Browser().SetDelay(50);
  Press(kAccount);
  Press(kSelection);
  EXPECT_NE(WaitForItem(PageItemKind::kJson, L"\"accessToken\""), "");
  const std::string url = ToUtf8(NewestView().source);
  EXPECT_TRUE(InOrder(url, {"/panel/excel?_=", "&mode=selection"})) << url;
  EXPECT_FALSE(WasSent(L"account.html"));
  EXPECT_EQ(OpenPanes(), 1U);
}

TEST_F(TaskPanes, StandInEveryWindowAndWorkOnItsWorkbook) {
  PressAndLoad(kWholeSheet);
  const auto first = pane_;
  const std::uint32_t firstView = NewestView().view;
  const auto second = engine_.AddWorkbook(L"two.xlsx", L"c:\\books");
  const std::string log = PressAndLoad(kWholeSheet);
  EXPECT_TRUE(InOrder(log, {"no-match panes=1 want hwnd=0x", " id=two.xlsx\r\n", "Excel   existing pane=",
                            " id=one.xlsx\r\n", "PaneWidth initial from live pane pt=520\r\n",
                            " panes=2 degraded=0", "visible panes=2 justCreated=1"}));
  EXPECT_EQ(OpenPanes(), 2U);

  const auto lower = [](wchar_t unit) { return unit; };
  Post(firstView, L"{\"action\":\"docKeyGet\",\"requestId\":\"1\"}");
  EXPECT_NE(WaitForItem(PageItemKind::kScript, DocKey(L"c:\\books\\one.xlsx", lower)), "");
  Post(NewestView().view, L"{\"action\":\"docKeyGet\",\"requestId\":\"2\"}");
  EXPECT_NE(WaitForItem(PageItemKind::kScript, DocKey(L"c:\\books\\two.xlsx", lower)), "");

  engine_.ActivateWindow(book_->windows.front());
  EXPECT_TRUE(InOrder(Press(kSelection), {"reuse panes=2", "visible panes=2 justCreated=0"}));
  EXPECT_EQ(OpenPanes(), 2U);
}

TEST_F(TaskPanes, KnowTheirWindowByItsHandle) {
  PressAndLoad(kWholeSheet);
  book_->windows.front()->ownCaption = L"renamed.xlsx";
  EXPECT_NE(Press(kSelection).find("reuse panes=1"), std::string::npos);
  // A second window on the same workbook is another one.
  engine_.AddWindow(book_);
  EXPECT_NE(Press(kSelection).find("no-match panes=1"), std::string::npos);
  EXPECT_EQ(OpenPanes(), 2U);
}

TEST_F(TaskPanes, KnowTheirWindowByItsCaptionWithoutAHandle) {
  PressAndLoad(kWholeSheet);
  engine_.Fault({{"missing", "Window.Hwnd"}});
  EXPECT_NE(Press(kSelection).find("reuse panes=1"), std::string::npos);
  engine_.AddWorkbook(L"two.xlsx");
  EXPECT_NE(Press(kSelection).find("no-match panes=1"), std::string::npos);
}

TEST_F(TaskPanes, KnowDocumentsOfOneFrameByTheirCaption) {
  devhost::MemoryEngine wps(devhost::HostStyle::kWps);
  const auto one = wps.AddWorkbook(L"one.xlsx");
  const auto two = wps.AddWorkbook(L"two.xlsx");
  host_.reset();
  devhost::DevelopmentHost host(AddinPath(), wps, calls_, {}, {.style = devhost::HostStyle::kWps});
  const auto press = [&] {
    const std::size_t before = Log().size();
    EXPECT_EQ(PressIn(host, kWholeSheet), S_OK);
    return Log().substr(before);
  };
  EXPECT_TRUE(InOrder(press(), {"no-match panes=0", "width begin pt=520 host=wps-excel"}));
  wps.ActivateWindow(one->windows.front());
  EXPECT_NE(press().find("no-match panes=1"), std::string::npos);
  // One child of the frame for both documents, as far as the handles tell.
  one->windows.front()->hwnd = two->windows.front()->hwnd;
  const auto panes = host.Panes().OpenPanes();
  ASSERT_EQ(panes.size(), 2U);
  for (const auto& pane : panes)
    pane.frame->SetVisible(false);
  EXPECT_NE(press().find("reuse panes=2"), std::string::npos);
  EXPECT_FALSE(panes[0].frame->IsVisible());
  EXPECT_TRUE(panes[1].frame->IsVisible());
  EXPECT_TRUE(host.End().Clean());
}

TEST_F(TaskPanes, GoWithTheirWindow) {
  PressAndLoad(kWholeSheet);
  const auto first = pane_;
  engine_.AddWorkbook(L"two.xlsx");
  engine_.CloseWorkbook(book_);
  EXPECT_TRUE(InOrder(Press(kWholeSheet), {"Excel ShowPanePage\r\n", "Excel pane prune pane=",
                                           " reason=window_gone\r\n", "no-match panes=0"}));
  EXPECT_FALSE(first.frame->IsOpen());
  EXPECT_EQ(OpenPanes(), 1U);
}

TEST_F(TaskPanes, StayUnlessTheirWindowIsSurelyGone) {
  struct Case {
    const char* what;
    nlohmann::json fault;
    bool stays;
  };
  const Case cases[] = {
      {"busy", {{"busy", 1000}, {"member", "Window.Caption"}}, true},
      {"refused", {{"fail", "Window.Caption"}, {"code", "0x800A03EC"}}, true},
      {"not supported", {{"missing", "Window.Caption"}}, true},
      {"disconnected", {{"fail", "Window.Caption"}, {"code", "0x80010108"}}, false},
      {"closed, as Excel says it", {{"fail", "Window.Caption"}, {"code", "0x800401A8"}}, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Press(kWholeSheet);
    engine_.AddWorkbook(L"two.xlsx");
    engine_.Fault(c.fault);
    EXPECT_EQ(Press(kWholeSheet).find("reason=window_gone") == std::string::npos, c.stays);
    engine_.Fault({{"clear", true}});
    engine_.CloseWorkbook(engine_.Host().ActiveWorkbook());
  }
}

TEST_F(TaskPanes, AreMadeAnewWhenTheHostTookThemAway) {
  PressAndLoad(kWholeSheet);
  pane_.frame->Close();
  EXPECT_TRUE(InOrder(PressAndLoad(kWholeSheet),
                      {"Excel pane prune pane=", " reason=no_ctp\r\n", "no-match panes=0", "justCreated=1"}));
  EXPECT_EQ(OpenPanes(), 1U);
}

TEST_F(TaskPanes, DoWithoutAParentWindowWhenTheHostRefusesIt) {
  host_->Factory().SetOutcomes(E_INVALIDARG, S_OK);
  EXPECT_TRUE(InOrder(PressAndLoad(kWholeSheet),
                      {"Excel CreateCTP with parent failed hr=0x80070057, retry vtMissing (degraded)\r\n",
                       "Excel CreateCTP OK pane=", " degraded=1\r\n"}));
  EXPECT_EQ(boxes_.Count(), 0);
}

/// What stands in the way is told in one box; afterwards the button works as ever.
TEST_F(TaskPanes, TellWhatStandsInTheWay) {
  host_->Factory().SetOutcomes(E_INVALIDARG, 0x8004000AL);
  EXPECT_TRUE(InOrder(Press(kWholeSheet), {"retry vtMissing", "Excel CreateCTP failed hr=0x8004000A\r\n"}));
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_EQ(boxes_.Title(), L"AI Assistant");
  EXPECT_EQ(boxes_.Icon(), "warning");
  EXPECT_TRUE(Contains(boxes_.Text(), L"0x8004000A")) << ToUtf8(boxes_.Text());
  host_->Factory().SetOutcomes(S_OK, S_OK);

  ComPtr<ICustomTaskPaneConsumer> consumer;
  ASSERT_EQ(host_->Session().Addin()->QueryInterface(IID_PPV_ARGS(&consumer)), S_OK);
  EXPECT_EQ(consumer->CTPFactoryAvailable(nullptr), S_OK);
  EXPECT_NE(Press(kWholeSheet).find("Excel EnsureTaskPane: CTP factory null\r\n"), std::string::npos);
  EXPECT_EQ(boxes_.Count(), 2);
  EXPECT_TRUE(Contains(boxes_.Text(), L"The task pane could not be created.")) << ToUtf8(boxes_.Text());
  EXPECT_EQ(consumer->CTPFactoryAvailable(&host_->Factory()), S_OK);

  PressAndLoad(kWholeSheet);
  EXPECT_EQ(boxes_.Count(), 2);

  engine_.CloseWorkbook(book_);
  EXPECT_NE(Press(kWholeSheet).find("Excel ShowPanePage: no window resolved\r\n"), std::string::npos);
  EXPECT_EQ(boxes_.Count(), 3);
  EXPECT_TRUE(Contains(boxes_.Text(), L"window is not available")) << ToUtf8(boxes_.Text());

  EXPECT_EQ(host_->Session().Addin()->OnDisconnection(ext_dm_UserClosed, nullptr), S_OK);
  EXPECT_EQ(Press(kWholeSheet).find("page="), std::string::npos);
  EXPECT_EQ(boxes_.Count(), 4);
  EXPECT_TRUE(Contains(boxes_.Text(), L"not ready")) << ToUtf8(boxes_.Text());
}

TEST_F(TaskPanes, AreMadeInAnotherWindowWhileABoxIsOpen) {
  const auto second = engine_.AddWorkbook(L"two.xlsx");
  engine_.ActivateWindow(book_->windows.front());
  host_->Factory().SetOutcomes(E_FAIL, E_FAIL);
  boxes_.InsideTheNext([&] {
    host_->Factory().SetOutcomes(S_OK, S_OK);
    engine_.ActivateWindow(second->windows.front());
    EXPECT_NE(Press(kWholeSheet).find("Excel CreateCTP OK pane="), std::string::npos);
  });
  Press(kWholeSheet);
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_EQ(OpenPanes(), 1U);
}

/// A host's factory that runs something of the user's while it makes a pane.
class BusyFactory final : public devhost::HostDispatch<ICTPFactory> {
 public:
  BusyFactory(ICTPFactory* factory, std::function<void()> meanwhile)
      : factory_(factory), meanwhile_(std::move(meanwhile)) {}

  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) noexcept override {
    return DISP_E_MEMBERNOTFOUND;
  }
  HRESULT STDMETHODCALLTYPE CreateCTP(BSTR axId, BSTR title, VARIANT window,
                                      _CustomTaskPane** pane) noexcept override {
    if (const auto meanwhile = std::exchange(meanwhile_, nullptr)) meanwhile();
    return factory_->CreateCTP(axId, title, window, pane);
  }

 private:
  ComPtr<ICTPFactory> factory_;
  std::function<void()> meanwhile_;
};

TEST_F(TaskPanes, AreMadeOnceForAPressFromInsideTheirMaking) {
  ComPtr<ICustomTaskPaneConsumer> consumer;
  ASSERT_EQ(host_->Session().Addin()->QueryInterface(IID_PPV_ARGS(&consumer)), S_OK);
  bool pressed = false;
  const auto factory = MakeCom<BusyFactory>(&host_->Factory(), [&] {
    EXPECT_EQ(Press(kSelection).find("CreateCTP"), std::string::npos);
    pressed = true;
  });
  EXPECT_EQ(consumer->CTPFactoryAvailable(factory.Get()), S_OK);
  Press(kWholeSheet);
  EXPECT_TRUE(pressed);
  EXPECT_EQ(OpenPanes(), 1U);
  EXPECT_EQ(boxes_.Count(), 0);
  EXPECT_EQ(consumer->CTPFactoryAvailable(&host_->Factory()), S_OK);
}

TEST_F(TaskPanes, SayWhenTheHostWillNotShowThem) {
  PressAndLoad(kWholeSheet);
  NewestTaskPane().RefuseToShow();
  const std::string log = Press(kAccount);
  EXPECT_EQ(log.find("Excel ShowPanePage page="), std::string::npos);
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_EQ(boxes_.Text(), L"Excel is not ready. Restart Excel and try again.");
}

TEST_F(TaskPanes, GetTheirPageOnceTheHostHandsOutTheControl) {
  host_->Factory().WithholdControls();
  EXPECT_NE(Press(kAccount).find("Excel ShowPanePage: pane 0 not registered yet\r\n"), std::string::npos);
  ASSERT_TRUE(host_->WaitForPage(pane_, kTimeoutMs));
  NewestTaskPane().WithholdControl(false);
  EXPECT_NE(WaitForItem(PageItemKind::kNavigate, L"/panel/excel/account.html?"), "");
}

TEST_F(TaskPanes, GetTheirWidthAgainUntilItSticks) {
  Press(kWholeSheet);
  // The host lays the pane out by itself, and does it once more after the first try.
  Drag(300);
  NewestTaskPane().OverrideWidth(300, 2);
  ASSERT_TRUE(WaitForLog("PaneWidth reapply done at 520\r\n"));
  EXPECT_EQ(Width(), 520);
  EXPECT_TRUE(InOrder(Log(), {"PaneWidth reapply -> 520 try-left=9\r\n",
                              "PaneWidth reapply -> 520 try-left=8\r\n", "PaneWidth reapply done"}));
  EXPECT_EQ(StoredWidth::Get(), std::nullopt);
}

TEST_F(TaskPanes, RememberTheWidthThatTheUserGivesThem) {
  StoredWidth::Set(590);
  EXPECT_TRUE(InOrder(Press(kWholeSheet), {"PaneWidth load pt=590 source=file", "width begin pt=590"}));
  ASSERT_TRUE(WaitForLog("PaneWidth reapply done at 590"));
  Drag(560);
  ASSERT_TRUE(WaitForLog("PaneWidth save pt=560 ok=1 err=0 file="));
  EXPECT_EQ(StoredWidth::Get(), 560);

  engine_.AddWorkbook(L"two.xlsx");
  EXPECT_NE(Press(kWholeSheet).find("PaneWidth initial from live pane pt=560\r\n"), std::string::npos);
}

TEST_F(TaskPanes, SayWhyTheirWidthCouldNotBeStored) {
  Press(kWholeSheet);
  ASSERT_TRUE(WaitForLog("PaneWidth reapply done at 520"));
  // Open without leave to replace it.
  const UniqueFile blocked(CreateFileW(StoredWidth::SettingsFile().c_str(), GENERIC_READ, FILE_SHARE_READ,
                                       nullptr, OPEN_ALWAYS, 0, nullptr));
  ASSERT_TRUE(blocked);
  Drag(560);
  ASSERT_TRUE(WaitForLog("PaneWidth save pt=560 ok=0 err=")) << Log();
  EXPECT_EQ(Log().find("ok=0 err=0 "), std::string::npos) << Log();
  EXPECT_EQ(StoredWidth::Get(), std::nullopt);
}

TEST_F(TaskPanes, SaveTheirWidthWhenTheHostEnds) {
  Press(kWholeSheet);
  ASSERT_TRUE(WaitForLog("PaneWidth reapply done at 520"));
  Drag(580);
  EXPECT_EQ(host_->Session().Addin()->OnBeginShutdown(nullptr), S_OK);
  EXPECT_EQ(host_->Session().Addin()->OnDisconnection(ext_dm_HostShutdown, nullptr), S_OK);
  EXPECT_EQ(StoredWidth::Get(), 580);
  const std::string log = Log();
  const auto line = log.find("PaneWidth shutdown-save pt=580\r\n");
  EXPECT_NE(line, std::string::npos);
  EXPECT_EQ(log.find("shutdown-save", line + 20), std::string::npos) << "saved twice";
  EXPECT_EQ(log.find("prune"), std::string::npos);
}

TEST_F(TaskPanes, SaveTheWidthThatTheUserSeesBeforeThatOfAHiddenPane) {
  Press(kWholeSheet);
  const auto first = pane_;
  ASSERT_TRUE(WaitForLog("PaneWidth reapply done at 520"));
  Drag(560);
  engine_.AddWorkbook(L"two.xlsx");
  Press(kWholeSheet);
  const std::size_t before = Log().size();
  ASSERT_TRUE(devhost::PumpUntil(
      [&] { return Log().find("reapply done at 560", before) != std::string::npos; }, kTimeoutMs));
  Drag(600);
  pane_.frame->SetVisible(false);
  EXPECT_EQ(host_->Session().Addin()->OnBeginShutdown(nullptr), S_OK);
  EXPECT_EQ(StoredWidth::Get(), 560);
}

TEST_F(TaskPanes, FillTheirFrameAgainAtEveryTick) {
  PressAndLoad(kWholeSheet);
  const HWND window = NewestView().parent;
  RECT before{};
  GetClientRect(window, &before);
  // What a page zoom or a moved child leaves behind; no size message comes with it.
  SetWindowPos(GetWindow(window, GW_CHILD), nullptr, 0, 0, 10, 10, SWP_NOZORDER | SWP_NOACTIVATE);
  EXPECT_TRUE(devhost::PumpUntil(
      [&] {
        RECT child{};
        GetWindowRect(GetWindow(window, GW_CHILD), &child);
        return child.right - child.left == before.right;
      },
      kTimeoutMs));
}

TEST_F(TaskPanes, AreHiddenWhenTheUserSwitchesTheAddInOff) {
  PressAndLoad(kWholeSheet);
  const auto first = pane_;
  engine_.AddWorkbook(L"two.xlsx");
  PressAndLoad(kWholeSheet);
  first.frame->Close();
  EXPECT_EQ(host_->Session().Addin()->OnDisconnection(ext_dm_UserClosed, nullptr), S_OK);
  EXPECT_TRUE(InOrder(Log(), {"Excel pane prune pane=", " reason=no_ctp\r\n",
                              "Excel pane prune keep pane=", " hide hr=0x00000000\r\n"}));
  EXPECT_TRUE(pane_.frame->IsOpen());
  EXPECT_FALSE(pane_.frame->IsVisible());
}

}  // namespace
}  // namespace qv
