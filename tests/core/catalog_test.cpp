#include "foundation/catalog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <vector>

#include "foundation/support_contact.h"
#include "foundation/text.h"

namespace qv {
namespace {

constexpr const wchar_t* kAllLanguages[] = {L"en", L"ar", L"de", L"es", L"fr", L"id",    L"ja",
                                            L"ko", L"ms", L"ru", L"th", L"vi", L"zh-CN", L"zh-TW"};

/// All keys in the order of the tables; hosts of the same family look them up by these names.
constexpr const wchar_t* kKeys[] = {
    L"blank.excel.deleted",
    L"blank.excel.failed",
    L"blank.excel.foundFailed",
    L"blank.excel.none",
    L"blank.excel.noneHint",
    L"blank.excel.prompt",
    L"blank.excel.title",
    L"blank.word.deleted",
    L"blank.word.failed",
    L"blank.word.foundFailed",
    L"blank.word.kept",
    L"blank.word.none",
    L"blank.word.noneHint",
    L"blank.word.prompt",
    L"blank.word.title",
    L"msg.browserFailed",
    L"msg.createPaneFailed",
    L"msg.hostNotReady.excel",
    L"msg.hostNotReady.ppt",
    L"msg.hostNotReady.word",
    L"msg.noWindow.excel",
    L"msg.noWindow.ppt",
    L"msg.noWindow.word",
    L"msg.paneFactory.excel",
    L"msg.paneFactory.ppt",
    L"msg.paneFactory.word",
    L"msg.paneTitle",
    L"msg.title",
    L"msg.webview2.body",
    L"msg.welcome.body",
    L"ribbon.btnAccount",
    L"ribbon.btnAccount.tip",
    L"ribbon.btnGlossary",
    L"ribbon.btnGlossary.tip",
    L"ribbon.btnGrammar",
    L"ribbon.btnGrammar.tip",
    L"ribbon.btnImageTranslate",
    L"ribbon.btnImageTranslate.tip",
    L"ribbon.btnInstruction",
    L"ribbon.btnInstruction.tip",
    L"ribbon.btnPdfTranslate",
    L"ribbon.btnPdfTranslate.tip",
    L"ribbon.btnQuickTranslate",
    L"ribbon.btnQuickTranslate.tip",
    L"ribbon.btnSettings",
    L"ribbon.btnSettings.tip",
    L"ribbon.btnSupport",
    L"ribbon.btnSupport.tip",
    L"ribbon.btnTranslateSelection",
    L"ribbon.btnTranslateSelection.tip",
    L"ribbon.excel.btnAiAgents",
    L"ribbon.excel.btnAiAgents.tip",
    L"ribbon.excel.btnAiChat",
    L"ribbon.excel.btnAiChat.tip",
    L"ribbon.excel.btnDeleteBlankRows",
    L"ribbon.excel.btnDeleteBlankRows.tip",
    L"ribbon.excel.btnImageToTable",
    L"ribbon.excel.btnImageToTable.tip",
    L"ribbon.excel.btnPdfToTable",
    L"ribbon.excel.btnPdfToTable.tip",
    L"ribbon.excel.btnTranslateFullDoc",
    L"ribbon.excel.btnTranslateFullDoc.tip",
    L"ribbon.grpAccount",
    L"ribbon.grpDialog",
    L"ribbon.grpDocTools",
    L"ribbon.grpTerminology",
    L"ribbon.grpTranslate",
    L"ribbon.tabQuorvantis",
    L"ribbon.ppt.btnTranslateCurrentSlide",
    L"ribbon.ppt.btnTranslateCurrentSlide.tip",
    L"ribbon.ppt.btnTranslateFullDoc",
    L"ribbon.ppt.btnTranslateFullDoc.tip",
    L"ribbon.word.btnAiAutofill",
    L"ribbon.word.btnAiAutofill.tip",
    L"ribbon.word.btnAiChat",
    L"ribbon.word.btnAiChat.tip",
    L"ribbon.word.btnDeleteBlankLines",
    L"ribbon.word.btnDeleteBlankLines.tip",
    L"ribbon.word.btnImageToWord",
    L"ribbon.word.btnImageToWord.tip",
    L"ribbon.word.btnTranslateFullDoc",
    L"ribbon.word.btnTranslateFullDoc.tip",
    L"settings.body",
    L"settings.cancel",
    L"settings.ok",
    L"settings.title",
    L"settings.writeFailed",
};

/// Calls check(language, key, text, English text) for every text of every language.
template <class Check>
void ForEachText(const Check& check) {
  const auto english = CatalogTable(L"en");
  for (const wchar_t* language : kAllLanguages) {
    const auto table = CatalogTable(language);
    ASSERT_EQ(table.size(), english.size()) << language;
    for (std::size_t i = 0; i < table.size(); ++i) {
      const std::wstring key = table[i].key;
      SCOPED_TRACE(testing::Message() << language << ' ' << key);
      check(std::wstring(language), key, std::wstring(table[i].text), std::wstring(english[i].text));
    }
  }
}

std::multiset<std::wstring> PlaceholdersOf(const std::wstring& text) {
  std::multiset<std::wstring> found;
  for (std::size_t at = text.find(L'{'); at != std::wstring::npos; at = text.find(L'{', at + 1))
    found.insert(text.substr(at, text.find(L'}', at) + 1 - at));
  return found;
}

/// The line breaks of a text, one group for each place: "\n\nOne.\nTwo." gives {"\n\n", "\n"}.
std::vector<std::wstring> LineBreaksOf(const std::wstring& text) {
  std::vector<std::wstring> groups;
  for (std::size_t at = text.find(L'\n'); at != std::wstring::npos; at = text.find(L'\n', at)) {
    const std::size_t end = std::min(text.find_first_not_of(L'\n', at), text.size());
    groups.push_back(text.substr(at, end - at));
    at = end;
  }
  return groups;
}

/// No control or direction mark, no part of a character beyond U+FFFF, no sign of bytes that were read
/// wrongly.
bool IsVisible(unsigned unit) {
  constexpr struct {
    unsigned first, last;
  } kHidden[] = {{0, 0x1F},        {0x7F, 0x9F},     {0xAD, 0xAD},     {0x200B, 0x200F},  {0x2028, 0x202E},
                 {0x2060, 0x206F}, {0xD800, 0xF8FF}, {0xFEFF, 0xFEFF}, {0xFFFD, 0x10FFFF}};
  return std::ranges::none_of(kHidden,
                              [&](const auto& range) { return unit >= range.first && unit <= range.last; });
}

std::size_t LongestWord(const std::wstring& text) {
  std::size_t longest = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(L' ', at), text.size());
    longest = std::max(longest, end - at);
    at = end + 1;
  }
  return longest;
}

