#include "services/proxy_log.h"

#include "foundation/logging.h"
#include "foundation/text.h"

namespace qv {

void ProxyLog(std::wstring_view text) {
  PaneLog(Concat(L"[LlmProxy] ", text, L"\r\n"));
}

}  // namespace qv
