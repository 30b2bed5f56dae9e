#include <array>
#include <memory>

#include "foundation/catalog.h"
#include "foundation/text.h"
#include "host/message_pump.h"
#include "language_dialog_fixture.h"
#include "other_program.h"

namespace qv {
namespace {

std::wstring TextOf(HWND window) {
  std::array<wchar_t, 256> text{};
  GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
  return text.data();
}

TEST_F(LanguageDialog, ShowsEveryLanguageInItsOwnScript) {
  std::vector<std::wstring> names;
  Choose({[&](HWND dialog) {
            EXPECT_EQ(TextOf(dialog), L"Display language");
            EXPECT_EQ(TextOf(GetDlgItem(dialog, IDOK)), L"OK");
            EXPECT_EQ(TextOf(GetDlgItem(dialog, IDCANCEL)), L"Cancel");
            EXPECT_EQ(GetClassLongPtrW(dialog, GCL_STYLE), CS_DROPSHADOW);
            EXPECT_EQ(GetClassLongPtrW(dialog, GCLP_HBRBACKGROUND),
                      reinterpret_cast<ULONG_PTR>(GetStockObject(WHITE_BRUSH)));
            EXPECT_EQ(GetWindow(dialog, GW_OWNER), owner_);
            const auto style = GetWindowLongW(dialog, GWL_STYLE);
            EXPECT_EQ(style & (WS_POPUP | WS_CLIPCHILDREN | WS_CAPTION | WS_BORDER),
                      static_cast<LONG>(WS_POPUP | WS_CLIPCHILDREN));
            const auto count = SendMessageW(List(dialog), LB_GETCOUNT, 0, 0);
            for (LRESULT row = 0; row < count; ++row) {
              std::array<wchar_t, 64> name{};
              SendMessageW(List(dialog), LB_GETTEXT, static_cast<WPARAM>(row),
                           reinterpret_cast<LPARAM>(name.data()));
              names.emplace_back(name.data());
            }
          },
          Push(IDCANCEL)});
  ASSERT_EQ(names.size(), 14U);
  EXPECT_EQ(names.front(), L"中文（简体）");
  EXPECT_EQ(names[kGermanRow], L"Deutsch");
  EXPECT_EQ(names.back(), L"العربية");
}

/// The pixels of a control, as it draws itself.
std::vector<COLORREF> PixelsOf(HWND control) {
  RECT area{};
  GetClientRect(control, &area);
  const HDC dc = CreateCompatibleDC(nullptr);
  const HDC window = GetDC(control);
  const HBITMAP bitmap = CreateCompatibleBitmap(window, area.right, area.bottom);
  const HGDIOBJ before = SelectObject(dc, bitmap);
  BitBlt(dc, 0, 0, area.right, area.bottom, window, 0, 0, SRCCOPY);
  std::vector<COLORREF> pixels;
  for (LONG y = 0; y < area.bottom; ++y) {
    for (LONG x = 0; x < area.right; ++x)
      pixels.push_back(GetPixel(dc, x, y));
  }
  SelectObject(dc, before);
  DeleteObject(bitmap);
  ReleaseDC(control, window);
  DeleteDC(dc);
  return pixels;
}

TEST_F(LanguageDialog, SpeaksToScreenReadersAndKeyboards) {
  SettingsFile::WriteLanguage("pt");
  Choose({[&](HWND dialog) {
            // Screen readers call a list by the text before it.
            const HWND name = GetWindow(List(dialog), GW_HWNDPREV);
            EXPECT_EQ(TextOf(name), L"Display language");
            // With nothing selected the row where the keys start still shows.
            EXPECT_EQ(SendMessageW(List(dialog), LB_GETCURSEL, 0, 0), LB_ERR);
            UpdateWindow(List(dialog));
            const auto focused = PixelsOf(List(dialog));
            SetFocus(GetDlgItem(dialog, IDOK));
            UpdateWindow(List(dialog));
            EXPECT_NE(PixelsOf(List(dialog)), focused);
          },
          Push(IDCANCEL)});
}

LOGFONTW FontOf(HWND control) {
  LOGFONTW font{};
  GetObjectW(reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)), sizeof(font), &font);
  return font;
}

