#include "addin/ribbon_labels.h"

#include "foundation/catalog.h"
#include "foundation/text.h"

namespace qv {
namespace {

std::wstring RibbonText(std::wstring_view language, std::wstring_view controlId, std::wstring_view suffix) {
  for (const std::wstring_view prefix : {L"ribbon.excel.", L"ribbon."}) {
    std::wstring text = CatalogText(language, Concat(prefix, controlId, suffix));
    if (!text.empty()) return text;
  }
  return std::wstring(controlId);
}

}  // namespace

std::wstring RibbonLabel(std::wstring_view language, std::wstring_view controlId) {
  return RibbonText(language, controlId, L"");
}

std::wstring RibbonScreentip(std::wstring_view language, std::wstring_view controlId) {
  return RibbonText(language, controlId, L".tip");
}

}  // namespace qv
