#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "foundation/service_endpoint.h"

namespace qv {

/// Limits of a request's steps in milliseconds; 0 keeps the platform's default.
struct HttpTimeouts {
  int resolve = 0;
  int connect = 0;
  int send = 0;
  /// For the answer's head, and for each piece of its body.
  int receive = 0;

  bool operator==(const HttpTimeouts&) const = default;
};

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
  HttpTimeouts timeouts;
  /// Whether the answer counts as whole with its head; the connection ends there and the body is not read.
  bool headOnly = false;
  /// Go where the server points to, but never from https to http. Only for requests that carry no token.
  bool followRedirects = false;
};

struct HttpResponse {
  /// True when a whole answer was received, whatever its status.
  bool ok = false;
  /// Numeric status, 0 when none was received or the answer reports none.
  int status = 0;
  /// The head's Content-Type; empty when there is none, or one beyond 255 characters.
  std::wstring contentType;
  std::string body;
  /// "WinHttpOpen failed", "WinHttpConnect failed", "WinHttpOpenRequest failed" or "HTTP request failed" when
  /// not ok.
  std::wstring error;
  /// The system's code when not ok; 0 where it has none.
  std::uint32_t systemError = 0;
};

/// Receives the body piecewise instead of `HttpResponse::body`; returning false ends the request as failed.
/// A piece has 16 KiB at most and comes as soon as it is there.
using HttpByteSink = std::function<bool(int status, std::string_view piece)>;

/// Is told status and Content-Type ahead of the body; returning false ends the request as failed.
using HttpHeadSink = std::function<bool(const HttpResponse& head)>;

/// Performs the request on the calling thread, without a proxy. An answer shorter than its announced length
/// is a failure, and so is a request with a body of 4 GiB or more, of which nothing is sent. Not on the host
/// UI thread, with one exception: a request to this machine for the head only, with every step limited, takes
/// no longer than its limits together.
[[nodiscard]] HttpResponse SendHttp(const HttpRequest& request, const HttpByteSink& sink = {},
                                    const HttpHeadSink& headSink = {});

}  // namespace qv