TEST_F(LanguageDialog, ScalesWithItsScreen) {
  const DpiAware aware;
  // Made before this thread saw the screen's DPI.
  DestroyWindow(owner_);
  owner_ = nullptr;
  const int dpi = static_cast<int>(GetDpiForSystem());
  Choose({[&](HWND dialog) {
            ASSERT_EQ(static_cast<int>(GetDpiForWindow(dialog)), dpi);
            RECT area{};
            GetWindowRect(dialog, &area);
            EXPECT_EQ(area.right - area.left, MulDiv(420, dpi, 96));
            RECT button{};
            GetWindowRect(GetDlgItem(dialog, IDOK), &button);
            EXPECT_EQ(button.right - button.left, MulDiv(92, dpi, 96));
            struct Case {
              HWND control;
              int height;
              LONG weight;
            };
            const Case cases[] = {{FindWindowExW(dialog, nullptr, L"STATIC", L"Display language"), 18, 600},
                                  {GetDlgItem(dialog, IDOK), 13, 400},
                                  {List(dialog), 14, 400}};
            for (const Case& c : cases) {
              const LOGFONTW font = FontOf(c.control);
              EXPECT_EQ(font.lfHeight, -MulDiv(c.height, dpi, 96));
              EXPECT_EQ(font.lfWeight, c.weight);
              EXPECT_EQ(font.lfQuality, CLEARTYPE_QUALITY);
              EXPECT_STREQ(font.lfFaceName, L"Microsoft YaHei UI");
            }
          },
          Push(IDCANCEL)});
}

TEST_F(LanguageDialog, FollowsTheSystemToAnotherScreen) {
  Choose({[](HWND dialog) {
            RECT wanted{37, 41, 1000, 900};
            SendMessageW(dialog, WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&wanted));
            RECT area{};
            GetWindowRect(dialog, &area);
            EXPECT_EQ(area.left, 37);
            EXPECT_EQ(area.top, 41);
            EXPECT_EQ(area.right - area.left, 630);
            EXPECT_EQ(FontOf(List(dialog)).lfHeight, -21);
          },
          Push(IDCANCEL)});
}

TEST(LanguageDialogElsewhere, ScalesWithItsScreen) {
  for (const int dpi : {96, 144, 192})
    EXPECT_TRUE(PassesElsewhere(L"qv_addin_tests.exe", dpi, L"LanguageDialog.ScalesWithItsScreen"));
}

TEST_F(LanguageDialog, TakesTheInputOfItsOwnerAndGivesItBack) {
  const HWND edit = CreateWindowExW(0, L"Edit", L"", WS_CHILD | WS_VISIBLE, 0, 0, 50, 20, owner_, nullptr,
                                    nullptr, nullptr);
  SetFocus(edit);
  ASSERT_EQ(GetFocus(), edit);
  Choose({[&](HWND dialog) {
            EXPECT_FALSE(IsWindowEnabled(owner_));
            EXPECT_EQ(GetFocus(), List(dialog));
            // Once more from elsewhere: there is one dialog only.
            PressSettings();
            EXPECT_EQ(DialogUser::Dialog(), dialog);
            EXPECT_EQ(FindWindowExW(nullptr, dialog, kDialogClass, nullptr), nullptr);
          },
          Push(IDCANCEL)});
  EXPECT_EQ(GetFocus(), edit);
}

TEST_F(LanguageDialog, BelongsToTheActiveWindowOfAHostThatNamesNone) {
  HostRibbon();
  engine_.Host().givenHwnd = 0x7FF2;
  SetActiveWindow(owner_);
  Choose({[&](HWND dialog) { EXPECT_EQ(GetWindow(dialog, GW_OWNER), owner_); }, Push(IDCANCEL)});
}

TEST_F(LanguageDialog, LeavesAnOwnerDisabledThatWasSo) {
  EnableWindow(owner_, FALSE);
  HostRibbon();
  {
    const DialogUser user({Push(IDCANCEL)});
    PressSettings();
  }
  EXPECT_FALSE(IsWindowEnabled(owner_));
}

/// A top-level window of this thread, as another document of the host has one.
class OtherWindow {
 public:
  explicit OtherWindow(DWORD style)
      : window_(CreateWindowExW(0, L"Static", L"", WS_OVERLAPPEDWINDOW | style, 200, 90, 300, 200, nullptr,
                                nullptr, nullptr, nullptr)) {}
  OtherWindow(const OtherWindow&) = delete;
  OtherWindow& operator=(const OtherWindow&) = delete;
  ~OtherWindow() { DestroyWindow(window_); }

  [[nodiscard]] HWND Get() const { return window_; }

 private:
  HWND window_;
};

