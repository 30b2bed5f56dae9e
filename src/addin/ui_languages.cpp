#include "addin/ui_languages.h"

#include <cstddef>
#include <iterator>

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

constexpr UiLanguage kLanguages[] = {
    {L"zh-CN", L"中文（简体）"},
    {L"zh-TW", L"中文（繁體）"},
    {L"en", L"English"},
    {L"ja", L"日本語"},
    {L"ru", L"Русский"},
    {L"ms", L"Bahasa Melayu"},
    {L"th", L"ไทย"},
    {L"de", L"Deutsch"},
    {L"fr", L"Français"},
    {L"es", L"Español"},
    {L"id", L"Bahasa Indonesia"},
    {L"vi", L"Tiếng Việt"},
    {L"ko", L"한국어"},
    {L"ar", L"العربية"},
};

}  // namespace

std::span<const UiLanguage> UiLanguages() {
  return kLanguages;
}

std::optional<int> UiLanguageRow(std::wstring_view code) {
  for (std::size_t row = 0; row < std::size(kLanguages); ++row) {
    if (code == kLanguages[row].code) return static_cast<int>(row);
  }
  return std::nullopt;
}

bool IsRightToLeft(std::wstring_view code) {
  return code == L"ar";
}

std::wstring UiLangChangedMessage(std::wstring_view code) {
  return Concat(L"{\"action\":\"uiLangChanged\",\"uiLang\":", JsonQuote(code), L"}");
}

}  // namespace qv
