#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace qv {

/// One native text of one language.
struct CatalogEntry {
  const wchar_t* key;
  const wchar_t* text;
};

/// The table of a language code ("en", "zh-CN", …); the English one for any other code. Keys stand in the
/// same order in every table.
[[nodiscard]] std::span<const CatalogEntry> CatalogTable(std::wstring_view language);

/// The text of a key in the given language, else in English, else empty.
[[nodiscard]] std::wstring CatalogText(std::wstring_view language, std::wstring_view key);

/// Every occurrence of the placeholder (such as "{count}") replaced by the value.
[[nodiscard]] std::wstring FormatCatalogText(std::wstring_view text, std::wstring_view placeholder,
                                             std::wstring_view value);

#ifdef _WIN32
/// The text of a key in the effective UI language. Host UI thread.
[[nodiscard]] std::wstring GetCatalogText(std::wstring_view key);
#endif

}  // namespace qv
