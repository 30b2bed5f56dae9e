#include <shlobj.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <vector>

#include "addin_test.h"
#include "foundation/catalog.h"
#include "foundation/text.h"
#include "host/addin_library.h"
#include "host/host_dispatch.h"
#include "host/message_pump.h"
#include "host/ribbon_objects.h"
#include "other_program.h"

namespace qv {
namespace {

using devhost::PageItemKind;
namespace fs = std::filesystem;

constexpr wchar_t kDialogClass[] = L"QuorvantisUiLangDialog2";
constexpr char kWithoutLanguage[] =
    R"({"serviceHost": "127.0.0.1", "servicePort": 9, "serviceScheme": "http"})";
constexpr int kEnglishRow = 2;
constexpr int kGermanRow = 7;
constexpr int kFrenchRow = 8;

/// The user's settings file, put back at the end.
class SettingsFile {
 public:
  SettingsFile() : before_(Text()) {}
  SettingsFile(const SettingsFile&) = delete;
  SettingsFile& operator=(const SettingsFile&) = delete;
  ~SettingsFile() { Write(before_); }

  static fs::path Path() {
    std::array<wchar_t, MAX_PATH> folder{};
    EXPECT_EQ(SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, 0, folder.data()), S_OK);
    return fs::path(folder.data()) / L"Quorvantis" / L"config.json";
  }
  static std::string Text() {
    std::ifstream file(Path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static void Write(const std::string& text) { std::ofstream(Path(), std::ios::binary) << text; }

  /// The settings with this language in place of any.
  static void WriteLanguage(const std::string& code) {
    Write(
        "{\n  \"serviceHost\": \"127.0.0.1\",\n  \"servicePort\": 9,\n  \"serviceScheme\": \"http\",\n  "
        "\"uiLang\": \"" +
        code + "\"\n}\n");
  }

 private:
  std::string before_;
};

/// What a user does to the open dialog, one step at a time, from inside the dialog's own message loop. A
/// dialog that nobody closes is closed after the last step.
class DialogUser {
 public:
  using Step = std::function<void(HWND)>;

  explicit DialogUser(std::vector<Step> steps) : steps_(std::move(steps)) {
    g_user = this;
    timer_ = SetTimer(nullptr, 0, 20, &DialogUser::OnTimer);
  }
  DialogUser(const DialogUser&) = delete;
  DialogUser& operator=(const DialogUser&) = delete;
  ~DialogUser() {
    KillTimer(nullptr, timer_);
    g_user = nullptr;
    EXPECT_EQ(done_, steps_.size()) << "the dialog closed too early or did not open";
  }

  static HWND Dialog() {
    const HWND dialog = FindWindowW(kDialogClass, nullptr);
    return IsWindowVisible(dialog) ? dialog : nullptr;
  }

 private:
  static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) noexcept {
    const HWND dialog = Dialog();
    if (g_user == nullptr || dialog == nullptr || !IsWindowEnabled(dialog)) return;
    if (g_user->done_ == g_user->steps_.size()) {
      ADD_FAILURE() << "the dialog stayed open";
      SendMessageW(dialog, WM_CLOSE, 0, 0);
      return;
    }
    const std::size_t step = g_user->done_++;
    g_user->steps_[step](dialog);
  }

  static inline DialogUser* g_user = nullptr;

  std::vector<Step> steps_;
  std::size_t done_ = 0;
  UINT_PTR timer_ = 0;
};

HWND List(HWND dialog) {
  return FindWindowExW(dialog, nullptr, L"LISTBOX", nullptr);
}

DialogUser::Step Select(int row) {
  return [row](HWND dialog) { SendMessageW(List(dialog), LB_SETCURSEL, static_cast<WPARAM>(row), 0); };
}

DialogUser::Step Push(int button) {
  return [button](HWND dialog) { SendMessageW(GetDlgItem(dialog, button), BM_CLICK, 0, 0); };
}

/// A key into whatever has the focus.
DialogUser::Step Key(WORD key) {
  return [key](HWND dialog) {
    const HWND focus = GetFocus();
    EXPECT_TRUE(IsChild(dialog, focus));
    PostMessageW(focus, WM_KEYDOWN, key, 1);
    PostMessageW(focus, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
  };
}

class LanguageDialog : public AddinTest {
 protected:
  void SetUp() override {
    SettingsFile::WriteLanguage("en");
    owner_ = CreateWindowExW(0, L"Static", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 50, 800, 600, nullptr,
                             nullptr, nullptr, nullptr);
    engine_.AddWorkbook(L"Book.xlsx");
  }

  void TearDown() override {
    if (IsWindow(owner_)) DestroyWindow(owner_);
    AddinTest::TearDown();
  }

  devhost::Ribbon& HostRibbon() {
    if (host_ == nullptr) {
      Connect();
      engine_.Host().givenHwnd = HandleToLong(owner_);
      HostRibbon().OnChanged([this] {
        ++invalidations_;
        if (onInvalidate_) onInvalidate_();
      });
    }
    return *host_->Session().TheRibbon();
  }

  void PressSettings() { HostRibbon().Press(*HostRibbon().Find(L"btnSettings"), nullptr); }

  /// The user presses the button and does the steps.
  void Choose(std::vector<DialogUser::Step> steps) {
    HostRibbon();
    const DialogUser user(std::move(steps));
    PressSettings();
    EXPECT_EQ(DialogUser::Dialog(), nullptr);
    EXPECT_TRUE(!IsWindow(owner_) || IsWindowEnabled(owner_));
  }

  SettingsFile settings_;
  HWND owner_ = nullptr;
  int invalidations_ = 0;
  std::function<void()> onInvalidate_;
};

TEST_F(LanguageDialog, StoresTheChoiceAndTellsRibbonAndPanels) {
  const devhost::RibbonItem& button = *HostRibbon().Find(L"btnSettings");
  OpenPane();
  EXPECT_EQ(HostRibbon().Label(button), L"Settings");
  const std::string before = SettingsFile::Text();
  std::string atInvalidate;
  bool toldBefore = false;
  onInvalidate_ = [&] {
    atInvalidate = SettingsFile::Text();
    toldBefore = WasSent(L"uiLangChanged");
  };
  Choose({Select(kGermanRow), Push(IDOK)});
  const std::string changed = ToUtf8(ReplaceAll(FromUtf8(before), L"\"en\"", L"\"de\""));
  EXPECT_EQ(SettingsFile::Text(), changed);
  EXPECT_EQ(atInvalidate, changed);
  EXPECT_FALSE(toldBefore);
  EXPECT_EQ(HostRibbon().Label(button), CatalogText(L"de", L"ribbon.btnSettings"));
  EXPECT_EQ(invalidations_, 1);
  EXPECT_EQ(WaitForItem(PageItemKind::kJson, L"uiLangChanged"),
            R"({"action":"uiLangChanged","uiLang":"de"})");
  EXPECT_EQ(boxes_.Count(), 0);
  // Panels opened later get it with their address.
  OpenPane();
  EXPECT_TRUE(std::wstring_view(NewestView().source).ends_with(L"&uiLang=de"));
}

TEST_F(LanguageDialog, ForgetsTheAutomaticChoice) {
  SettingsFile::Write(kWithoutLanguage);
  LRESULT selected = 0;
  Choose({[&](HWND dialog) { selected = SendMessageW(List(dialog), LB_GETCURSEL, 0, 0); }, Select(kFrenchRow),
          Push(IDOK)});
  // The memory host speaks English.
  EXPECT_EQ(selected, kEnglishRow);
  EXPECT_NE(SettingsFile::Text().find("\"uiLang\": \"fr\""), std::string::npos);
  Choose({[&](HWND dialog) { selected = SendMessageW(List(dialog), LB_GETCURSEL, 0, 0); }, Push(IDCANCEL)});
  EXPECT_EQ(selected, kFrenchRow);
}

/// Some hosts load the ribbon before they connect.
TEST_F(LanguageDialog, IsNotSettledBeforeTheHostCanBeAsked) {
  engine_.Host().uiLanguage = 1031;
  devhost::AddinLibrary library(AddinPath(), calls_);
  library.Register();
  CLSID classId{};
  ComPtr<IDTExtensibility2> addin;
  ASSERT_EQ(CLSIDFromProgID(L"ExcelAddin.Connect", &classId), S_OK);
  ASSERT_EQ(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&addin)), S_OK);
  ComPtr<IRibbonExtensibility> callbacks;
  ASSERT_EQ(addin.As(&callbacks), S_OK);
  const auto label = [&] {
    Variant control(MakeCom<devhost::RibbonControl>(L"btnSettings", L"", nullptr).Get());
    DISPPARAMS params{&control.Get(), nullptr, 1, 0};
    Variant text;
    constexpr DISPID kGetLabel = 131;
    EXPECT_EQ(callbacks->Invoke(kGetLabel, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params,
                                text.Put(), nullptr, nullptr),
              S_OK);
    return text.Text();
  };
  ASSERT_NE(PRIMARYLANGID(GetUserDefaultUILanguage()), LANG_GERMAN);
  EXPECT_EQ(label(), CatalogText(L"en", L"ribbon.btnSettings"));
  SettingsFile::Write(kWithoutLanguage);
  EXPECT_NE(label(), CatalogText(L"de", L"ribbon.btnSettings"));
  EXPECT_EQ(addin->OnConnection(engine_.Application(), ext_cm_Startup, nullptr, nullptr), S_OK);
  EXPECT_EQ(label(), CatalogText(L"de", L"ribbon.btnSettings"));
  EXPECT_EQ(addin->OnDisconnection(ext_dm_HostShutdown, nullptr), S_OK);
  callbacks.Reset();
  addin.Reset();
  EXPECT_TRUE(library.WaitUntilUnloadable(kTimeoutMs));
  library.Unload();
}

TEST_F(LanguageDialog, ShowsTheCurrentLanguageAtFirst) {
  const std::pair<const char*, int> cases[] = {
      {"zh-CN", 0}, {"en", 2}, {"de", 7}, {"ar", 13}, {"pt", LB_ERR}};
  for (const auto& [code, row] : cases) {
    SCOPED_TRACE(code);
    SettingsFile::WriteLanguage(code);
    Choose({[row = row](HWND dialog) {
              const HWND list = List(dialog);
              EXPECT_EQ(SendMessageW(list, LB_GETCURSEL, 0, 0), row);
              if (row == LB_ERR) return;
              RECT place{};
              RECT client{};
              SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
              GetClientRect(list, &client);
              EXPECT_GE(place.top, 0);
              EXPECT_LE(place.bottom, client.bottom);
            },
            Push(IDCANCEL)});
  }
}

TEST_F(LanguageDialog, ChangesNothingWithoutAChoice) {
  struct Case {
    const char* name;
    std::vector<DialogUser::Step> steps;
  };
  const Case cases[] = {
      {"the current language", {Select(kEnglishRow), Push(IDOK)}},
      {"no language", {Select(-1), Push(IDOK)}},
      {"cancel", {Select(kGermanRow), Push(IDCANCEL)}},
      {"escape", {Select(kGermanRow), Key(VK_ESCAPE)}},
      {"closed", {Select(kGermanRow), [](HWND dialog) { PostMessageW(dialog, WM_CLOSE, 0, 0); }}},
      {"enter on cancel", {Select(kGermanRow), Key(VK_TAB), Key(VK_TAB), Key(VK_RETURN)}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string before = SettingsFile::Text();
    const auto written = fs::last_write_time(SettingsFile::Path());
    Choose(c.steps);
    EXPECT_EQ(SettingsFile::Text(), before);
    EXPECT_EQ(fs::last_write_time(SettingsFile::Path()), written);
    EXPECT_EQ(invalidations_, 0);
  }
  EXPECT_EQ(boxes_.Count(), 0);
}

TEST_F(LanguageDialog, IsUsedWithTheKeyboard) {
  // Down from English is Japanese, up again English, twice up Traditional Chinese.
  Choose({Key(VK_DOWN), Key(VK_UP), Key(VK_UP), Key(VK_RETURN)});
  EXPECT_NE(SettingsFile::Text().find("\"uiLang\": \"zh-TW\""), std::string::npos) << SettingsFile::Text();
  Choose({Key(VK_DOWN), Key(VK_TAB), [](HWND dialog) { EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDOK)); },
          Key(VK_SPACE)});
  EXPECT_NE(SettingsFile::Text().find("\"uiLang\": \"en\""), std::string::npos) << SettingsFile::Text();
  EXPECT_EQ(invalidations_, 2);
}

