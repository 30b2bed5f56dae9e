#include "translation/quick_translate.h"

#include "foundation/access_tokens.h"
#include "foundation/json_text.h"
#include "foundation/text.h"
#include "translation/error_codes.h"

namespace qv {
namespace {

std::wstring StringOr(std::wstring_view message, std::wstring_view key, std::wstring_view fallback) {
  std::wstring value = JsonGetString(message, key);
  return value.empty() ? std::wstring(fallback) : value;
}

}  // namespace

QuickTranslateRequest ParseQuickTranslate(std::wstring_view message) {
  QuickTranslateRequest request;
  request.requestId = JsonGetString(message, L"requestId");
  request.text = JsonGetString(message, L"text");
  request.sourceLang = StringOr(message, L"sourceLang", L"auto");
  request.targetLang = StringOr(message, L"targetLang", L"zh-CN");
  request.token = TokenOfMessage(message);
  request.instruction = JsonGetString(message, L"instruction");
  return request;
}

TranslateRequest BuildQuickRequest(const QuickTranslateRequest& request) {
  TranslateRequest built;
  built.texts = {request.text};
  built.sourceLang = request.sourceLang;
  built.targetLang = request.targetLang;
  built.usageKind = L"translate_quick";
  built.clientProduct = L"excel";
  built.instruction = request.instruction;
  return built;
}

QuickTranslateAnswer QuickAnswerOf(const TranslateResult& result) {
  if (result.ok && result.translations.size() == 1) return {true, result.translations.front(), {}};
  return {false, {}, PolishErrorMessage(result.code, L"", result.message)};
}

std::wstring QuickTranslateScript(std::wstring_view requestId, const QuickTranslateAnswer& answer) {
  const std::wstring outcome = answer.ok ? Concat(L",ok:true,translation:", JsonQuote(answer.translation))
                                         : Concat(L",ok:false,error:", JsonQuote(answer.error));
  return Concat(
      L"(function(){if(typeof window.onQuickTranslateResult!=='function')return;"
      L"window.onQuickTranslateResult({requestId:",
      JsonQuote(requestId), outcome, L"});})();");
}

std::wstring QuickBeginLine(const QuickTranslateRequest& request, std::size_t nativeTokenLength) {
  return Concat(L"quickTranslate begin reqId=", request.requestId, L" textLen=", request.text.size(),
                L" jsTokenLen=", request.token.size(), L" nativeTokenLen=", nativeTokenLength, L"\r\n");
}

std::wstring QuickEndLine(std::wstring_view requestId, const QuickTranslateAnswer& answer) {
  return Concat(L"quickTranslate end reqId=", requestId, L" ok=", answer.ok, L" errLen=", answer.error.size(),
                L"\r\n");
}

}  // namespace qv