TEST(Catalog, EveryTableHoldsTheSameKeysInTheSameOrder) {
  static_assert(std::size(kKeys) == 87);
  for (const wchar_t* language : kAllLanguages) {
    const auto table = CatalogTable(language);
    ASSERT_EQ(table.size(), std::size(kKeys)) << language;
    for (std::size_t i = 0; i < table.size(); ++i)
      EXPECT_STREQ(table[i].key, kKeys[i]) << language;
  }
}

TEST(Catalog, KeysAreUniqueAndTipsFollowTheirLabels) {
  std::set<std::wstring> keys;
  std::wstring previous;
  for (const CatalogEntry& entry : CatalogTable(L"en")) {
    const std::wstring key = entry.key;
    EXPECT_TRUE(keys.insert(key).second) << key;
    if (key.ends_with(L".tip")) {
      EXPECT_EQ(key, previous + L".tip");
    }
    previous = key;
  }
}

TEST(Catalog, EveryTextHasThePlaceholdersAndLineBreaksOfTheEnglishOne) {
  ForEachText([](const auto&, const auto&, const std::wstring& text, const std::wstring& english) {
    EXPECT_EQ(PlaceholdersOf(text), PlaceholdersOf(english));
    EXPECT_EQ(LineBreaksOf(text), LineBreaksOf(english));
  });
}

TEST(Catalog, EveryTextIsCleanlyTyped) {
  ForEachText([](const auto&, const auto&, const std::wstring& text, const auto&) {
    const std::size_t first = text.find_first_not_of(L'\n');
    ASSERT_NE(first, std::wstring::npos);
    EXPECT_NE(text[first], L' ');
    EXPECT_NE(text.back(), L' ');
    EXPECT_EQ(text.find(L"  "), std::wstring::npos);
    EXPECT_EQ(text.find(L" \n"), std::wstring::npos);
    EXPECT_EQ(text.find(L"\n "), std::wstring::npos);
    for (const auto unit : text)
      EXPECT_TRUE(unit == L'\n' || IsVisible(static_cast<unsigned>(unit)))
          << std::hex << static_cast<unsigned>(unit);
  });
}

