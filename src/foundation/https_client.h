#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "foundation/service_endpoint.h"

namespace qv {

/// One HTTP request. Plain values, so that a worker can own its copy.
struct HttpRequest {
  ServiceEndpoint endpoint;
  std::wstring verb = L"POST";
  /// Path and query, beginning with "/".
  std::wstring path;
  std::string body;
  /// Header lines, each ending in "\r\n".
  std::wstring headers;
  std::wstring userAgent = L"Quorvantis/1.0";
  /// 0 keeps the platform's defaults; otherwise milliseconds for resolve, connect, send and receive alike.
  int timeoutMs = 0;
  /// Go where the server points to, but never from https to http. Only for requests that carry no token.
  bool followRedirects = false;
};

struct HttpResponse {
  /// True when a whole answer was received, whatever its status.
  bool ok = false;
  /// Numeric status, 0 when none was received.
  int status = 0;
  std::string body;
  /// "WinHttpOpen failed", "WinHttpConnect failed", "WinHttpOpenRequest failed" or "HTTP request failed" when
  /// not ok.
  std::wstring error;
};

/// Receives the body piecewise instead of `HttpResponse::body`; returning false ends the request as failed.
using HttpByteSink = std::function<bool(int status, std::string_view piece)>;

/// Performs the request on the calling thread, without a proxy. Never on the host UI thread. A body shorter
/// than its announced length is a failure.
[[nodiscard]] HttpResponse SendHttp(const HttpRequest& request, const HttpByteSink& sink = {});

}  // namespace qv
