#include "foundation/catalog.h"

#include "foundation/catalog_tables.h"
#include "foundation/text.h"

namespace qv {
namespace {

struct Language {
  const wchar_t* code;
  CatalogRows (*table)();
};

/// English stands first: it answers for every language that is not listed.
constexpr Language kLanguages[] = {
    {L"en", CatalogEn},      {L"ar", CatalogAr},      {L"de", CatalogDe}, {L"es", CatalogEs},
    {L"fr", CatalogFr},      {L"id", CatalogId},      {L"ja", CatalogJa}, {L"ko", CatalogKo},
    {L"ms", CatalogMs},      {L"ru", CatalogRu},      {L"th", CatalogTh}, {L"vi", CatalogVi},
    {L"zh-CN", CatalogZhCn}, {L"zh-TW", CatalogZhTw},
};

const wchar_t* FindText(std::span<const CatalogEntry> table, std::wstring_view key) {
  for (const CatalogEntry& entry : table) {
    if (key == entry.key) return entry.text;
  }
  return nullptr;
}

}  // namespace

std::span<const CatalogEntry> CatalogTable(std::wstring_view language) {
  for (const Language& row : kLanguages) {
    if (language == row.code) return row.table();
  }
  return kLanguages[0].table();
}

std::wstring CatalogText(std::wstring_view language, std::wstring_view key) {
  const wchar_t* text = FindText(CatalogTable(language), key);
  if (text == nullptr) text = FindText(CatalogEn(), key);
  return text != nullptr ? text : L"";
}

std::wstring FormatCatalogText(std::wstring_view text, std::wstring_view placeholder,
                               std::wstring_view value) {
  return ReplaceAll(text, placeholder, value);
}

}  // namespace qv
