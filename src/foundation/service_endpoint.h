#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qv {

/// Where the cloud service lives. Every HTTPS client, the panel address and the page's origin come from here.
struct ServiceEndpoint {
  /// Host name without port.
  std::wstring host;
  std::uint16_t port = 443;
  /// TLS; false only when the configuration says "http".
  bool secure = true;

  bool operator==(const ServiceEndpoint&) const = default;

  /// "https://host" or, with a port that is not the scheme's own, "https://host:port".
  [[nodiscard]] std::wstring Origin() const;
};

/// The built-in endpoint.
[[nodiscard]] ServiceEndpoint DefaultServiceEndpoint();

/// The built-in endpoint with the members "serviceHost", "servicePort" (1–65535) and "serviceScheme" ("http"
/// or "https") of the settings text laid over it; anything absent or out of range keeps its default. A scheme
/// without a port brings its own (80 or 443).
[[nodiscard]] ServiceEndpoint ServiceEndpointFrom(std::wstring_view settingsJson);

/// Whether `url` belongs to the endpoint's origin (scheme, host and port; host and scheme without regard to
/// case).
[[nodiscard]] bool IsSameOrigin(std::wstring_view url, const ServiceEndpoint& endpoint);

}  // namespace qv
