#include <set>

#include "../foundation/scratch_folder.h"
#include "addin_test.h"
#include "foundation/dispatch.h"
#include "foundation/text.h"
#include "host/message_pump.h"
#include "workbook/doc_key.h"

namespace qv {
namespace {

using devhost::PageItemKind;

class Messages : public AddinTest {
 protected:
  /// The reply script to a request of the page.
  std::string Ask(std::uint32_t view, const std::wstring& action) {
    Post(view, L"{\"requestId\":\"r\\\"1\",\"action\":\"" + action + L"\"}");
    return WaitForItem(PageItemKind::kScript, L"_onResponse");
  }

  /// What the page hears when it asks for the token.
  std::string Token(std::uint32_t view) {
    Post(view, L"{\"action\":\"requestAccessToken\"}");
    return WaitForItem(PageItemKind::kJson, L"\"accessToken\"");
  }
};

constexpr char kReplyStart[] =
    R"(if(window.QuorvantisTerminology)QuorvantisTerminology._onResponse({"requestId":"r\"1","ok":true,"data":)";

TEST_F(Messages, WithoutEffectAreOnlyLogged) {
  const std::uint32_t view = OpenPane();
  const std::uint64_t items = Browser().ItemCount();
  for (const wchar_t* message : {L"{\"action\":\"noSuchAction\"}", L"{\"action\":\"Start\"}"})
    Post(view, message);
  EXPECT_NE(Log().find("OnJsMessage action=noSuchAction nativeTokenLen="), std::string::npos);
  EXPECT_NE(Log().find("OnJsMessage action=Start nativeTokenLen="), std::string::npos);

  const std::string before = Log();
  for (const wchar_t* message :
       {L"", L"{}", L"{\"action\":\"\"}", L"{\"Action\":\"start\"}", L"no JSON at all"})
    Post(view, message);
  EXPECT_EQ(Log().find("OnJsMessage", before.size()), std::string::npos);
  EXPECT_EQ(Browser().ItemCount(), items);
}

TEST_F(Messages, ThatAreNoStringsAreIgnored) {
  const std::uint32_t view = OpenPane();
  ASSERT_TRUE(Browser().PostPageJson(view, L"{\"action\":\"getFontList\"}", nullptr));
  EXPECT_TRUE(WaitForLog("WebMessageReceived hr=0x0"));
  devhost::DispatchWaitingMessages();
  EXPECT_EQ(Log().find("OnJsMessage"), std::string::npos);
}

TEST_F(Messages, FromForeignPagesAreRefused) {
  const std::uint32_t view = OpenPane();
  const wchar_t* const sources[] = {
      L"http://127.0.0.1:9.evil.example/panel/excel",
      L"http://127.0.0.1/panel/excel",
      L"https://127.0.0.1:9/panel/excel",
      L"http://evil.example/?http://127.0.0.1:9/panel/excel",
      L"about:blank",
  };
  for (const wchar_t* source : sources) {
    SCOPED_TRACE(ToUtf8(source));
    const std::size_t before = Log().size();
    ASSERT_TRUE(
        Browser().PostPageString(view, L"{\"action\":\"setAccessToken\",\"token\":\"stolen\"}", source));
    EXPECT_TRUE(devhost::PumpUntil(
        [&] {
          return Log().find("WebMessageReceived refused source=" + ToUtf8(source), before) !=
                 std::string::npos;
        },
        kTimeoutMs));
    devhost::DispatchWaitingMessages();
    EXPECT_EQ(Log().find("OnJsMessage", before), std::string::npos);
  }
  EXPECT_EQ(Token(view), R"({"action":"accessToken","accessToken":""})");
}

TEST_F(Messages, StoreAndForgetTheToken) {
  const std::uint32_t view = OpenPane();
  Post(view, L"{\"action\":\"clearAccessToken\"}");
  EXPECT_NE(Log().find("OnJsMessage clearAccessToken cleared native token\r\n"), std::string::npos);

  // An empty token is only ignored by a pane that holds one.
  Post(view, L"{\"action\":\"setAccessToken\",\"accessToken\":\"\"}");
  EXPECT_EQ(Log().find("ignored empty token"), std::string::npos);
  Post(view, L"{\"action\":\"setAccessToken\",\"token\":\"abc\\u00e9\"}");
  EXPECT_EQ(Token(view), "{\"action\":\"accessToken\",\"accessToken\":\"abc\xC3\xA9\"}");
  EXPECT_NE(Log().find("OnJsMessage action=requestAccessToken nativeTokenLen=4\r\n"), std::string::npos);
  Post(view, L"{\"action\":\"setAccessToken\"}");
  EXPECT_NE(Log().find("OnJsMessage setAccessToken ignored empty token\r\n"), std::string::npos);

  // Signing out empties the process's copy alone.
  Post(view, L"{\"action\":\"clearAccessToken\"}");
  EXPECT_EQ(Token(view), "{\"action\":\"accessToken\",\"accessToken\":\"abc\xC3\xA9\"}");
  EXPECT_TRUE(InOrder(Log(), {"cleared native token", "ignored empty token", "cleared native token",
                              "action=requestAccessToken nativeTokenLen=0\r\n"}));
  EXPECT_EQ(Log().find("abc"), std::string::npos);
}

TEST_F(Messages, ListTheInstalledFonts) {
  const std::uint32_t view = OpenPane();
  Post(view, L"{\"action\":\"getFontList\"}");
  const std::string message = WaitForItem(PageItemKind::kJson, L"fontList");
  const auto json = nlohmann::json::parse(message);
  ASSERT_TRUE(json["fonts"].is_array());
  ASSERT_FALSE(json["fonts"].empty());
  std::set<std::string> names;
  for (const auto& name : json["fonts"]) {
    EXPECT_NE(name.get<std::string>().front(), '@');
    EXPECT_TRUE(names.insert(name).second) << name;
  }
}

TEST_F(Messages, AskAboutTheClient) {
  const std::uint32_t view = OpenPane();
  const std::string info = Ask(view, L"clientInfoGet");
  EXPECT_TRUE(info.starts_with(std::string(kReplyStart) + R"({"productId":"quorvantis-office-ai",)")) << info;
  EXPECT_TRUE(InOrder(info, {R"("version":"0.1.0")", R"("hostApp":"excel")"}));
  EXPECT_EQ(Ask(view, L"exportLocalSnapshot"),
            std::string(kReplyStart) + R"({"glossaries":[],"instructions":[]}}))" + ";");
  EXPECT_TRUE(Ask(view, L"uiLangGet").starts_with(std::string(kReplyStart) + R"({"uiLang":")"));
}

TEST_F(Messages, ExportWhatTheUserKeepsOnThisComputer) {
  const std::uint32_t view = OpenPane();
  // Makes the folders.
  static_cast<void>(Ask(view, L"exportLocalSnapshot"));
  const KeptFile kept(std::wstring(_wgetenv(L"APPDATA")) +
                      L"\\Quorvantis\\glossaries\\global\\message-test.json");
  WriteBytes(kept.Path(),
             R"({"meta":{"name":"N","updatedAt":5},"entries":[{"source":"</script>","target":"é"}]})");
  const std::string answer = Ask(view, L"exportLocalSnapshot");
  EXPECT_NE(answer.find(R"({"id":"message-test","name":"N","updatedAt":5,"entries":[)"
                        R"({"source":"</script>","target":"é","note":"","enabled":true}]})"),
            std::string::npos)
      << answer;
}

TEST_F(Messages, AskWhichAgentsThereAre) {
  const std::string answer = Ask(OpenPane(), L"detectAgents");
  EXPECT_TRUE(answer.starts_with(std::string(kReplyStart) + R"({"agents":[{"id":"opencode",)")) << answer;
}

wchar_t Unchanged(wchar_t unit) {
  return unit;
}

TEST_F(Messages, AskForTheDocumentKey) {
  const auto workbook = engine_.AddWorkbook(L"RESUMÉ Ж.xlsx", L"C:\\Books");
  const std::uint32_t view = OpenPane();
  const auto reply = [](const std::wstring& key) {
    return std::string(kReplyStart) + R"({"docKey":")" + ToUtf8(key) + R"("}});)";
  };
  // Letters beyond ASCII are lowered too.
  EXPECT_EQ(Ask(view, L"docKeyGet"), reply(DocKey(L"c:\\books\\resumé ж.xlsx", Unchanged)));
  while (const auto open = engine_.Host().ActiveWorkbook())
    engine_.CloseWorkbook(open);
  EXPECT_EQ(Ask(view, L"docKeyGet"), reply(L"_no_doc"));
}

TEST_F(Messages, TraceIntoTheLog) {
  const std::uint32_t view = OpenPane();
  Post(view, L"{\"action\":\"trace\",\"phase\":\"boot\",\"detail\":\"页面\",\"jsTokenLen\":7}");
  EXPECT_NE(Log().find("panel.trace phase=boot detail=页面 jsTokenLen=7\r\n"), std::string::npos);
}

TEST_F(Messages, OfAStartStoreTheTokenFirst) {
  const std::uint32_t view = OpenPane();
  Post(view, L"{\"action\":\"start\",\"accessToken\":\"from-start\",\"targetLang\":\"es\"}");
  EXPECT_NE(Token(view).find("from-start"), std::string::npos);
  EXPECT_NE(Log().find("Excel translateStart action=start"), std::string::npos);
  EXPECT_EQ(Log().find("from-start"), std::string::npos);
}

TEST_F(Messages, AboutTranslatedCellsReachTheirOwner) {
  const std::uint32_t view = OpenPane();
  Post(view, L"{\"action\":\"setExcelDisplayMode\",\"mode\":\"restore\",\"scope\":\"session\"}");
  EXPECT_EQ(WaitForItem(PageItemKind::kScript, L"onExcelDisplayModeDone"),
            "if(window.onExcelDisplayModeDone)onExcelDisplayModeDone({ok:false,mode:\"original\",applied:0,"
            "failed:0,message:\"没有可还原的单元格\"})");
  Post(view, L"{\"action\":\"setTargetStyle\",\"targetFontBold\":true}");
  EXPECT_NE(WaitForItem(PageItemKind::kScript, L"onTargetStyleDone({ok:true,applied:0"), "");
  for (const wchar_t* action : {L"restoreAll", L"applyAll"}) {
    Post(view, std::wstring(L"{\"action\":\"") + action + L"\"}");
    EXPECT_NE(WaitForItem(PageItemKind::kScript, std::wstring(L"onBatchDone({action:\"") + action), "");
  }
}

/// A start goes through the message queue; what was posted after it must not overtake it.
TEST_F(Messages, KeepTheirOrder) {
  const std::uint32_t view = OpenPane();
  for (const wchar_t* action : {L"start", L"cancel", L"pause", L"resume", L"requestAccessToken"}) {
    const std::wstring message = std::wstring(L"{\"action\":\"") + action + L"\"}";
    ASSERT_TRUE(Browser().PostPageString(view, message.c_str(), nullptr));
  }
  EXPECT_NE(WaitForItem(PageItemKind::kJson, L"\"accessToken\""), "");
  EXPECT_TRUE(InOrder(Log(), {"action=start ", "action=cancel ", "action=pause ", "action=resume ",
                              "action=requestAccessToken "}));
}

}  // namespace
}  // namespace qv
