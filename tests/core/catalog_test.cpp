#include "foundation/catalog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

#include "foundation/support_contact.h"
#include "foundation/text.h"

namespace qv {
namespace {

constexpr const wchar_t* kAllLanguages[] = {L"en", L"ar", L"de", L"es", L"fr", L"id",    L"ja",
                                            L"ko", L"ms", L"ru", L"th", L"vi", L"zh-CN", L"zh-TW"};

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
  const auto english = CatalogTable(L"en");
  ASSERT_EQ(english.size(), 87u);
  for (const wchar_t* language : kAllLanguages) {
    const auto table = CatalogTable(language);
    ASSERT_EQ(table.size(), english.size()) << language;
    for (std::size_t i = 0; i < table.size(); ++i)
      EXPECT_STREQ(table[i].key, english[i].key) << language;
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

TEST(Catalog, UnknownLanguagesAreEnglishAndUnknownKeysEmpty) {
  for (const wchar_t* language :
       {L"pt", L"", L"EN", L"DE", L"d", L"zh", L"zh-HK", L"zh-cn", L"zh-CN ", L"en-US", L"de-AT"})
    EXPECT_EQ(CatalogText(language, L"msg.title"), L"AI Assistant") << language;
  for (const wchar_t* language : kAllLanguages) {
    EXPECT_EQ(CatalogText(language, L"msg.Title"), L"") << language;
    EXPECT_EQ(CatalogText(language, L""), L"") << language;
  }
  EXPECT_EQ(CatalogText(L"en", L"ribbon.excel.btnTranslateFullDoc.tip"), L"Translate the whole sheet");
  EXPECT_EQ(CatalogText(L"en", L"blank.excel.failed"),
            L"\n{count} could not be deleted (the sheet may be protected).");
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
