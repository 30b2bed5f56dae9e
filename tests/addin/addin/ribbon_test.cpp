#include <olectl.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <vector>

#include "addin_test.h"
#include "analytics_service.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "host/message_pump.h"
#include "host/ribbon_description.h"
#include "host/ribbon_objects.h"
#include "other_program.h"

namespace qv {
namespace {

using devhost::PageItemKind;
namespace fs = std::filesystem;

struct Button {
  const char* id;
  const char* tag;
  const char* callback;
};

struct Group {
  const char* id;
  std::vector<Button> buttons;
};

const std::vector<Group>& Groups() {
  static const std::vector<Group> groups = {
      {"grpTranslate",
       {{"btnTranslateFullDoc", "translate_full", "TranslateFullDocClicked"},
        {"btnTranslateSelection", "translate_selection", "TranslateSelectionClicked"},
        {"btnQuickTranslate", "quick_translate", "QuickTranslateClicked"},
        {"btnImageTranslate", "image_translate", "ImageTranslateClicked"},
        {"btnGrammar", "grammar", "GrammarClicked"}}},
      {"grpDialog",
       {{"btnImageToTable", "image_to_table", "ImageToTableClicked"},
        {"btnPdfToTable", "pdf_to_table", "PdfToTableClicked"},
        {"btnPdfTranslate", "pdf_translate", "PdfTranslateClicked"},
        {"btnAiChat", "ai_chat", "AiChatClicked"},
        {"btnAiAgents", "ai_agent", "AiAgentsClicked"}}},
      {"grpDocTools", {{"btnDeleteBlankRows", "delete_blank_lines", "DeleteBlankRowsClicked"}}},
      {"grpTerminology",
       {{"btnGlossary", "glossary", "GlossaryClicked"},
        {"btnInstruction", "instruction", "InstructionClicked"}}},
      {"grpAccount",
       {{"btnAccount", "account", "AccountClicked"},
        {"btnSupport", "support", "SupportClicked"},
        {"btnSettings", "settings", "SettingsClicked"}}},
  };
  return groups;
}

std::vector<Button> Buttons() {
  std::vector<Button> all;
  for (const Group& group : Groups())
    all.insert(all.end(), group.buttons.begin(), group.buttons.end());
  return all;
}

/// A control of a host whose controls answer by name only.
class LateBoundControl final : public devhost::HostDispatch<IDispatch> {
 public:
  explicit LateBoundControl(std::wstring id) : id_(std::move(id)) {}

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                   UINT*) noexcept override {
    *result = Variant(id == kId ? id_ : std::wstring()).Detach();
    return S_OK;
  }

 protected:
  std::span<const devhost::DispatchName> Names() const noexcept override {
    static constexpr devhost::DispatchName kNames[] = {{L"Id", kId}, {L"Tag", kTag}};
    return kNames;
  }

 private:
  static constexpr DISPID kId = 1;
  static constexpr DISPID kTag = 3;

  std::wstring id_;
};

ComPtr<IDispatch> Control(std::string_view id, std::string_view tag = {}) {
  return MakeCom<devhost::RibbonControl>(Widen(id), Widen(tag), nullptr);
}

class Ribbon : public AddinTest {
 protected:
  void TearDown() override {
    callbacks_.Reset();
    AddinTest::TearDown();
  }

  /// Where a host sends the callbacks: the IDispatch of the ribbon interface.
  IDispatch* Callbacks() {
    if (callbacks_ == nullptr) {
      if (host_ == nullptr) Connect();
      ComPtr<IRibbonExtensibility> ribbon;
      EXPECT_EQ(host_->Session().Addin()->QueryInterface(IID_PPV_ARGS(&ribbon)), S_OK);
      EXPECT_EQ(ribbon.As(&callbacks_), S_OK);
    }
    return callbacks_.Get();
  }

  HRESULT Find(std::wstring name, DISPID& id) {
    LPOLESTR names = name.data();
    id = DISPID_UNKNOWN;
    return Callbacks()->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
  }

  HRESULT Invoke(DISPID id, VARIANT* arguments, UINT count, VARIANT* result) {
    DISPPARAMS params{arguments, nullptr, count, 0};
    return Callbacks()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, result, nullptr,
                               nullptr);
  }

