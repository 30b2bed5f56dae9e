#include "services/yield_client.h"

#include "foundation/https_client.h"

namespace qv {

bool RequestYield(std::uint16_t port, const std::wstring& userAgent) {
  HttpRequest request;
  request.endpoint = {L"127.0.0.1", port, false};
  request.path = L"/yield";
  request.headers = L"Content-Type: application/json\r\nX-Quorvantis-Yield: 1\r\n";
  request.body = "{}";
  request.userAgent = userAgent;
  request.timeouts = {500, 500, 1000, 3000};
  // Whatever follows the head could follow for ever.
  request.headOnly = true;
  return SendHttp(request).ok;
}

}  // namespace qv
