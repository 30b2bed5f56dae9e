#include "foundation/catalog.h"
#include "foundation/settings.h"

namespace qv {

std::wstring GetCatalogText(std::wstring_view key) {
  return CatalogText(GetUiLanguage(), key);
}

}  // namespace qv
