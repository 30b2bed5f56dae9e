#include <gtest/gtest.h>

#include "foundation/text.h"
#include "panel/page_url.h"

namespace qv {
namespace {

PanelUrlParts Parts(std::wstring page, std::wstring mode = {}) {
  return {.origin = L"https://service.example",
          .page = std::move(page),
          .mode = std::move(mode),
          .surface = {},
          .tick = 9000000001,
          .wps = false,
          .paneNumber = 3,
          .uiLang = L"en"};
}

std::string Url(const PanelUrlParts& parts) {
  return ToUtf8(BuildPanelUrl(parts));
}

TEST(PanelUrl, NamesThePageInItsPath) {
  const std::string query = "?_=9000000001&host=excel&pane=xl3&uiLang=en";
  const std::string root = "https://service.example/panel/excel";
  EXPECT_EQ(Url(Parts(L"")), root + query);
  EXPECT_EQ(Url(Parts(L"translate")), root + query);
  EXPECT_EQ(Url(Parts(L"Translate")), root + query);
  EXPECT_EQ(Url(Parts(L"glossary")), root + "/glossary.html" + query);
  EXPECT_EQ(Url(Parts(L"chat.html")), root + "/chat.html" + query);
}

TEST(PanelUrl, CarriesOnlyTheTwoKnownModes) {
  EXPECT_NE(Url(Parts(L"", L"full")).find("&pane=xl3&mode=full&uiLang=en"), std::string::npos);
  EXPECT_NE(Url(Parts(L"", L"Selection")).find("&mode=Selection&"), std::string::npos);
  EXPECT_EQ(Url(Parts(L"", L"preview")).find("&mode="), std::string::npos);
}

TEST(PanelUrl, SaysHostFamilyAndSurface) {
  PanelUrlParts parts = Parts(L"chat", L"full");
  parts.wps = true;
  parts.surface = L"workspace";
  EXPECT_EQ(Url(parts),
            "https://service.example/panel/excel/chat.html?_=9000000001&host=wps-excel&pane=xl3&mode=full"
            "&surface=workspace&uiLang=en");
}

TEST(PanelUrl, GivesThePageNameBack) {
  const std::pair<const wchar_t*, const char*> cases[] = {
      {L"https://service.example/panel/excel?_=1&host=excel", "translate"},
      {L"https://service.example/panel/excel", "translate"},
      {L"https://service.example/panel/word?x=1", "translate"},
      {L"https://service.example/panel/excel/login.html?_=1", "login"},
      {L"http://127.0.0.1:8080/panel/excel/pdf2table.html#top", "pdf2table"},
      // Not one of the pages that the panel knows.
      {L"https://service.example/panel/excel/other.html", ""},
      {L"https://service.example/panel/excels", ""},
      {L"https://service.example/other?next=/panel/excel/chat.html", ""},
      {L"https://service.example", ""},
      {L"about:blank", ""},
      {L"", ""},
  };
  for (const auto& [url, page] : cases)
    EXPECT_EQ(ToUtf8(PanelPageFromUrl(url)), page) << ToUtf8(url);
}

TEST(PanelUrl, LeadsBackToEveryKnownPage) {
  for (const std::wstring_view page : KnownPanelPages())
    EXPECT_EQ(PanelPageFromUrl(BuildPanelUrl(Parts(std::wstring(page)))), page);
}

TEST(FileAddress, EscapesWhatAnAddressMayNotHold) {
  EXPECT_EQ(ToUtf8(FileAddress(L"C:\\Temp\\a-1.html")), "file:///C:/Temp/a-1.html");
  EXPECT_EQ(ToUtf8(FileAddress(L"C:\\Users\\J\u00FCrgen #1\\50%.html")),
            "file:///C:/Users/J%C3%BCrgen%20%231/50%25.html");
}

}  // namespace
}  // namespace qv
