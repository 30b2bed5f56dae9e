#include "foundation/service_endpoint.h"

#include <algorithm>
#include <optional>

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

constexpr std::uint16_t kHttpPort = 80;
constexpr std::uint16_t kHttpsPort = 443;
constexpr std::int32_t kMaxPort = 65535;

constexpr std::uint16_t SchemePort(bool secure) {
  return secure ? kHttpsPort : kHttpPort;
}

bool IsHostUnit(wchar_t unit) {
  return (unit >= L'a' && unit <= L'z') || (unit >= L'A' && unit <= L'Z') || (unit >= L'0' && unit <= L'9') ||
         unit == L'-' || unit == L'.';
}

/// What follows a prefix, which may stand in any case of ASCII letters; nothing when `text` does not begin
/// with it.
std::optional<std::wstring_view> WithoutPrefix(std::wstring_view text, std::wstring_view prefix) {
  if (!EqualsIgnoreAsciiCase(text.substr(0, prefix.size()), prefix)) return std::nullopt;
  return text.substr(prefix.size());
}

/// A port written in a URL; an empty one is the scheme's own.
std::optional<std::int32_t> ParsePort(std::wstring_view digits, bool secure) {
  if (digits.empty()) return SchemePort(secure);
  std::int32_t port = 0;
  for (const wchar_t unit : digits) {
    if (unit < L'0' || unit > L'9') return std::nullopt;
    port = port * 10 + (unit - L'0');
    if (port > kMaxPort) return std::nullopt;
  }
  return port;
}

}  // namespace

std::wstring ServiceEndpoint::Origin() const {
  std::wstring origin = Concat(secure ? L"https://" : L"http://", host);
  if (port != SchemePort(secure)) origin += Concat(L':', port);
  return origin;
}

ServiceEndpoint DefaultServiceEndpoint() {
  return {L"app.quorvantis.example", kHttpsPort, true};
}

ServiceEndpoint ServiceEndpointFrom(std::wstring_view settingsJson) {
  ServiceEndpoint endpoint = DefaultServiceEndpoint();
  const std::wstring scheme = JsonGetString(settingsJson, L"serviceScheme");
  if (scheme == L"http" || scheme == L"https") {
    endpoint.secure = scheme == L"https";
    endpoint.port = SchemePort(endpoint.secure);
  }
  std::wstring host = JsonGetString(settingsJson, L"serviceHost");
  if (!host.empty() && std::ranges::all_of(host, IsHostUnit)) endpoint.host = std::move(host);
  const std::int32_t port = JsonGetInt(settingsJson, L"servicePort");
  if (port >= 1 && port <= kMaxPort) endpoint.port = static_cast<std::uint16_t>(port);
  return endpoint;
}

bool IsSameOrigin(std::wstring_view url, const ServiceEndpoint& endpoint) {
  const auto rest = WithoutPrefix(url, endpoint.secure ? L"https://" : L"http://");
  if (!rest) return false;
  // A browser ends the authority at a backslash too. A user name, which could hide the real host, ends up in
  // the host or the port below and matches neither.
  const std::wstring_view authority = rest->substr(0, rest->find_first_of(L"/\\?#"));
  const std::size_t colon = authority.find(L':');
  const std::wstring_view portDigits =
      colon == std::wstring_view::npos ? std::wstring_view() : authority.substr(colon + 1);
  return EqualsIgnoreAsciiCase(authority.substr(0, colon), endpoint.host) &&
         ParsePort(portDigits, endpoint.secure) == endpoint.port;
}

}  // namespace qv
