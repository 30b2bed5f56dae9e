#include "webview2/chromium/script_result.h"

#include "foundation/text.h"

namespace qv::devhost {

HRESULT ScriptResultText(const Json& answer, std::wstring& text) {
  text = L"null";
  if (answer.contains("exceptionDetails")) return S_OK;
  const Json& result = answer.at("result");
  if (result.contains("value")) {
    text = FromUtf8(result.at("value").dump());
  } else if (result.value("unserializableValue", "") == "-0") {
    text = L"0";
  }
  return S_OK;
}

HRESULT EvaluationText(const Json& answer, std::wstring& text) {
  if (!answer.contains("exceptionDetails")) return ScriptResultText(answer, text);
  const Json& details = answer.at("exceptionDetails");
  const Json exception = details.value("exception", Json::object());
  text = FromUtf8(exception.value("description", details.value("text", std::string())));
  return DISP_E_EXCEPTION;
}

}  // namespace qv::devhost