TEST(Catalog, EachLanguageCodeSelectsItsOwnTable) {
  struct Case {
    const wchar_t* language;
    const wchar_t* tip;
  };
  for (const Case& row : {Case{L"ar", L"ترجمة الورقة بأكملها"},
                          {L"de", L"Das ganze Blatt übersetzen"},
                          {L"es", L"Traducir toda la hoja"},
                          {L"fr", L"Traduire toute la feuille"},
                          {L"id", L"Terjemahkan seluruh lembar"},
                          {L"ja", L"シート全体を翻訳します"},
                          {L"ko", L"시트 전체를 번역합니다"},
                          {L"ms", L"Terjemah seluruh lembaran"},
                          {L"ru", L"Перевести весь лист"},
                          {L"th", L"แปลทั้งแผ่นงาน"},
                          {L"vi", L"Dịch toàn bộ trang tính"},
                          {L"zh-CN", L"翻译整个工作表"},
                          {L"zh-TW", L"翻譯整個工作表"}})
    EXPECT_EQ(CatalogText(row.language, L"ribbon.excel.btnTranslateFullDoc.tip"), row.tip);
}

TEST(Catalog, EnglishIsWordedAsItWasAgreed) {
  struct Case {
    const wchar_t* key;
    const wchar_t* text;
  };
  for (const Case& row : {
           Case{L"blank.excel.deleted", L"Deleted {count} blank rows."},
           {L"blank.excel.failed", L"\n{count} could not be deleted (the sheet may be protected)."},
           {L"blank.excel.foundFailed",
            L"Found {count} blank rows, but none were deleted ({failed} failed).\n\nMake sure the sheet is "
            L"not "
            L"protected."},
           {L"blank.excel.none", L"No blank rows were found."},
           {L"blank.excel.noneHint",
            L"\n\nInside the used range, a row is removed only when every cell is empty and has no formula. "
            L"A "
            L"multi-row selection limits the scan to those rows. A single cell or single row scans the whole "
            L"used "
            L"range."},
           {L"blank.excel.prompt", L"Found {count} blank rows. Delete them?"},
           {L"blank.excel.title", L"Delete blank rows"},
           {L"msg.browserFailed", L"The browser could not be opened. Check the system default browser."},
           {L"msg.createPaneFailed", L"The task pane could not be created.\nHRESULT: {hr}"},
           {L"msg.hostNotReady.excel", L"Excel is not ready. Restart Excel and try again."},
           {L"msg.noWindow.excel",
            L"The current Excel window is not available.\nOpen a workbook, then try again."},
           {L"msg.paneFactory.excel", L"The task pane could not be created.\nRestart Excel and try again."},
           {L"msg.title", L"AI Assistant"},
           {L"msg.welcome.body",
            L"AI Assistant is installed. Open it and sign in now?\n\nYou can also open the AI Assistant tab "
            L"in the "
            L"ribbon later."},
           {L"ribbon.tabQuorvantis", L"AI Assistant"},
           {L"ribbon.grpTranslate", L"Translate"},
           {L"ribbon.grpDialog", L"Assistant"},
           {L"ribbon.grpDocTools", L"Tools"},
           {L"ribbon.grpTerminology", L"Glossary"},
           {L"ribbon.grpAccount", L"Account"},
           {L"ribbon.excel.btnTranslateFullDoc", L"Whole sheet"},
           {L"ribbon.excel.btnTranslateFullDoc.tip", L"Translate the whole sheet"},
           {L"ribbon.btnTranslateSelection", L"Selection"},
           {L"ribbon.btnTranslateSelection.tip", L"Translate the current selection"},
           {L"ribbon.btnQuickTranslate", L"Quick translate"},
           {L"ribbon.btnQuickTranslate.tip", L"Translate the word under the pointer"},
           {L"ribbon.excel.btnAiAgents", L"Coding Agent"},
           {L"ribbon.excel.btnAiAgents.tip", L"Coding agents"},
           {L"ribbon.btnSettings", L"Settings"},
           {L"ribbon.btnSettings.tip", L"Display language"},
           {L"settings.body",
            L"The ribbon updates right away. Other Office windows that are already open pick this up the "
            L"next time "
            L"their ribbon loads."},
           {L"settings.writeFailed",
            L"Could not save the language setting. Check that you can write the user config file."},
       })
    EXPECT_EQ(CatalogText(L"en", row.key), row.text) << row.key;
}

TEST(Catalog, UnknownLanguagesAreEnglishAndUnknownKeysEmpty) {
  for (const wchar_t* language :
       {L"pt", L"", L"EN", L"DE", L"d", L"zh", L"zh-HK", L"zh-cn", L"zh-CN ", L"en-US", L"de-AT"})
    EXPECT_EQ(CatalogText(language, L"msg.title"), L"AI Assistant") << language;
  for (const wchar_t* language : kAllLanguages) {
    EXPECT_EQ(CatalogText(language, L"msg.Title"), L"") << language;
    EXPECT_EQ(CatalogText(language, L""), L"") << language;
  }
}

