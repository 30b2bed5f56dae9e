#include <chrono>
#include <thread>

#include "chromium_fixture.h"

namespace qv::test {
namespace {

class ChromiumWindow : public ChromiumTest {
 protected:
  void SetUp() override {
    ChromiumTest::SetUp();
    ASSERT_NO_FATAL_FAILURE(Open());
    SetWindowPos(parent_, nullptr, 0, 0, 500, 500, SWP_NOMOVE | SWP_SHOWWINDOW | SWP_NOACTIVATE);
    Resize(280, 160);
    window_ = Control().ViewWindow(ViewNumber());
    ASSERT_NE(window_, nullptr);
  }

  void Resize(int width, int height) {
    ASSERT_HRESULT_SUCCEEDED(controller_->put_Bounds({0, 0, width, height}));
  }

  /// Whether this pixel of the window is of this colour soon.
  [[nodiscard]] bool Shows(int x, int y, COLORREF color) {
    COLORREF last = CLR_INVALID;
    const auto look = [&] {
      const HDC target = GetDC(window_);
      last = GetPixel(target, x, y);
      ReleaseDC(window_, target);
      return last == color;
    };
    const bool shown = PumpUntil(look, kPatienceMs);
    EXPECT_EQ(last, color) << "at " << x << "," << y;
    return shown;
  }

  void Send(UINT message, WPARAM wParam, LPARAM lParam) { SendMessageW(window_, message, wParam, lParam); }

  /// Presses and releases a key as a keyboard would: through the queue, so that it types what it types.
  void Press(UINT virtualKey) {
    PostMessageW(window_, WM_KEYDOWN, virtualKey, 1);
    PostMessageW(window_, WM_KEYUP, virtualKey, LPARAM{3} << 30 | 1);
    devhost::DispatchWaitingMessages();
  }

  void Type(const std::wstring& text) {
    for (const wchar_t unit : text)
      Send(WM_CHAR, unit, 1);
  }

  HWND window_ = nullptr;
};

TEST_F(ChromiumWindow, ShowsThePageAndFollowsItsChanges) {
  ASSERT_NO_FATAL_FAILURE(
      LoadHtml(L"<body style='margin:0;background:rgb(10,200,30)'><div id=box style='position:fixed;right:0;"
               L"bottom:0;width:20px;height:20px;background:rgb(250,0,1)'>"));
  EXPECT_TRUE(Shows(5, 5, RGB(10, 200, 30)));
  EXPECT_TRUE(Shows(275, 155, RGB(250, 0, 1)));
  Resize(200, 300);
  EXPECT_TRUE(Shows(195, 295, RGB(250, 0, 1)));
  EXPECT_TRUE(Shows(5, 295, RGB(10, 200, 30)));
  EXPECT_EQ(Run(L"[innerWidth, innerHeight, devicePixelRatio]"), L"[200,300,1]");
  EXPECT_EQ(Run(L"document.body.style.background = 'rgb(1,2,3)'; 1"), L"1");
  EXPECT_TRUE(Shows(5, 5, RGB(1, 2, 3)));

  ASSERT_HRESULT_SUCCEEDED(controller_->put_IsVisible(FALSE));
  EXPECT_EQ(Run(L"document.body.style.background = 'rgb(4,5,6)'; 1"), L"1");
  ASSERT_HRESULT_SUCCEEDED(controller_->put_IsVisible(TRUE));
  EXPECT_TRUE(Shows(5, 5, RGB(4, 5, 6)));
}

TEST_F(ChromiumWindow, ShowsWhatThePageCameToWhileTheHostWasBusy) {
  ASSERT_NO_FATAL_FAILURE(LoadHtml(L"<body style='margin:0;background:rgb(1,1,1)'>"));
  ASSERT_TRUE(Shows(5, 5, RGB(1, 1, 1)));
  EXPECT_EQ(Run(L"let step = 1; const paint = () => { ++step;"
                L"document.body.style.background = `rgb(${step},9,9)`;"
                L"if (step < 20) requestAnimationFrame(paint); }; requestAnimationFrame(paint); 1"),
            L"1");
  // The host dispatches nothing meanwhile, as in a long calculation.
  std::this_thread::sleep_for(std::chrono::milliseconds(600));
  EXPECT_TRUE(Shows(5, 5, RGB(20, 9, 9)));
}

TEST_F(ChromiumWindow, ShowsTheBackgroundWhereThePageHasNone) {
  ComPtr<ICoreWebView2Controller2> second;
  ASSERT_HRESULT_SUCCEEDED(controller_->QueryInterface(__uuidof(ICoreWebView2Controller2),
                                                       reinterpret_cast<void**>(second.GetAddressOf())));
  ASSERT_HRESULT_SUCCEEDED(second->put_DefaultBackgroundColor({255, 7, 8, 9}));
  ASSERT_NO_FATAL_FAILURE(LoadHtml(L"<p>x"));
  EXPECT_TRUE(Shows(270, 150, RGB(7, 8, 9)));
  ASSERT_TRUE(Control().CrashBrowser());
  ASSERT_TRUE(PumpUntil([&] { return Control().ViewWindow(ViewNumber()) == nullptr; }, kPatienceMs));
  ASSERT_HRESULT_SUCCEEDED(controller_->Close());
}

TEST_F(ChromiumWindow, PassesTheMouseOn) {
  ASSERT_NO_FATAL_FAILURE(
      LoadHtml(L"<body style='margin:0;height:2000px'><script>var log = [];"
               L"const note = e => log.push([e.type, e.button, e.clientX, e.clientY]);"
               L"for (const t of ['mousedown','mouseup','click','dblclick','contextmenu'])"
               L"addEventListener(t, note);"
               L"document.body.onmouseleave = () => log.push('left');"
               L"</script>"));
  const LPARAM at = MAKELPARAM(30, 40);
  Send(WM_MOUSEMOVE, 0, at);
  Send(WM_LBUTTONDOWN, MK_LBUTTON, at);
  EXPECT_EQ(GetFocus(), window_);
  EXPECT_EQ(GetCapture(), window_);
  Send(WM_LBUTTONUP, 0, at);
  EXPECT_EQ(GetCapture(), nullptr);
  EXPECT_TRUE(Becomes(L"log", L"[[\"mousedown\",0,30,40],[\"mouseup\",0,30,40],[\"click\",0,30,40]]"));
  Send(WM_LBUTTONDBLCLK, MK_LBUTTON, at);
  Send(WM_LBUTTONUP, 0, at);
  EXPECT_TRUE(Becomes(L"log.filter(e => e[0] == 'dblclick').length", L"1"));
  Send(WM_RBUTTONDOWN, MK_RBUTTON, at);
  Send(WM_RBUTTONUP, 0, at);
  EXPECT_TRUE(Becomes(L"log.filter(e => e[0] == 'contextmenu' && e[1] == 2).length", L"1"));
  Send(WM_MOUSELEAVE, 0, 0);
  EXPECT_TRUE(Becomes(L"log.at(-1)", L"\"left\""));
  POINT screen{30, 40};
  ClientToScreen(window_, &screen);
  Send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), MAKELPARAM(screen.x, screen.y));
  EXPECT_TRUE(Becomes(L"scrollY > 0", L"true"));
}

