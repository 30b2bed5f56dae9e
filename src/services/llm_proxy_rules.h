#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "services/listener_request.h"

namespace qv {

// What the proxy for language models decides without Windows: who may ask, for what, and what a refusal says.

inline constexpr std::uint16_t kLlmProxyPort = 7879;
inline constexpr std::wstring_view kLlmProxyUserAgent = L"QuorvantisLlmProxy/1.0";
/// Where the service takes what the proxy forwards.
inline constexpr std::wstring_view kChatCompletionsPath = L"/v1/agents/chat-completions";
inline constexpr std::string_view kEventStreamType = "text/event-stream";

/// An answer that the proxy gives itself: always the same words. Errors have the shape of OpenAI's, so that
/// agents show them as errors of the model.
struct ProxyAnswer {
  int status;
  std::string_view reason;
  std::string_view body;
};

inline constexpr ProxyAnswer kPreflightAnswer = {204, "No Content", ""};
inline constexpr ProxyAnswer kNoTokenAnswer = {
    503, "Service Unavailable",
    R"({"error":{"message":"proxy token not initialized","type":"server_error"}})"};
inline constexpr ProxyAnswer kWrongKeyAnswer = {
    401, "Unauthorized", R"({"error":{"message":"invalid api key","type":"unauthorized"}})"};
inline constexpr ProxyAnswer kNotSignedInAnswer = {
    401, "Unauthorized", R"({"error":{"message":"user not signed in to Quorvantis","type":"unauthorized"}})"};
inline constexpr ProxyAnswer kNoUpstreamAnswer = {
    503, "Service Unavailable", R"({"error":{"message":"upstream not configured","type":"server_error"}})"};
inline constexpr ProxyAnswer kUnknownPathAnswer = {
    404, "Not Found", R"({"error":{"message":"endpoint not found","type":"invalid_request_error"}})"};

/// The body of a "502 Bad Gateway" about an exchange with the service that failed as `what` says, in ASCII.
[[nodiscard]] std::string UpstreamFailureBody(std::string_view what);

/// What an exchange with the service failed as once it was under way; `systemError` is the system's code.
[[nodiscard]] std::string SendReceiveFailure(std::uint32_t systemError);

enum class ProxyRoute {
  /// Any path: what a browser asks before it asks.
  Preflight,
  /// "/yield", with or without permission.
  Yield,
  /// "/v1/chat/completions" anywhere in the path, with any method.
  ChatCompletions,
  Unknown,
};
[[nodiscard]] ProxyRoute RouteOf(const ListenerRequest& request);

inline constexpr std::size_t kProxyTokenBytes = 32;
/// "qv_" and two lowercase hexadecimal digits a byte.
[[nodiscard]] std::wstring ProxyTokenText(const std::array<std::uint8_t, kProxyTokenBytes>& bytes);

/// The few characters of a key, or of the header it came in, that a log may show.
[[nodiscard]] std::wstring_view LoggedPrefix(std::wstring_view secret);

/// Whether the value of an Authorization header, white space around it aside, is "Bearer ", in any case, and
/// exactly the token.
[[nodiscard]] bool CheckBearer(std::wstring_view header, std::wstring_view proxyToken);

/// Whether a value of Accept or Content-Type speaks of a stream of events; media types have no case.
[[nodiscard]] bool MentionsEventStream(std::string_view value);

/// Whether the client wants its answer as a stream, by its Accept header or its body. The body is scanned for
/// "stream", a colon and true; it is not parsed, so a text that says so inside counts as well.
[[nodiscard]] bool WantsStream(const ListenerRequest& request);

/// The status to hand on: 200 for an answer that reports none.
[[nodiscard]] constexpr int ForwardedStatus(int upstream) {
  return upstream == 0 ? 200 : upstream;
}

}  // namespace qv
