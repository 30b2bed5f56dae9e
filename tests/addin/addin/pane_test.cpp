#include <algorithm>

#include "addin_test.h"
#include "foundation/support_contact.h"
#include "foundation/text.h"
#include "host/message_pump.h"

namespace qv {
namespace {

using devhost::CreationFailure;
using devhost::CreationStep;
using devhost::PageItemKind;

class Pane : public AddinTest {};

TEST_F(Pane, StartsTheBrowserStepByStep) {
  OpenPane();
  EXPECT_TRUE(
      InOrder(Log(), {"FinalConstruct (excel) hr=0x0", "FinalConstruct pane=", " target 127.0.0.1 hr=0x0",
                      "DoVerb verb=-5 hwndParent=0x", "WM_CREATE", "InitWebView begin",
                      "CreateCoreWebView2EnvironmentWithOptions hr=0x0", "Create in DoVerb OK",
                      "Environment callback hr=0x0", "Controller callback hr=0x0", "get_CoreWebView2 OK",
                      "http://127.0.0.1:9/panel/excel?_=", "Navigate returned hr=0x0", "webview_navigating",
                      "NavigationCompleted success=1 status=0"}));
  const devhost::ViewInfo view = NewestView();
  EXPECT_TRUE(view.visible);
  EXPECT_EQ(view.background, 0xFFFFFFFFU);
  EXPECT_TRUE(std::wstring_view(view.userDataFolder).ends_with(L"\\Quorvantis\\WebView2"));
  wchar_t className[64] = {};
  GetClassNameW(view.parent, className, 64);
  EXPECT_STREQ(className, L"QuorvantisExcelPaneWnd");
}

TEST_F(Pane, ShowsTheRootPageOfItsService) {
  OpenPane();
  const std::string url = ToUtf8(NewestView().source);
  EXPECT_TRUE(InOrder(url, {"http://127.0.0.1:9/panel/excel?_=", "&host=excel&pane=xl", "&uiLang="})) << url;
  EXPECT_EQ(url.find("&mode="), std::string::npos);
  EXPECT_EQ(url.find("&surface="), std::string::npos);
}

TEST_F(Pane, NumbersEveryPaneAnew) {
  OpenPane();
  const std::wstring first = NewestView().source;
  OpenPane();
  const std::wstring second = NewestView().source;
  const auto number = [](const std::wstring& url) {
    return std::stoi(url.substr(url.find(L"&pane=xl") + 8));
  };
  EXPECT_EQ(number(second), number(first) + 1);
}

TEST_F(Pane, FillsItsFrameAtEverySize) {
  OpenPane();
  for (const int points : {225, 391}) {
    ASSERT_TRUE(pane_.frame->SetWidthPt(points));
    devhost::DispatchWaitingMessages();
    const SIZE size = pane_.frame->ContentSize();
    EXPECT_EQ(pane_.frame->WidthPt(), points);
    const RECT bounds = NewestView().bounds;
    EXPECT_EQ(bounds.right - bounds.left, size.cx);
    EXPECT_EQ(bounds.bottom - bounds.top, size.cy);
  }
}

TEST_F(Pane, KeepsItsPageWhileHidden) {
  OpenPane();
  const std::uint64_t items = Browser().ItemCount();
  ComPtr<IOleInPlaceObject> inPlace;
  ASSERT_EQ(pane_.frame->Container().Control().As(&inPlace), S_OK);
  EXPECT_EQ(inPlace->InPlaceDeactivate(), S_OK);
  EXPECT_FALSE(IsWindowVisible(NewestView().parent));
  EXPECT_EQ(pane_.frame->Container().DoVerb(OLEIVERB_SHOW), S_OK);
  EXPECT_TRUE((GetWindowLongW(NewestView().parent, GWL_STYLE) & WS_VISIBLE) != 0);
  devhost::DispatchWaitingMessages();
  EXPECT_EQ(Browser().ItemCount(), items);
}

TEST_F(Pane, StaysInItsPlaceWhenItIsActivatedAgain) {
  OpenPane();
  const HWND window = NewestView().parent;
  const HWND parent = GetParent(window);
  RECT before{};
  GetWindowRect(window, &before);
  ComPtr<IOleObject> object;
  ASSERT_EQ(pane_.frame->Container().Control().As(&object), S_OK);
  // What a host passes with a later verb need not be the control's own place.
  const HWND stranger =
      CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 50, 50, nullptr, nullptr, nullptr, nullptr);
  const RECT nothing{};
  const RECT elsewhere{5, 6, 20, 30};
  for (const RECT* place : {static_cast<const RECT*>(nullptr), &nothing, &elsewhere}) {
    EXPECT_EQ(object->DoVerb(OLEIVERB_UIACTIVATE, nullptr, nullptr, 0, stranger, place), S_OK);
    EXPECT_EQ(GetParent(window), parent);
    RECT after{};
    GetWindowRect(window, &after);
    EXPECT_TRUE(EqualRect(&after, &before));
  }
  DestroyWindow(stranger);
}

TEST_F(Pane, AnswersAsAControl) {
  OpenPane();
  const ComPtr<IDispatch> control = pane_.frame->Container().Control();
  ComPtr<IOleObject> object;
  ASSERT_EQ(control.As(&object), S_OK);
  DWORD status = 0;
  EXPECT_EQ(object->GetMiscStatus(DVASPECT_CONTENT, &status), S_OK);
  EXPECT_EQ(status, 131473U);
  EXPECT_EQ(object->GetMiscStatus(DVASPECT_ICON, &status), DV_E_DVASPECT);
  SIZEL size{1000, 2000};
  EXPECT_EQ(object->SetExtent(DVASPECT_CONTENT, &size), S_OK);
  size = {};
  EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, &size), S_OK);
  EXPECT_EQ(size.cy, 2000);
  EXPECT_EQ(object->DoVerb(7, nullptr, nullptr, 0, nullptr, nullptr), OLEOBJ_S_INVALIDVERB);
  EXPECT_EQ(object->DoVerb(-99, nullptr, nullptr, 0, nullptr, nullptr), E_NOTIMPL);

  // Windowed: it must not claim to do without a window.
  for (const IID& iid : {IID_IUnknown, IID_IDispatch, IID_IOleObject, IID_IOleWindow, IID_IOleInPlaceObject,
                         IID_IOleInPlaceActiveObject, IID_IOleControl, IID_IViewObject, IID_IViewObject2,
                         IID_IPersist, IID_IPersistStreamInit}) {
    ComPtr<IUnknown> interfaceOf;
    EXPECT_EQ(control->QueryInterface(iid, reinterpret_cast<void**>(interfaceOf.GetAddressOf())), S_OK);
  }
  ComPtr<IUnknown> windowless;
  EXPECT_EQ(control->QueryInterface(IID_IOleInPlaceObjectWindowless,
                                    reinterpret_cast<void**>(windowless.GetAddressOf())),
            E_NOINTERFACE);
}