/// A ribbon of a host whose objects answer by name only, at first perhaps too busily.
class LateBoundRibbon final : public devhost::HostDispatch<IDispatch> {
 public:
  explicit LateBoundRibbon(HRESULT first) : first_(first) {}

  [[nodiscard]] int Calls() const { return calls_; }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) noexcept override {
    if (id != kInvalidate || flags != DISPATCH_METHOD) return DISP_E_MEMBERNOTFOUND;
    return ++calls_ == 1 ? first_ : S_OK;
  }

 protected:
  std::span<const devhost::DispatchName> Names() const noexcept override {
    static constexpr devhost::DispatchName kNames[] = {{L"Invalidate", kInvalidate}};
    return kNames;
  }

 private:
  static constexpr DISPID kInvalidate = 1;

  HRESULT first_;
  int calls_ = 0;
};

TEST_F(LanguageDialog, RefreshesARibbonThatAnswersByNameOnly) {
  struct Case {
    HRESULT first;
    int calls;
  };
  int row = kGermanRow;
  // A failure that time does not heal is not tried again.
  for (const Case& c : {Case{S_OK, 1}, Case{E_FAIL, 1}, Case{RPC_E_CALL_REJECTED, 2}}) {
    SCOPED_TRACE(c.first);
    HostRibbon();
    const auto ribbon = MakeCom<LateBoundRibbon>(c.first);
    Variant argument(ribbon.Get());
    DISPPARAMS params{&argument.Get(), nullptr, 1, 0};
    constexpr DISPID kOnRibbonLoad = 130;
    EXPECT_EQ(host_->Session().Addin()->Invoke(kOnRibbonLoad, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                               &params, nullptr, nullptr, nullptr),
              S_OK);
    Choose({Select(row++), Push(IDOK)});
    EXPECT_EQ(ribbon->Calls(), 1);
    EXPECT_EQ(devhost::PumpUntil([&] { return ribbon->Calls() > 1; }, 2500), c.calls == 2);
    EXPECT_EQ(invalidations_, 0);
  }
}

TEST_F(LanguageDialog, StaysOpenWhenTheChoiceCannotBeStored) {
  const std::string before = SettingsFile::Text();
  // Where the new file would be written first.
  const fs::path blocked = SettingsFile::Path().native() + L".tmp";
  ASSERT_TRUE(fs::create_directory(blocked));
  bool stayed = false;
  Choose({Select(kGermanRow), Push(IDOK), [&](HWND) { stayed = true; }, Push(IDCANCEL)});
  fs::remove(blocked);
  EXPECT_TRUE(stayed);
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_EQ(boxes_.Title(), L"Display language");
  EXPECT_EQ(boxes_.Text(),
            L"Could not save the language setting. Check that you can write the user config file.");
  EXPECT_EQ(SettingsFile::Text(), before);
  EXPECT_EQ(invalidations_, 0);
}

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
