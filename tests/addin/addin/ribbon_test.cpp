#include <olectl.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <vector>

#include "../foundation/loopback_server.h"
#include "addin_test.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "host/command_line.h"
#include "host/message_pump.h"
#include "host/settings_file.h"
#include "other_program.h"
#include "ribbon_driver.h"

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

/// The elements of a small XML text, each as "depth name attribute=value …" with the attributes in the order
/// of their names. Throws where the text is not well-formed; entities and comments count as that.
std::vector<std::string> Elements(std::string_view xml) {
  std::vector<std::string> found;
  std::vector<std::string> open;
  const auto require = [&](bool condition) {
    if (!condition) throw std::runtime_error("not well-formed before: " + std::string(xml.substr(0, 40)));
  };
  const auto name = [&] {
    const std::size_t length = xml.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");
    require(length != 0 && length != std::string_view::npos);
    const std::string text(xml.substr(0, length));
    xml.remove_prefix(length);
    return text;
  };
  const auto skipSpace = [&] { xml.remove_prefix(std::min(xml.find_first_not_of(" \r\n"), xml.size())); };
  const auto take = [&](std::string_view token) {
    if (!xml.starts_with(token)) return false;
    xml.remove_prefix(token.size());
    return true;
  };
  for (skipSpace(); !xml.empty(); skipSpace()) {
    if (take("</")) {
      require(!open.empty() && name() == open.back() && take(">"));
      open.pop_back();
      continue;
    }
    require(take("<"));
    const std::string element = name();
    std::map<std::string, std::string> attributes;
    for (skipSpace(); !xml.starts_with('/') && !xml.starts_with('>'); skipSpace()) {
      const std::string attribute = name();
      require(take("=\""));
      const std::size_t end = xml.find_first_of("\"<&");
      require(end != std::string_view::npos && xml[end] == '"');
      require(attributes.emplace(attribute, xml.substr(0, end)).second);
      xml.remove_prefix(end + 1);
    }
    std::string line = std::to_string(open.size()) + " " + element;
    for (const auto& [attribute, value] : attributes)
      line += " " + attribute + "=" + value;
    found.push_back(line);
    if (take("/>")) continue;
    require(take(">"));
    open.push_back(element);
  }
  require(open.empty());
  return found;
}

class Ribbon : public AddinTest {
 protected:
  void TearDown() override {
    ribbon_.reset();
    AddinTest::TearDown();
  }

  RibbonDriver& Driver() {
    if (!ribbon_) {
      if (host_ == nullptr) Connect();
      ribbon_.emplace(host_->Session().Addin());
    }
    return *ribbon_;
  }

  std::string AskText(const wchar_t* callback, const std::string& id) {
    const ComPtr<RibbonControl> control = MakeCom<RibbonControl>(Widen(id), L"");
    return ToUtf8(Driver().Ask(callback, control.Get()).Text());
  }

 private:
  std::optional<RibbonDriver> ribbon_;
};

TEST_F(Ribbon, IsDescribedToTheHost) {
  Connect();
  const std::wstring xml = host_->Session().RibbonXml();
  std::vector<std::string> expected = {
      "0 customUI onLoad=OnRibbonLoad xmlns=http://schemas.microsoft.com/office/2006/01/customui", "1 ribbon",
      "2 tabs", "3 tab getLabel=GetLabel id=tabQuorvantis"};
  for (const Group& group : Groups()) {
    expected.push_back(std::string("4 group getLabel=GetLabel id=") + group.id);
    for (const Button& button : group.buttons) {
      expected.push_back(std::string("5 button getImage=GetImage getLabel=GetLabel "
                                     "getScreentip=GetScreentip id=") +
                         button.id + " onAction=" + button.callback + " size=large tag=" + button.tag);
    }
  }
  EXPECT_EQ(Elements(ToUtf8(xml)), expected);
  EXPECT_NE(Log().find("Excel GetCustomUI OK chars=" + std::to_string(xml.size()) + "\r\n"),
            std::string::npos)
      << Log();

  ComPtr<IRibbonExtensibility> extensibility;
  ASSERT_EQ(host_->Session().Addin()->QueryInterface(IID_PPV_ARGS(&extensibility)), S_OK);
  EXPECT_EQ(extensibility->GetCustomUI(nullptr, nullptr), E_POINTER);
}

TEST_F(Ribbon, FindsItsCallbacksByName) {
  std::set<DISPID> ids;
  std::vector<std::string> names = {"OnRibbonLoad", "GetLabel", "GetScreentip", "GetImage"};
  for (const Button& button : Buttons())
    names.emplace_back(button.callback);
  for (const std::string& name : names) {
    DISPID id = 0;
    EXPECT_EQ(Driver().Find(Widen(name), id), S_OK) << name;
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
    EXPECT_EQ(Driver().Find(name, id), S_OK) << ToUtf8(name);
    EXPECT_EQ(id, expected);
  }
  for (const wchar_t* unknown : {L"getlabel", L"aiagentsclicked", L"NoSuchCallback", L""})
    EXPECT_EQ(Driver().Find(unknown, id), DISP_E_UNKNOWNNAME) << ToUtf8(unknown);
  EXPECT_NE(Log().find("Excel GetIDsOfNames NoSuchCallback -> -1\r\n"), std::string::npos);
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
  const ComPtr<RibbonControl> control = MakeCom<RibbonControl>(L"btnAccount", L"");
  const ComPtr<LateBoundRibbonControl> lateBound = MakeCom<LateBoundRibbonControl>(L"btnAccount", L"");
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
    EXPECT_EQ(Driver().InvokeRaw(kGetLabel, argument, 1, result.Put()), S_OK);
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
      EXPECT_EQ(Driver().InvokeRaw(id, argument, 1, result.Put()), S_OK) << id;
      EXPECT_EQ(result.Object(), nullptr);
      EXPECT_EQ(result.Text(), L"");
    }
  }
  VariantClear(&text);
  for (const DISPID id : {130, 131, 132})
    EXPECT_EQ(Driver().InvokeRaw(id, nullptr, 0, nullptr), S_OK) << id;
  EXPECT_EQ(Driver().InvokeRaw(108, nullptr, 0, nullptr), E_POINTER);
  EXPECT_EQ(Driver().InvokeRaw(129, nullptr, 0, nullptr), DISP_E_MEMBERNOTFOUND);
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