TEST_F(ChromiumWindow, PassesTheKeyboardOn) {
  ASSERT_NO_FATAL_FAILURE(
      LoadHtml(L"<form onsubmit='sent = first.value; return false'><input id=first><input id=second><button "
               L"hidden></button></form>"
               L"<textarea id=area></textarea><script>var sent = '', keys = [];"
               L"addEventListener('keydown', e => keys.push([e.key, e.code, e.shiftKey]))</script>"));
  EXPECT_EQ(Run(L"first.focus()"), L"null");
  Type(L"Gr\u00fc\u00dfe \u4e2d\xD83D\xDE00!");
  EXPECT_TRUE(Becomes(L"first.value", L"\"Gr\u00fc\u00dfe \u4e2d\xD83D\xDE00!\""));
  Press(VK_BACK);
  Press(VK_HOME);
  Press(VK_DELETE);
  EXPECT_TRUE(Becomes(L"first.value", L"\"r\u00fc\u00dfe \u4e2d\xD83D\xDE00\""));
  Press('B');
  EXPECT_TRUE(Becomes(L"first.value.toLowerCase()", L"\"br\u00fc\u00dfe \u4e2d\xD83D\xDE00\""));
  EXPECT_TRUE(Becomes(L"keys.at(-1)[1]", L"\"KeyB\""));
  Press(VK_RETURN);
  EXPECT_TRUE(Becomes(L"sent == first.value", L"true"));
  Press(VK_TAB);
  EXPECT_TRUE(Becomes(L"document.activeElement.id", L"\"second\""));
  Press(VK_TAB);
  Type(L"a");
  Press(VK_RETURN);
  Type(L"b");
  EXPECT_TRUE(Becomes(L"area.value", L"\"a\\nb\""));
  Press(VK_F2);
  EXPECT_TRUE(Becomes(L"keys.at(-1)", L"[\"F2\",\"F2\",false]"));
}

}  // namespace
}  // namespace qv::test
