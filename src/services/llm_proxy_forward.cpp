#include "services/llm_proxy_forward.h"

#include "foundation/text.h"
#include "services/llm_proxy_rules.h"
#include "services/proxy_log.h"

namespace qv {
namespace {

constexpr HttpTimeouts kStreamTimeouts = {30'000, 30'000, 600'000, 600'000};
/// The reason of every answer that is handed on, whatever its status.
constexpr std::string_view kForwardedReason = "OK";

/// What the client hears of an exchange that came to nothing.
void SendFailure(const HttpResponse& outcome, ListenerResponder& responder) {
  const bool wasUnderWay = outcome.error == L"HTTP request failed";
  const std::string what = wasUnderWay ? SendReceiveFailure(outcome.systemError) : ToUtf8(outcome.error);
  responder.Send({502, "Bad Gateway"}, UpstreamFailureBody(what));
}

void RelayStream(UpstreamExchange& exchange, int status, ListenerResponder& responder) {
  const ULONG started = responder.StartStream({status, kForwardedReason}, kEventStreamType);
  if (started != NO_ERROR) {
    ProxyLog(Concat(L"HttpSendHttpResponse (stream header) rc=", started));
    return;
  }
  std::string piece;
  while (exchange.NextPiece(piece) && responder.SendPiece(piece) == NO_ERROR) {
  }
  responder.EndStream();
  ProxyLog(L"stream forward done");
}

void RelayWhole(UpstreamExchange& exchange, int status, const std::string& contentType,
                ListenerResponder& responder) {
  std::string body;
  std::string piece;
  while (exchange.NextPiece(piece))
    body += piece;
  // Half an answer must not pass for a whole one.
  if (const HttpResponse outcome = exchange.Outcome(); !outcome.ok) return SendFailure(outcome, responder);
  responder.Send({status, kForwardedReason}, body, contentType.empty() ? kJsonContentType : contentType);
  ProxyLog(Concat(L"non-stream forward done bytes=", body.size(), L" status=", status));
}

}  // namespace

HttpRequest MakeForwardRequest(const ListenerRequest& request, const std::wstring& accessToken,
                               const ServiceEndpoint& upstream) {
  const bool wantsStream = WantsStream(request);
  ProxyLog(Concat(L"forward body=", request.body.size(), L" bytes stream=", wantsStream, L" upstream=",
                  upstream.host, L":", upstream.port));
  HttpRequest forward;
  forward.endpoint = upstream;
  forward.path = kChatCompletionsPath;
  forward.userAgent = kLlmProxyUserAgent;
  forward.headers = Concat(L"Content-Type: application/json\r\nAuthorization: Bearer ", accessToken, L"\r\n");
  if (wantsStream) {
    forward.headers += L"Accept: text/event-stream\r\n";
    forward.timeouts = kStreamTimeouts;
  }
  forward.body = request.body;
  return forward;
}

void RelayAnswer(UpstreamExchange& exchange, ListenerResponder& responder) {
  const std::optional<HttpResponse> head = exchange.WaitForHead();
  if (!head) return SendFailure(exchange.Outcome(), responder);
  const int status = ForwardedStatus(head->status);
  const std::string contentType = ToUtf8(head->contentType);
  if (MentionsEventStream(contentType)) {
    RelayStream(exchange, status, responder);
  } else {
    RelayWhole(exchange, status, contentType, responder);
  }
}

}  // namespace qv
