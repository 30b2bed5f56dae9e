#pragma once

#include <windows.h>

#include <string>

#include "webview2/chromium/devtools_json.h"

namespace qv::devhost {

/// The JSON text that a web view gives for the answer to Runtime.evaluate: "null" for what has no JSON text
/// and for an exception. Always S_OK.
[[nodiscard]] HRESULT ScriptResultText(const Json& answer, std::wstring& text);

/// The same, but an exception is told: DISP_E_EXCEPTION and what it says.
[[nodiscard]] HRESULT EvaluationText(const Json& answer, std::wstring& text);

}  // namespace qv::devhost