TEST_F(Pane, StartsItsWindowWithTheFirstRectangleToo) {
  Connect();
  CLSID classId{};
  ASSERT_EQ(CLSIDFromProgID(L"Quorvantis.ExcelPane", &classId), S_OK);
  ComPtr<IOleInPlaceObject> control;
  ASSERT_EQ(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&control)), S_OK);
  HWND window = nullptr;
  EXPECT_EQ(control->GetWindow(&window), E_FAIL);
  // Nobody has said yet which window to live in.
  const RECT area = {0, 0, 200, 300};
  EXPECT_TRUE(FAILED(control->SetObjectRects(&area, &area)));
  EXPECT_NE(Log().find("Create in SetObjectRects failed"), std::string::npos);
}

TEST_F(Pane, WorksWithoutHostEvents) {
  engine_.SetEventStyle(devhost::EventStyle::kRefuseFind);
  const std::uint32_t view = OpenPane();
  EXPECT_NE(Log().find("DispEventAdvise Excel AppEvents failed (selection preview may lag)"),
            std::string::npos);
  Post(view, L"{\"action\":\"uiLangGet\",\"requestId\":\"r\"}");
  EXPECT_NE(WaitForItem(PageItemKind::kScript, L"uiLang"), "");
}

TEST_F(Pane, ListensToTheHostUntilItCloses) {
  OpenPane();
  EXPECT_EQ(engine_.Counters().value("sinks", -1), 1);
  pane_.frame->Close();
  EXPECT_EQ(engine_.Counters().value("sinks", -1), 0);
}

TEST_F(Pane, LetsGoOfTheHostWhenItShutsDownFirst) {
  engine_.AddWorkbook(L"Book.xlsx");
  OpenPane();
  static_cast<void>(host_->Session().Addin()->OnBeginShutdown(nullptr));
  EXPECT_NE(Log().find("Excel BeginShutdownEarly\r\n"), std::string::npos);
  EXPECT_EQ(engine_.Counters().value("sinks", -1), 0);
  EXPECT_EQ(engine_.LiveObjects(), 0);
  pane_.frame->Close();
  const std::string log = Log();
  EXPECT_EQ(log.find("Excel BeginShutdownEarly"), log.rfind("Excel BeginShutdownEarly"));
}

TEST_F(Pane, ClosesWhileTheBrowserIsStarting) {
  Connect();
  Browser().SetDelay(30);
  // Once before the environment has come, once before the controller has.
  for (const char* reached : {"InitWebView begin", "Environment callback"}) {
    pane_ = host_->OpenPane();
    ASSERT_TRUE(WaitForLog(reached));
    pane_.frame->Close();
  }
  EXPECT_TRUE(devhost::PumpUntil([&] { return Browser().LiveObjects() == 0; }, kTimeoutMs));
  EXPECT_EQ(Log().find("Navigate returned"), std::string::npos);
}