  /// The answer of a callback about a control.
  Variant Ask(const wchar_t* callback, const ComPtr<IDispatch>& control) {
    DISPID id = 0;
    EXPECT_EQ(Find(callback, id), S_OK);
    Variant argument(control.Get());
    Variant result;
    EXPECT_EQ(Invoke(id, &argument.Get(), 1, result.Put()), S_OK);
    return result;
  }

  std::string AskText(const wchar_t* callback, std::string_view id) {
    return ToUtf8(Ask(callback, Control(id)).Text());
  }

  /// A press of the button whose callback that is.
  void Press(const wchar_t* callback) { static_cast<void>(Ask(callback, Control("button"))); }

 private:
  ComPtr<IDispatch> callbacks_;
};

/// What the host reads of an item, in one line.
std::string Line(const devhost::RibbonItem& item) {
  return ToUtf8(Concat(item.id, L" tag=", item.tag, L" label=", item.label.callback, L" tip=",
                       item.screentip.callback, L" image=", item.getImage, L" action=", item.onAction,
                       L" large=", item.isLarge));
}

TEST_F(Ribbon, IsDescribedToTheHost) {
  ComPtr<IRibbonExtensibility> extensibility;
  ASSERT_EQ(Callbacks()->QueryInterface(IID_PPV_ARGS(&extensibility)), S_OK);
  EXPECT_EQ(extensibility->GetCustomUI(nullptr, nullptr), E_POINTER);
  Bstr xml;
  ASSERT_EQ(extensibility->GetCustomUI(Bstr(L"Microsoft.Excel.Workbook").Get(), xml.Put()), S_OK);
  EXPECT_NE(Log().find(ToUtf8(Concat(L"Excel GetCustomUI OK chars=", xml.View().size(), L"\r\n"))),
            std::string::npos);
  EXPECT_TRUE(xml.View().starts_with(
      L"<customUI xmlns=\"http://schemas.microsoft.com/office/2006/01/customui\" onLoad=\"OnRibbonLoad\">"));

  // Throws at an attribute that Office would not take.
  const devhost::RibbonDescription description = devhost::ReadRibbon(xml.View());
  ASSERT_EQ(description.tabs.size(), 1U);
  const devhost::RibbonItem& tab = description.tabs.front();
  EXPECT_EQ(Line(tab), "tabQuorvantis tag= label=GetLabel tip= image= action= large=0");
  std::vector<std::string> found;
  std::vector<std::string> expected;
  for (const devhost::RibbonItem& group : tab.children) {
    found.push_back(Line(group));
    for (const devhost::RibbonItem& button : group.children)
      found.push_back(Line(button));
  }
  for (const Group& group : Groups()) {
    expected.push_back(std::string(group.id) + " tag= label=GetLabel tip= image= action= large=0");
    for (const Button& button : group.buttons) {
      expected.push_back(std::string(button.id) + " tag=" + button.tag +
                         " label=GetLabel tip=GetScreentip image=GetImage action=" + button.callback +
                         " large=1");
    }
  }
  EXPECT_EQ(found, expected);
}

TEST_F(Ribbon, FindsItsCallbacksByName) {
  std::set<DISPID> ids;
  std::vector<std::string> names = {"OnRibbonLoad", "GetLabel", "GetScreentip", "GetImage"};
  for (const Button& button : Buttons())
    names.emplace_back(button.callback);
  for (const std::string& name : names) {
    DISPID id = 0;
    EXPECT_EQ(Find(Widen(name), id), S_OK) << name;
    EXPECT_TRUE(ids.insert(id).second) << name << " shares " << id;
    EXPECT_NE(Log().find("Excel GetIDsOfNames " + name + " -> " + std::to_string(id) + "\r\n"),
              std::string::npos);
  }
  EXPECT_EQ(ids.size(), 20U);
}

