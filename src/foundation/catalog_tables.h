#pragma once

#include <cstddef>
#include <span>

#include "foundation/catalog.h"

namespace qv {

/// Number of keys, the same in every table.
inline constexpr std::size_t kCatalogKeyCount = 87;

/// One compiled table.
using CatalogRows = std::span<const CatalogEntry, kCatalogKeyCount>;

// One function and one source file for each language; catalog.cpp lists them by language code.
[[nodiscard]] CatalogRows CatalogEn();
[[nodiscard]] CatalogRows CatalogAr();
[[nodiscard]] CatalogRows CatalogDe();
[[nodiscard]] CatalogRows CatalogEs();
[[nodiscard]] CatalogRows CatalogFr();
[[nodiscard]] CatalogRows CatalogId();
[[nodiscard]] CatalogRows CatalogJa();
[[nodiscard]] CatalogRows CatalogKo();
[[nodiscard]] CatalogRows CatalogMs();
[[nodiscard]] CatalogRows CatalogRu();
[[nodiscard]] CatalogRows CatalogTh();
[[nodiscard]] CatalogRows CatalogVi();
[[nodiscard]] CatalogRows CatalogZhCn();
[[nodiscard]] CatalogRows CatalogZhTw();

}  // namespace qv
