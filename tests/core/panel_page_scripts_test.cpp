#include <gtest/gtest.h>

#include "foundation/text.h"
#include "panel/page_scripts.h"
#include "panel/panel_state_scripts.h"
#include "workbook/doc_key.h"

namespace qv {
namespace {

TEST(PageScripts, EscapeWhatTheyCarry) {
  EXPECT_EQ(ToUtf8(AccessTokenMessage(L"a\"b")), R"({"action":"accessToken","accessToken":"a\"b"})");
  EXPECT_EQ(ToUtf8(AccessTokenMessage(L"")), R"({"action":"accessToken","accessToken":""})");
  EXPECT_EQ(ToUtf8(FontListMessage({L"Arial", L"A\\B"})),
            R"({"action":"fontList","fonts":["Arial","A\\B"]})");
  EXPECT_EQ(ToUtf8(FontListMessage({})), R"({"action":"fontList","fonts":[]})");
  EXPECT_EQ(ToUtf8(DocKeyData(L"_no_doc")), R"({"docKey":"_no_doc"})");
  EXPECT_EQ(ToUtf8(UiLangData(L"zh-CN")), R"({"uiLang":"zh-CN"})");
}

TEST(PageScripts, TellThePageItsMode) {
  EXPECT_EQ(ToUtf8(SetModeMessage(L"selection")), R"({"action":"setMode","mode":"selection"})");
  EXPECT_EQ(ToUtf8(SetModeScript(L"full")),
            "(function(){var m='full';if(window.quorvantisSetMode)window.quorvantisSetMode(m);})();");
}

TEST(PageScripts, NameTheStepThatFailed) {
  EXPECT_EQ(
      ToUtf8(WebViewFailureText(L"CreateCoreWebView2Controller", static_cast<std::int32_t>(0x8007000E))),
      "WebView2 初始化失败：CreateCoreWebView2Controller\nHRESULT: 0x8007000E");
  EXPECT_EQ(ToUtf8(WebViewFailureText(nullptr, 5)), "WebView2 初始化失败：init\nHRESULT: 0x00000005");
}

TEST(PanelState, IsTakenOverOnlyWhenThereIsOne) {
  for (const wchar_t* none : {L"", L"null", L"nu"})
    EXPECT_FALSE(IsExportedState(none)) << ToUtf8(none);
  for (const wchar_t* some : {L"{}", L"\"null\"", L"[]", L"0"})
    EXPECT_TRUE(IsExportedState(some)) << ToUtf8(some);
  EXPECT_EQ(ToUtf8(ImportStateScript(L"{\"page\":\"chat\"}")),
            "(function(s){if(window.quorvantisImportState)window.quorvantisImportState(s);})"
            "({\"page\":\"chat\"})");
  EXPECT_EQ(ToUtf8(ExportStateScript()),
            "(function(){try{return window.quorvantisExportState?window.quorvantisExportState():null;}"
            "catch(e){return null;}})()");
}

wchar_t LowerAscii(wchar_t unit) {
  return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + 32) : unit;
}

TEST(DocKey, HashesTheLowerCaseNameOneUnitAtATime) {
  // FNV-1a of "a" is the published value for one byte; a unit above 255 is one step as well.
  EXPECT_EQ(ToUtf8(DocKey(L"a", LowerAscii)), "af63dc4c8601ec8c");
  EXPECT_EQ(ToUtf8(DocKey(L"foobar", LowerAscii)), "85944171f73967e8");
  EXPECT_EQ(DocKey(L"C:\\Data\\Book.XLSX", LowerAscii), DocKey(L"c:\\data\\book.xlsx", LowerAscii));
  EXPECT_NE(DocKey(L"\x4E00", LowerAscii), DocKey(L"\x4E01", LowerAscii));
  EXPECT_EQ(DocKey(L"\x4E00", LowerAscii).size(), 16U);
  EXPECT_EQ(DocKey(L"", LowerAscii), L"_unsaved");
}

}  // namespace
}  // namespace qv