TEST_F(Ribbon, FindsWhatTheTypeLibraryHoldsInAnyCase) {
  const std::pair<const wchar_t*, DISPID> known[] = {
      {L"translatefulldocclicked", 100}, {L"TRANSLATESELECTIONCLICKED", 101},
      {L"glossaryClicked", 102},         {L"instructionclicked", 103},
      {L"quicktranslateclicked", 104},   {L"aichatclicked", 105},
      {L"accountclicked", 106},          {L"supportclicked", 109},
  };
  DISPID id = 0;
  for (const auto& [name, expected] : known) {
    EXPECT_EQ(Find(name, id), S_OK) << ToUtf8(name);
    EXPECT_EQ(id, expected);
  }
  for (const wchar_t* unknown : {L"getlabel", L"aiagentsclicked", L"NoSuchCallback", L""})
    EXPECT_EQ(Find(unknown, id), DISP_E_UNKNOWNNAME) << ToUtf8(unknown);
  EXPECT_NE(Log().find("Excel GetIDsOfNames NoSuchCallback -> -1\r\n"), std::string::npos);
}

TEST_F(Ribbon, FindsACallbackTogetherWithItsArgument) {
  std::wstring name = L"GlossaryClicked";
  std::wstring argument = L"ribbonControl";
  LPOLESTR names[] = {name.data(), argument.data()};
  DISPID ids[] = {7, 7};
  EXPECT_EQ(Callbacks()->GetIDsOfNames(IID_NULL, names, 2, LOCALE_USER_DEFAULT, ids), S_OK);
  EXPECT_EQ(ids[0], 102);
  EXPECT_EQ(ids[1], 0);
}

TEST_F(Ribbon, KnowsACallbackWhoseArgumentItDoesNotKnow) {
  for (const wchar_t* callback : {L"TranslateFullDocClicked", L"GetLabel"}) {
    std::wstring name = callback;
    std::wstring argument = L"noSuchArgument";
    LPOLESTR names[] = {name.data(), argument.data(), argument.data()};
    DISPID ids[] = {7, 7, 7};
    EXPECT_EQ(Callbacks()->GetIDsOfNames(IID_NULL, names, 3, LOCALE_USER_DEFAULT, ids), DISP_E_UNKNOWNNAME);
    DISPID alone = 0;
    EXPECT_EQ(Find(callback, alone), S_OK);
    EXPECT_EQ(ids[0], alone);
    EXPECT_EQ(ids[1], DISPID_UNKNOWN);
    EXPECT_EQ(ids[2], DISPID_UNKNOWN);
  }
}

TEST_F(Ribbon, NamesEveryControl) {
  for (const Button& button : Buttons()) {
    const std::string label = AskText(L"GetLabel", button.id);
    const std::string tip = AskText(L"GetScreentip", button.id);
    EXPECT_NE(label, "");
    EXPECT_NE(label, button.id);
    EXPECT_NE(tip, "");
    EXPECT_NE(tip, button.id);
  }
  for (const Group& group : Groups())
    EXPECT_NE(AskText(L"GetLabel", group.id), group.id);
  EXPECT_NE(AskText(L"GetLabel", "tabQuorvantis"), "tabQuorvantis");
  EXPECT_EQ(AskText(L"GetLabel", "btnOfTomorrow"), "btnOfTomorrow");
  EXPECT_EQ(AskText(L"GetScreentip", "btnOfTomorrow"), "btnOfTomorrow");
}

TEST_F(Ribbon, KnowsControlsHoweverTheyArePassed) {
  const std::string label = AskText(L"GetLabel", "btnAccount");
  constexpr DISPID kGetLabel = 131;
  const ComPtr<IDispatch> control = Control("btnAccount", "");
  const ComPtr<LateBoundControl> lateBound = MakeCom<LateBoundControl>(L"btnAccount");
  IDispatch* pointer = control.Get();
  Variant inner(pointer);
  VARIANT byValue{};
  byValue.vt = VT_DISPATCH;
  byValue.pdispVal = lateBound.Get();
  VARIANT byReference{};
  byReference.vt = VT_DISPATCH | VT_BYREF;
  byReference.ppdispVal = &pointer;
  VARIANT byVariant{};
  byVariant.vt = VT_VARIANT | VT_BYREF;
  byVariant.pvarVal = &inner.Get();
  for (VARIANT* argument : {&byValue, &byReference, &byVariant}) {
    Variant result;
    EXPECT_EQ(Invoke(kGetLabel, argument, 1, result.Put()), S_OK);
    EXPECT_EQ(ToUtf8(result.Text()), label) << argument->vt;
  }
}

