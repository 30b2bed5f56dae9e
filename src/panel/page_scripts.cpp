#include "panel/page_scripts.h"

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {

std::wstring AccessTokenMessage(std::wstring_view token) {
  return Concat(L"{\"action\":\"accessToken\",\"accessToken\":\"", JsonEscape(token), L"\"}");
}

std::wstring FontListMessage(const std::vector<std::wstring>& families) {
  return Concat(L"{\"action\":\"fontList\",\"fonts\":", JsonQuotedArray(families), L"}");
}

std::wstring DocKeyData(std::wstring_view docKey) {
  return Concat(L"{\"docKey\":", JsonQuote(docKey), L"}");
}

std::wstring UiLangData(std::wstring_view language) {
  return Concat(L"{\"uiLang\":", JsonQuote(language), L"}");
}

std::wstring SetModeMessage(std::wstring_view mode) {
  return Concat(L"{\"action\":\"setMode\",\"mode\":\"", JsonEscape(mode), L"\"}");
}

std::wstring SetModeScript(std::wstring_view mode) {
  return Concat(L"(function(){var m='", mode,
                L"';if(window.quorvantisSetMode)window.quorvantisSetMode(m);})();");
}

std::wstring WebViewFailureText(const wchar_t* step, std::int32_t hr) {
  return Concat(L"WebView2 初始化失败：", step != nullptr ? step : L"init", L"\nHRESULT: 0x", Hex8(hr));
}

}  // namespace qv