TEST(Catalog, OnlyWordsThatTheLanguageSharesWithEnglishAreLeftInEnglish) {
  const std::set<std::wstring> shared = {
      L"de settings.ok",           L"fr settings.ok",     L"id settings.ok", L"ja settings.ok",
      L"ms settings.ok",           L"ru settings.ok",     L"vi settings.ok", L"de ribbon.btnSupport",
      L"fr ribbon.btnInstruction", L"fr ribbon.grpDialog"};
  std::set<std::wstring> same;
  ForEachText([&](const std::wstring& language, const std::wstring& key, const std::wstring& text,
                  const std::wstring& english) {
    if (language != L"en" && text == english) same.insert(language + L' ' + key);
  });
  EXPECT_EQ(same, shared);
}

TEST(Catalog, LanguagesWithTheirOwnScriptAreWrittenInIt) {
  struct Script {
    const wchar_t* language;
    unsigned first, last;
  };
  for (const Script& script : {Script{L"ar", 0x0600, 0x06FF},
                               {L"ja", 0x3040, 0x9FFF},
                               {L"ko", 0xAC00, 0xD7A3},
                               {L"ru", 0x0400, 0x04FF},
                               {L"th", 0x0E00, 0x0E7F},
                               {L"zh-CN", 0x4E00, 0x9FFF},
                               {L"zh-TW", 0x4E00, 0x9FFF}}) {
    for (const CatalogEntry& entry : CatalogTable(script.language)) {
      const std::wstring text = entry.text;
      if (text == L"OK") continue;
      EXPECT_TRUE(std::ranges::any_of(text,
                                      [&](auto unit) {
                                        return static_cast<unsigned>(unit) >= script.first &&
                                               static_cast<unsigned>(unit) <= script.last;
                                      }))
          << script.language << ' ' << entry.key;
    }
  }
}

TEST(Catalog, RibbonLabelsFitTwoShortLines) {
  ForEachText([](const auto&, const std::wstring& key, const std::wstring& text, const auto&) {
    if (!key.starts_with(L"ribbon.") || key.ends_with(L".tip")) return;
    EXPECT_LE(text.size(), 26u);
    EXPECT_LE(LongestWord(text), 16u);
    EXPECT_EQ(text.find_first_of(L".,:;!?。、，؟"), std::wstring::npos);
  });
}

TEST(Catalog, TheProductIsCalledTheSameInTabTitleAndWelcome) {
  for (const wchar_t* language : kAllLanguages) {
    const std::wstring name = CatalogText(language, L"msg.title");
    EXPECT_EQ(CatalogText(language, L"ribbon.tabQuorvantis"), name) << language;
    EXPECT_EQ(CatalogText(language, L"msg.paneTitle"), name + L" \u00B7 quorvantis.example") << language;
    EXPECT_NE(CatalogText(language, L"msg.welcome.body").find(name), std::wstring::npos) << language;
  }
}

TEST(Catalog, TheFailureOfTheSidebarNamesTheContactThatIsCopied) {
  for (const wchar_t* language : kAllLanguages) {
    const std::wstring body = CatalogText(language, L"msg.webview2.body");
    const std::size_t at = body.find(kSupportContact);
    ASSERT_NE(at, std::wstring::npos) << language;
    EXPECT_EQ(body.find(kSupportContact, at + 1), std::wstring::npos) << language;
  }
}

TEST(Catalog, FrenchPunctuationKeepsItsNonBreakingSpace) {
  for (const CatalogEntry& entry : CatalogTable(L"fr")) {
    const std::wstring text = ReplaceAll(entry.text, L"C:", L"C");
    for (std::size_t at = 0; at < text.size(); ++at) {
      if (std::wstring_view(L":;!?»").find(text[at]) != std::wstring_view::npos) {
        EXPECT_TRUE(at > 0 && text[at - 1] == 0xA0) << entry.key << ' ' << at;
      }
      if (text[at] == L'«') {
        EXPECT_EQ(text[at + 1], 0xA0) << entry.key << ' ' << at;
      }
    }
  }
}

TEST(Catalog, EveryOccurrenceOfAPlaceholderIsFilled) {
  EXPECT_EQ(FormatCatalogText(L"{count} of {count}, {failed}", L"{count}", L"3"), L"3 of 3, {failed}");
}

}  // namespace
}  // namespace qv