TEST_F(Pane, ClosesWithItsParentWindow) {
  OpenPane();
  const HWND window = NewestView().parent;
  DestroyWindow(window);
  EXPECT_FALSE(IsWindow(window));
  devhost::DispatchWaitingMessages();
  EXPECT_EQ(engine_.Counters().value("sinks", -1), 0);
  // It does not start again, and says so.
  EXPECT_TRUE(FAILED(pane_.frame->Container().DoVerb(OLEIVERB_SHOW)));
  EXPECT_NE(Log().find("Create in DoVerb failed hr=0x8"), std::string::npos) << Log();
}

TEST_F(Pane, DropsMessagesThatComeWhileItCloses) {
  const std::uint32_t view = OpenPane();
  ASSERT_TRUE(Browser().PostPageString(view, L"{\"action\":\"getFontList\"}", nullptr));
  pane_.frame->Close();
  devhost::DispatchWaitingMessages();
  EXPECT_FALSE(WasSent(L"fontList"));
}

TEST_F(Pane, StaysOnAFailedPage) {
  Connect();
  Browser().FailNextNavigation(COREWEBVIEW2_WEB_ERROR_STATUS_CANNOT_CONNECT);
  pane_ = host_->OpenPane();
  ASSERT_TRUE(WaitForLog("NavigationCompleted success=0 status=12"));
  EXPECT_FALSE(WasSent(L"accessToken"));
}

/// Every way in which the browser may fail to start; the user is told once.
TEST_F(Pane, ExplainsAFailedStartOnce) {
  Connect();
  struct Case {
    CreationStep step;
    CreationFailure how;
    const char* log;
  };
  const Case cases[] = {
      {CreationStep::kEnvironment, CreationFailure::kAtOnce,
       "WebView2 初始化失败：CreateCoreWebView2EnvironmentWithOptions\nHRESULT: 0x80070070"},
      {CreationStep::kEnvironment, CreationFailure::kLater,
       "WebView2 初始化失败：CreateCoreWebView2EnvironmentWithOptions\nHRESULT: 0x80070070"},
      {CreationStep::kEnvironment, CreationFailure::kWithoutObject,
       "WebView2 初始化失败：CreateCoreWebView2EnvironmentWithOptions\nHRESULT: 0x80004005"},
      {CreationStep::kController, CreationFailure::kAtOnce,
       "WebView2 初始化失败：CreateCoreWebView2Controller\nHRESULT: 0x80070070"},
      {CreationStep::kController, CreationFailure::kLater,
       "WebView2 初始化失败：CreateCoreWebView2Controller\nHRESULT: 0x80070070"},
      {CreationStep::kController, CreationFailure::kWithoutObject,
       "WebView2 初始化失败：CreateCoreWebView2Controller\nHRESULT: 0x80004005"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.log);
    const std::size_t before = Log().size();
    Browser().FailNext(c.step, c.how, HRESULT_FROM_WIN32(ERROR_DISK_FULL));
    pane_ = host_->OpenPane();
    EXPECT_TRUE(
        devhost::PumpUntil([&] { return Log().find(c.log, before) != std::string::npos; }, kTimeoutMs));
    // The box is a posted task.
    devhost::DispatchWaitingMessages();
    EXPECT_EQ(boxes_.Count(), 1);
  }
  EXPECT_FALSE(boxes_.Title().empty());
  EXPECT_TRUE(Contains(boxes_.Text(), kSupportContact)) << ToUtf8(boxes_.Text());

  ASSERT_TRUE(OpenClipboard(nullptr));
  const HANDLE memory = GetClipboardData(CF_UNICODETEXT);
  EXPECT_STREQ(static_cast<const wchar_t*>(GlobalLock(memory)), kSupportContact);
  GlobalUnlock(memory);
  CloseClipboard();
}

// Behind the test above, which needs the process's one box for itself.
TEST_F(Pane, IsMadeAnewAtTheNextPressAfterAFailedStart) {
  engine_.AddWorkbook(L"Book.xlsx");
  Connect();
  Browser().FailNext(CreationStep::kController, CreationFailure::kLater, E_FAIL);
  const auto press = [this] {
    const std::size_t before = Log().size();
    DISPPARAMS none{};
    EXPECT_EQ(host_->Session().Addin()->Invoke(100, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none,
                                               nullptr, nullptr, nullptr),
              S_OK);
    return Log().substr(before);
  };
  press();
  const auto failed = host_->Panes().OpenPanes().front();
  ASSERT_TRUE(WaitForLog("WebView2 初始化失败"));
  devhost::DispatchWaitingMessages();
  EXPECT_TRUE(failed.frame->IsOpen());
  EXPECT_TRUE(InOrder(press(), {"no-match panes=0", "justCreated=1"}));
  EXPECT_FALSE(failed.frame->IsOpen());
  EXPECT_NE(WaitForItem(PageItemKind::kJson, L"\"accessToken\""), "");
  EXPECT_EQ(host_->Panes().OpenPanes().size(), 1U);
}

}  // namespace
}  // namespace qv
