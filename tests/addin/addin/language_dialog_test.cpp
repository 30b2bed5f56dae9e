#include <array>
#include <memory>

#include "addin/ribbon_labels.h"
#include "foundation/catalog.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "host/addin_library.h"
#include "host/host_dispatch.h"
#include "host/message_pump.h"
#include "language_dialog_fixture.h"

namespace qv {
namespace {

using devhost::PageItemKind;
namespace fs = std::filesystem;

constexpr char kWithoutLanguage[] =
    R"({"serviceHost": "127.0.0.1", "servicePort": 9, "serviceScheme": "http"})";

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

/// What the host does when it has loaded a ribbon.
void LoadRibbon(IDispatch* addin, IDispatch* ribbon) {
  Variant argument(ribbon);
  DISPPARAMS params{&argument.Get(), nullptr, 1, 0};
  constexpr DISPID kOnRibbonLoad = 130;
  EXPECT_EQ(addin->Invoke(kOnRibbonLoad, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr,
                          nullptr, nullptr),
            S_OK);
}

/// The texts of one ribbon are in one language, whatever another program stores between two of them.
TEST_F(LanguageDialog, TheRibbonReadsItsLanguageOnceALoad) {
  const auto label = [this](const wchar_t* id) { return HostRibbon().Label(*HostRibbon().Find(id)); };
  EXPECT_EQ(label(L"btnSettings"), RibbonLabel(L"en", L"btnSettings"));
  SettingsFile::WriteLanguage("de");
  EXPECT_EQ(label(L"btnGlossary"), RibbonLabel(L"en", L"btnGlossary"));
  EXPECT_EQ(HostRibbon().Screentip(*HostRibbon().Find(L"btnGlossary")),
            RibbonScreentip(L"en", L"btnGlossary"));
  LoadRibbon(host_->Session().Addin(), MakeCom<LateBoundRibbon>(S_OK).Get());
  EXPECT_EQ(label(L"btnInstruction"), RibbonLabel(L"de", L"btnInstruction"));
}

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
    LoadRibbon(host_->Session().Addin(), ribbon.Get());
    Choose({Select(row++), Push(IDOK)});
    EXPECT_EQ(ribbon->Calls(), 1);
    EXPECT_EQ(devhost::PumpUntil([&] { return ribbon->Calls() > 1; }, 2500), c.calls == 2);
    EXPECT_EQ(invalidations_, 0);
  }
}

TEST_F(LanguageDialog, StaysOpenWhenTheChoiceCannotBeStored) {
  const std::string before = SettingsFile::Text();
  // Open without leave to replace it.
  UniqueFile blocked(CreateFileW(SettingsFile::Path().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                 OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(blocked);
  bool stayed = false;
  Choose({Select(kGermanRow), Push(IDOK), [&](HWND) { stayed = true; }, Push(IDCANCEL)});
  blocked.Reset();
  EXPECT_TRUE(stayed);
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_EQ(boxes_.Title(), L"Display language");
  EXPECT_EQ(boxes_.Text(),
            L"Could not save the language setting. Check that you can write the user config file.");
  EXPECT_EQ(SettingsFile::Text(), before);
  EXPECT_EQ(invalidations_, 0);
}

}  // namespace
}  // namespace qv
