#include "foundation/catalog.h"

#include <gtest/gtest.h>

#include <set>

namespace qv {
namespace {

constexpr const wchar_t* kAllLanguages[] = {L"en", L"ar", L"de", L"es", L"fr", L"id",    L"ja",
                                            L"ko", L"ms", L"ru", L"th", L"vi", L"zh-CN", L"zh-TW"};

std::multiset<std::wstring> PlaceholdersOf(const std::wstring& text) {
  std::multiset<std::wstring> found;
  for (std::size_t at = text.find(L'{'); at != std::wstring::npos; at = text.find(L'{', at + 1))
    found.insert(text.substr(at, text.find(L'}', at) + 1 - at));
  return found;
}

TEST(Catalog, EveryTableHoldsTheSameKeysInTheSameOrder) {
  const auto english = CatalogTable(L"en");
  ASSERT_EQ(english.size(), 87u);
  for (const wchar_t* language : kAllLanguages) {
    const auto table = CatalogTable(language);
    ASSERT_EQ(table.size(), english.size()) << language;
    for (std::size_t i = 0; i < table.size(); ++i) {
      EXPECT_STREQ(table[i].key, english[i].key) << language;
      EXPECT_STRNE(table[i].text, L"") << language << ' ' << table[i].key;
      EXPECT_EQ(PlaceholdersOf(table[i].text), PlaceholdersOf(english[i].text)) << language << ' ' << i;
    }
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

TEST(Catalog, UnknownLanguagesAreEnglishAndUnknownKeysEmpty) {
  for (const wchar_t* language : {L"pt", L"", L"EN", L"zh", L"en-US"})
    EXPECT_EQ(CatalogText(language, L"msg.title"), L"AI Assistant") << language;
  EXPECT_EQ(CatalogText(L"en", L"msg.Title"), L"");
  EXPECT_EQ(CatalogText(L"en", L"ribbon.excel.btnTranslateFullDoc.tip"), L"Translate the whole sheet");
  EXPECT_EQ(CatalogText(L"en", L"blank.excel.failed"),
            L"\n{count} could not be deleted (the sheet may be protected).");
}

TEST(Catalog, EveryOccurrenceOfAPlaceholderIsFilled) {
  EXPECT_EQ(FormatCatalogText(L"{count} of {count}, {failed}", L"{count}", L"3"), L"3 of 3, {failed}");
}

}  // namespace
}  // namespace qv