TEST_F(LanguageDialog, TakesTheInputOfTheOtherDocumentsToo) {
  const OtherWindow visible(WS_VISIBLE);
  const OtherWindow hidden(0);
  const OtherWindow disabled(WS_VISIBLE | WS_DISABLED);
  Choose({[&](HWND dialog) {
            EXPECT_FALSE(IsWindowEnabled(visible.Get()));
            EXPECT_TRUE(IsWindowEnabled(hidden.Get()));
            EXPECT_FALSE(IsWindowEnabled(disabled.Get()));
            EXPECT_TRUE(IsWindowEnabled(dialog));
          },
          Push(IDCANCEL)});
  EXPECT_TRUE(IsWindowEnabled(visible.Get()));
  EXPECT_FALSE(IsWindowEnabled(disabled.Get()));
}

TEST_F(LanguageDialog, LeavesTheFocusWhereTheUserWentMeanwhile) {
  SetFocus(owner_);
  std::unique_ptr<OtherWindow> other;
  Choose({[&](HWND dialog) {
    // Made after the dialog, as a program's own message is.
    other = std::make_unique<OtherWindow>(WS_VISIBLE);
    SetActiveWindow(other->Get());
    PostMessageW(dialog, WM_CLOSE, 0, 0);
  }});
  EXPECT_EQ(GetActiveWindow(), other->Get());
}

TEST_F(LanguageDialog, ComesBackWithItsMinimisedOwner) {
  Choose({[&](HWND dialog) {
            ShowWindow(owner_, SW_MINIMIZE);
            PressSettings();
            EXPECT_FALSE(IsIconic(owner_));
            EXPECT_TRUE(IsWindowVisible(dialog));
            EXPECT_EQ(GetActiveWindow(), dialog);
          },
          Push(IDCANCEL)});
}

/// The next window of a class cannot be made while this lives.
class RefusedWindow {
 public:
  explicit RefusedWindow(const wchar_t* className) {
    g_refused = className;
    hook_ = SetWindowsHookExW(WH_CBT, &RefusedWindow::OnEvent, nullptr, GetCurrentThreadId());
  }
  RefusedWindow(const RefusedWindow&) = delete;
  RefusedWindow& operator=(const RefusedWindow&) = delete;
  ~RefusedWindow() { UnhookWindowsHookEx(hook_); }

 private:
  static LRESULT CALLBACK OnEvent(int code, WPARAM window, LPARAM lparam) noexcept {
    std::array<wchar_t, 64> name{};
    GetClassNameW(reinterpret_cast<HWND>(window), name.data(), static_cast<int>(name.size()));
    if (code == HCBT_CREATEWND && _wcsicmp(name.data(), g_refused) == 0) return 1;
    return CallNextHookEx(nullptr, code, window, lparam);
  }

  static inline const wchar_t* g_refused = nullptr;

  HHOOK hook_;
};

TEST_F(LanguageDialog, DoesNotOpenWithoutItsControls) {
  HostRibbon();
  for (const wchar_t* control : {L"LISTBOX", L"BUTTON", L"STATIC"}) {
    SCOPED_TRACE(ToUtf8(control));
    const std::size_t before = Log().size();
    const RefusedWindow refused(control);
    const DialogUser nobody({});
    PressSettings();
    EXPECT_EQ(FindWindowW(kDialogClass, nullptr), nullptr);
    EXPECT_NE(Log().find("Excel UiLangDialog failed error=", before), std::string::npos);
    EXPECT_TRUE(IsWindowEnabled(owner_));
  }
  Choose({Push(IDCANCEL)});
}

TEST_F(LanguageDialog, EndsWithItsOwner) {
  Choose({[&](HWND) { DestroyWindow(owner_); }});
  EXPECT_FALSE(IsWindow(owner_));
}

TEST_F(LanguageDialog, LeavesTheEndOfTheProgramToTheHost) {
  Choose({[](HWND) { PostQuitMessage(7); }});
  MSG message{};
  ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 7U);
}

TEST_F(LanguageDialog, SurvivesADisconnectedHost) {
  Choose({[&](HWND) {
            static_cast<void>(host_->Session().Addin()->OnDisconnection(ext_dm_UserClosed, nullptr));
          },
          Select(kGermanRow), Push(IDOK)});
  EXPECT_NE(SettingsFile::Text().find("\"uiLang\": \"de\""), std::string::npos);
  EXPECT_EQ(invalidations_, 0);
}

}  // namespace
}  // namespace qv