TEST_F(Ribbon, IsNeverFailed) {
  VARIANT nothing{};
  VARIANT text = Variant(L"btnAccount").Detach();
  VARIANT nullReference{};
  nullReference.vt = VT_DISPATCH | VT_BYREF;
  for (VARIANT* argument : {&nothing, &text, &nullReference}) {
    for (const DISPID id : {108, 130, 131, 132}) {
      Variant result;
      EXPECT_EQ(Invoke(id, argument, 1, result.Put()), S_OK) << id;
      EXPECT_EQ(result.Object(), nullptr);
      EXPECT_EQ(result.Text(), L"");
    }
  }
  VariantClear(&text);
  for (const DISPID id : {130, 131, 132})
    EXPECT_EQ(Invoke(id, nullptr, 0, nullptr), S_OK) << id;
  EXPECT_EQ(Invoke(108, nullptr, 0, nullptr), E_POINTER);
  EXPECT_EQ(Invoke(129, nullptr, 0, nullptr), DISP_E_MEMBERNOTFOUND);
  EXPECT_NE(Log().find("Excel Invoke ribbon dispid=129\r\n"), std::string::npos);
}

/// What one pixel of a bitmap holds.
struct Pixel {
  std::uint8_t blue, green, red, alpha;
};

/// A square picture with premultiplied alpha, neither empty nor full.
void ExpectIcon(IDispatch* image, int pixels) {
  ComPtr<IPicture> picture;
  ASSERT_NE(image, nullptr);
  ASSERT_EQ(image->QueryInterface(IID_PPV_ARGS(&picture)), S_OK);
  SHORT type = 0;
  EXPECT_EQ(picture->get_Type(&type), S_OK);
  EXPECT_EQ(type, PICTYPE_BITMAP);
  OLE_HANDLE handle = 0;
  ASSERT_EQ(picture->get_Handle(&handle), S_OK);
  DIBSECTION bitmap{};
  ASSERT_NE(GetObjectW(LongToHandle(static_cast<LONG>(handle)), sizeof(bitmap), &bitmap), 0);
  EXPECT_EQ(bitmap.dsBm.bmWidth, pixels);
  EXPECT_EQ(bitmap.dsBm.bmHeight, pixels);
  ASSERT_EQ(bitmap.dsBm.bmBitsPixel, 32);
  const auto* const first = static_cast<const Pixel*>(bitmap.dsBm.bmBits);
  const std::span<const Pixel> all(first, static_cast<std::size_t>(pixels * pixels));
  const auto has = [&](auto&& test) { return std::any_of(all.begin(), all.end(), test); };
  EXPECT_TRUE(has([](const Pixel& p) { return p.alpha == 0; }));
  EXPECT_TRUE(has([](const Pixel& p) { return p.alpha == 255; }));
  EXPECT_TRUE(has([](const Pixel& p) { return p.alpha > 0 && p.alpha < 255; }));
  EXPECT_FALSE(has([](const Pixel& p) { return std::max({p.red, p.green, p.blue}) > p.alpha; }));
}

/// How many pixels of a part of a picture's memory show anything.
std::ptrdiff_t VisiblePixels(std::span<const Pixel> part) {
  return std::count_if(part.begin(), part.end(), [](const Pixel& p) { return p.alpha > 0; });
}

int ExpectedPixels(int dpi, bool wps) {
  static const std::map<int, std::pair<int, int>> sizes = {{96, {32, 48}}, {144, {48, 64}}, {192, {64, 96}}};
  return wps ? sizes.at(dpi).second : sizes.at(dpi).first;
}

/// Whether this program goes by the name of WPS Spreadsheets.
bool IsCalledLikeWps() {
  return GetModuleHandleW(L"et.exe") != nullptr;
}

