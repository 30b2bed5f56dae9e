#include "foundation/panel_output.h"

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {

std::wstring BuildReplyScript(std::wstring_view requestId, bool ok, std::wstring_view data) {
  return Concat(L"if(window.QuorvantisTerminology)QuorvantisTerminology._onResponse({\"requestId\":",
                JsonQuote(requestId), L",\"ok\":", BoolWord(ok), L",\"data\":",
                data.empty() ? std::wstring_view(L"null") : data, L"});");
}

}  // namespace qv