int ExpectedPixels(int dpi, bool wps) {
  static const std::map<int, std::pair<int, int>> sizes = {{96, {32, 48}}, {144, {48, 64}}, {192, {64, 96}}};
  return wps ? sizes.at(dpi).second : sizes.at(dpi).first;
}

TEST_F(Ribbon, ShowsIconsThatSuitTheHostAndItsDpi) {
  const DpiAware aware;
  const HWND window =
      CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 50, 50, nullptr, nullptr, nullptr, nullptr);
  engine_.AddWorkbook(L"Book.xlsx");
  engine_.Host().ActiveWindow()->hwnd = HandleToLong(window);
  const int dpi = static_cast<int>(GetDpiForWindow(window));
  const bool wps = GetModuleHandleW(L"et.exe") != nullptr;
  const int pixels = ExpectedPixels(dpi, wps);
  for (const Button& button : Buttons()) {
    SCOPED_TRACE(button.id);
    const ComPtr<RibbonControl> byId = MakeCom<RibbonControl>(Widen(button.id), L"");
    ExpectIcon(Driver().Ask(L"GetImage", byId.Get()).Object().Get(), pixels);
    const ComPtr<RibbonControl> byTag = MakeCom<RibbonControl>(L"", Widen(button.tag));
    ExpectIcon(Driver().Ask(L"GetImage", byTag.Get()).Object().Get(), pixels);
  }
  EXPECT_NE(Log().find(ToUtf8(
                Concat(L"Excel GetImage dpi=", dpi, L" px=", pixels, L" wps=", wps, L" host=excel\r\n"))),
            std::string::npos)
      << Log();
  EXPECT_EQ(Log().find("(ribbon continues)"), std::string::npos);
  DestroyWindow(window);
}

TEST(RibbonElsewhere, ShowsItsIconsInTheSizeOfThatHostAndScreen) {
  for (const wchar_t* program : {L"qv_addin_tests.exe", L"et.exe"}) {
    for (const int dpi : {96, 144, 192})
      EXPECT_TRUE(PassesElsewhere(program, dpi, L"Ribbon.ShowsIconsThatSuitTheHostAndItsDpi"));
  }
}

TEST_F(Ribbon, LoadsWithoutImagesOfUnknownControlsAndWindows) {
  const ComPtr<RibbonControl> unknown = MakeCom<RibbonControl>(L"grpAccount", L"nothing");
  EXPECT_EQ(Driver().Ask(L"GetImage", unknown.Get()).Type(), VT_EMPTY);
  EXPECT_EQ(Log().find("Excel GetImage"), std::string::npos);
  // The engine's own handles are no windows.
  engine_.AddWorkbook(L"Book.xlsx");
  const ComPtr<RibbonControl> known = MakeCom<RibbonControl>(L"btnAccount", L"");
  ExpectIcon(Driver().Ask(L"GetImage", known.Get()).Object().Get(), ExpectedPixels(96, false));
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
    Driver().Press(c.callback);
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
  const std::string reply = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
  LoopbackServer service({reply, reply});
  devhost::WriteServiceAddress({"http", "127.0.0.1", service.Endpoint().port});
  engine_.AddWorkbook(L"Book.xlsx");
  Driver().Press(L"AccountClicked");
  Driver().Press(L"SupportClicked");
  // The first connection of a process is counted as well.
  std::string requests;
  for (const std::size_t count : {1U, 2U}) {
    if (requests.find("support:entry_click") != std::string::npos) break;
    for (const std::string& request : service.WaitForRequests(count))
      requests += request + "\n";
  }
  EXPECT_TRUE(
      InOrder(requests, {"POST /v1/analytics/events", "{\"events\":[{\"event\":\"support:entry_click\"",
                         "\"props\":{\"source\":\"ribbon\"}}]}"}));
}

TEST_F(Ribbon, OnlyLogsTheBlankRowsButton) {
  engine_.AddWorkbook(L"Book.xlsx");
  Driver().Press(L"DeleteBlankRowsClicked");
  EXPECT_NE(Log().find("Excel DeleteBlankRowsClicked\r\n"), std::string::npos);
  EXPECT_EQ(boxes_.Count(), 0);
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
  Driver().Press(L"PdfTranslateClicked");
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
  Driver().Press(L"PdfTranslateClicked");
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_EQ(boxes_.Title(), L"AI Assistant");
  EXPECT_EQ(boxes_.Text(), L"The browser could not be opened. Check the system default browser.");
  EXPECT_TRUE(
      InOrder(Log(), {"Excel PdfTranslateClicked\r\n", "Excel PdfTranslate ShellExecute failed code=2\r\n"}));
}

}  // namespace
}  // namespace qv