TEST_F(Ribbon, ShowsIconsUprightToHostsThatReadTheirMemory) {
  ComPtr<IPicture> picture;
  ASSERT_EQ(Ask(L"GetImage", Control("btnAiChat")).Object().As(&picture), S_OK);
  OLE_HANDLE handle = 0;
  ASSERT_EQ(picture->get_Handle(&handle), S_OK);
  BITMAP bitmap{};
  ASSERT_NE(GetObjectW(LongToHandle(static_cast<LONG>(handle)), sizeof(bitmap), &bitmap), 0);
  const auto size = static_cast<std::size_t>(bitmap.bmWidth * bitmap.bmHeight);
  const std::span<const Pixel> all(static_cast<const Pixel*>(bitmap.bmBits), size);
  // The balloon's tail, which is narrow, is at its bottom, and so in the first rows.
  EXPECT_LT(2 * VisiblePixels(all.first(size / 4)), VisiblePixels(all.last(size / 4)));
}

TEST_F(Ribbon, ShowsIconsThatSuitTheHostAndItsDpi) {
  const DpiAware aware;
  engine_.AddWorkbook(L"Book.xlsx");
  const int dpi = static_cast<int>(GetDpiForSystem());
  const bool wps = IsCalledLikeWps();
  const int pixels = ExpectedPixels(dpi, wps);
  for (const Button& button : Buttons()) {
    SCOPED_TRACE(button.id);
    const ComPtr<IDispatch> byId = Control(button.id);
    ExpectIcon(Ask(L"GetImage", byId).Object().Get(), pixels);
    const ComPtr<IDispatch> byTag = Control("", button.tag);
    ExpectIcon(Ask(L"GetImage", byTag).Object().Get(), pixels);
  }
  EXPECT_NE(Log().find(ToUtf8(
                Concat(L"Excel GetImage dpi=", dpi, L" px=", pixels, L" wps=", wps, L" host=excel\r\n"))),
            std::string::npos)
      << Log();
  EXPECT_EQ(Log().find("(ribbon continues)"), std::string::npos);
}

TEST_F(Ribbon, ShowsUnscaledIconsWithoutAWindow) {
  const DpiAware aware;
  engine_.AddWorkbook(L"Book.xlsx");
  Connect();
  engine_.Host().givenHwnd = 12345;
  ExpectIcon(Ask(L"GetImage", Control("btnAccount")).Object().Get(), ExpectedPixels(96, IsCalledLikeWps()));
  EXPECT_NE(Log().find("Excel GetImage dpi=96 px="), std::string::npos);
}

TEST(RibbonElsewhere, ShowsItsIconsInTheSizeOfThatHostAndScreen) {
  for (const wchar_t* program : {L"qv_addin_tests.exe", L"et.exe"}) {
    for (const int dpi : {96, 144, 192})
      EXPECT_TRUE(PassesElsewhere(program, dpi, L"Ribbon.Shows*"));
  }
}

TEST_F(Ribbon, GivesUnknownControlsNoImage) {
  EXPECT_EQ(Ask(L"GetImage", Control("grpAccount", "nothing")).Type(), VT_EMPTY);
  EXPECT_EQ(Log().find("Excel GetImage dpi"), std::string::npos);
}

TEST_F(Ribbon, OpensThePageOfTheButton) {
  struct Case {
    const wchar_t* callback;
    const wchar_t* page;
    const wchar_t* mode = L"";
  };
  const Case cases[] = {
      {L"TranslateFullDocClicked", L"translate", L"full"},
      {L"GlossaryClicked", L"glossary"},
      {L"InstructionClicked", L"instruction"},
      {L"QuickTranslateClicked", L"quicktranslate"},
      {L"GrammarClicked", L"grammar"},
      {L"AiChatClicked", L"chat"},
      {L"AiAgentsClicked", L"agents"},
      {L"AccountClicked", L"account"},
      {L"SupportClicked", L"support"},
      {L"ImageTranslateClicked", L"imagetranslate"},
      {L"ImageToTableClicked", L"imagetotable"},
      {L"PdfToTableClicked", L"pdf2table"},
      {L"TranslateSelectionClicked", L"translate", L"selection"},
  };
  engine_.AddWorkbook(L"Book.xlsx");
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUtf8(c.callback));
    const std::size_t before = Log().size();
    Press(c.callback);
    const bool isRoot = std::wstring_view(c.page) == L"translate";
    const std::wstring place = isRoot ? L"/panel/excel?" : Concat(L"/panel/excel/", c.page);
    const std::string url = WaitForItem(PageItemKind::kNavigate, place);
    const std::size_t mode = url.find("&mode=");
    const std::string expected = *c.mode == L'\0' ? "" : "&mode=" + ToUtf8(c.mode) + "&";
    EXPECT_EQ(mode == std::string::npos ? "" : url.substr(mode, expected.size()), expected) << url;
    EXPECT_NE(WaitForItem(PageItemKind::kJson, L"\"accessToken\""), "");
    EXPECT_NE(Log().find("Excel ShowPanePage page=" + ToUtf8(c.page), before), std::string::npos);
    EXPECT_EQ(boxes_.Count(), 0);
  }
  EXPECT_TRUE(InOrder(Log(), {"Excel Invoke ribbon dispid=100\r\n", "Excel TranslateFullDocClicked\r\n",
                              "Excel ShowPanePage\r\n", "Excel Invoke ribbon dispid=102\r\n",
                              "Excel Invoke ribbon dispid=101\r\n", "Excel TranslateSelectionClicked\r\n",
                              "Excel ShowPanePage\r\n"}));
  EXPECT_EQ(host_->Panes().OpenPanes().size(), 1U);
}

