#include "addin/blank_rows_message.h"

#include "foundation/catalog.h"
#include "foundation/text.h"

namespace qv {
namespace {

// MB_ICONERROR, MB_ICONWARNING and MB_ICONINFORMATION.
constexpr unsigned kErrorIcon = 0x10;
constexpr unsigned kWarningIcon = 0x30;
constexpr unsigned kInformationIcon = 0x40;

std::wstring WithNumber(std::wstring_view text, std::wstring_view placeholder, std::int32_t number) {
  return FormatCatalogText(text, placeholder, Concat(number));
}

std::wstring Counted(std::wstring_view language, std::wstring_view key, std::int32_t count) {
  return WithNumber(CatalogText(language, key), L"{count}", count);
}

}  // namespace

std::wstring BlankRowQuestion(std::wstring_view language, std::int32_t found) {
  return Counted(language, L"blank.excel.prompt", found);
}

std::optional<BlankRowMessage> BlankRowOutcome(std::wstring_view language, const BlankRowResult& result) {
  if (!result.error.empty()) return BlankRowMessage{result.error, kErrorIcon};
  if (result.silent || (result.deleted > 0 && result.failed == 0)) return std::nullopt;
  if (result.deleted > 0) {
    return BlankRowMessage{Counted(language, L"blank.excel.deleted", result.deleted) +
                               Counted(language, L"blank.excel.failed", result.failed),
                           kWarningIcon};
  }
  if (result.found > 0) {
    return BlankRowMessage{
        WithNumber(Counted(language, L"blank.excel.foundFailed", result.found), L"{failed}", result.failed),
        kWarningIcon};
  }
  return BlankRowMessage{
      CatalogText(language, L"blank.excel.none") + CatalogText(language, L"blank.excel.noneHint"),
      kInformationIcon};
}

}  // namespace qv
