#include "services/llm_proxy_rules.h"

#include <algorithm>

#include "foundation/text.h"

namespace qv {
namespace {

constexpr std::wstring_view kTokenPrefix = L"qv_";
constexpr std::size_t kHexDigitsPerByte = 2;
constexpr std::size_t kLoggedCharacters = 8;
constexpr std::wstring_view kScheme = L"Bearer ";
constexpr std::wstring_view kHeaderSpace = L" \t\r\n";
constexpr std::string_view kStreamMember = "\"stream\"";

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr auto kSameLetter = [](char a, char b) { return Lower(a) == b; };

/// `prefix` is in lower case.
bool StartsWithAnyCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), text.begin(),
                                                    [](char wanted, char c) { return Lower(c) == wanted; });
}

std::string_view WithoutLeadingBlanks(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
}

std::wstring_view WithoutHeaderSpace(std::wstring_view value) {
  const std::size_t first = value.find_first_not_of(kHeaderSpace);
  if (first == std::wstring_view::npos) return {};
  return value.substr(first, value.find_last_not_of(kHeaderSpace) - first + 1);
}

/// Whether the text goes on as a member that is true.
bool GoesOnAsTrue(std::string_view afterName) {
  const std::string_view colon = WithoutLeadingBlanks(afterName);
  return colon.starts_with(':') && StartsWithAnyCase(WithoutLeadingBlanks(colon.substr(1)), "true");
}

bool BodyAsksForStream(std::string_view body) {
  std::size_t at = 0;
  while ((at = body.find(kStreamMember, at)) != std::string_view::npos) {
    at += kStreamMember.size();
    if (GoesOnAsTrue(body.substr(at))) return true;
  }
  return false;
}

}  // namespace

std::string UpstreamFailureBody(std::string_view what) {
  std::string body = R"({"error":{"message":")";
  body += what;
  body += R"(","type":"upstream_error"}})";
  return body;
}

std::string SendReceiveFailure(std::uint32_t systemError) {
  return "upstream send/receive failed (" + std::to_string(systemError) + ")";
}

ProxyRoute RouteOf(const ListenerRequest& request) {
  if (request.method == "OPTIONS") return ProxyRoute::Preflight;
  if (DecideYield(request) != YieldDecision::NotAYield) return ProxyRoute::Yield;
  const bool isChat = request.path.find("/v1/chat/completions") != std::string::npos;
  return isChat ? ProxyRoute::ChatCompletions : ProxyRoute::Unknown;
}

std::wstring ProxyTokenText(const std::array<std::uint8_t, kProxyTokenBytes>& bytes) {
  std::wstring text(kTokenPrefix);
  for (const std::uint8_t byte : bytes)
    text += Concat(Hex{byte, kHexDigitsPerByte});
  return text;
}

std::wstring_view LoggedPrefix(std::wstring_view secret) {
  return secret.substr(0, kLoggedCharacters);
}

bool CheckBearer(std::wstring_view header, std::wstring_view proxyToken) {
  const std::wstring_view value = WithoutHeaderSpace(header);
  return EqualsIgnoreAsciiCase(value.substr(0, kScheme.size()), kScheme) &&
         value.substr(kScheme.size()) == proxyToken;
}

bool MentionsEventStream(std::string_view value) {
  return std::search(value.begin(), value.end(), kEventStreamType.begin(), kEventStreamType.end(),
                     kSameLetter) != value.end();
}

bool WantsStream(const ListenerRequest& request) {
  return MentionsEventStream(request.accept) || BodyAsksForStream(request.body);
}

}  // namespace qv