TEST_F(Ribbon, CountsPressesOfTheSupportButton) {
  AnalyticsService service(2);
  engine_.AddWorkbook(L"Book.xlsx");
  Press(L"AccountClicked");
  Press(L"SupportClicked");
  EXPECT_TRUE(InOrder(service.Find("support:entry_click"),
                      {"POST /v1/analytics/events", "{\"events\":[{\"event\":\"support:entry_click\"",
                       "\"props\":{\"source\":\"ribbon\"}}]}"}));
}

/// The program that opens http addresses while this lives. In Wine it is the machine's setting.
class SystemBrowser {
 public:
  explicit SystemBrowser(const std::wstring& command) {
    std::array<wchar_t, MAX_PATH> text{};
    DWORD size = sizeof(text);
    EXPECT_EQ(RegGetValueW(HKEY_LOCAL_MACHINE, kKey, nullptr, RRF_RT_ANY, nullptr, text.data(), &size),
              ERROR_SUCCESS);
    before_ = text.data();
    Write(command);
  }
  SystemBrowser(const SystemBrowser&) = delete;
  SystemBrowser& operator=(const SystemBrowser&) = delete;
  ~SystemBrowser() { Write(before_); }

 private:
  static constexpr wchar_t kKey[] = L"Software\\Classes\\http\\shell\\open\\command";

  static void Write(const std::wstring& command) {
    EXPECT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, kKey, nullptr, REG_SZ, command.c_str(),
                              static_cast<DWORD>((command.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
  }

  std::wstring before_;
};

TEST_F(Ribbon, OpensThePdfPageInTheBrowser) {
  const fs::path opened = fs::temp_directory_path() / L"quorvantis_opened.txt";
  fs::remove(opened);
  const SystemBrowser browser(L"cmd.exe /c echo %1>" + opened.native());
  Press(L"PdfTranslateClicked");
  const auto line = [&] {
    std::ifstream stream(opened);
    std::string text;
    std::getline(stream, text);
    return text;
  };
  EXPECT_TRUE(devhost::PumpUntil([&] { return line().find("pdftr") != std::string::npos; }, kTimeoutMs));
  EXPECT_NE(line().find("http://127.0.0.1:9/panel/web/webtranslate.html?tool=pdftr"), std::string::npos)
      << line();
  EXPECT_EQ(boxes_.Count(), 0);
  EXPECT_NE(Log().find("Excel PdfTranslateClicked\r\n"), std::string::npos);
  EXPECT_EQ(Log().find("ShellExecute failed"), std::string::npos);
  fs::remove(opened);
}

TEST_F(Ribbon, TellsWhenNoBrowserOpens) {
  const SystemBrowser browser(L"C:\\nowhere\\browser.exe %1");
  Press(L"PdfTranslateClicked");
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_EQ(boxes_.Title(), L"AI Assistant");
  EXPECT_EQ(boxes_.Text(), L"The browser could not be opened. Check the system default browser.");
  EXPECT_TRUE(
      InOrder(Log(), {"Excel PdfTranslateClicked\r\n", "Excel PdfTranslate ShellExecute failed code=2\r\n"}));
}

}  // namespace
}  // namespace qv
