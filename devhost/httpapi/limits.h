#pragma once

#include <cstddef>

namespace qv::devhost {

/// What a queue keeps to. HTTP.sys has the same figures unless its registry says otherwise; here the
/// environment may (docs/developing.md), read when a URL is registered.
struct HttpLimits {
  /// Most bytes of a request's head, from QV_DEVHOST_HTTP_HEAD_BYTES.
  std::size_t headBytes = 16 * 1024;
  /// How long a client may keep the server waiting for a head, a piece of a body, or room to send into, in
  /// milliseconds, from QV_DEVHOST_HTTP_WAIT_MS.
  int waitMs = 120'000;
};

/// Requests that wait for somebody to receive them; the next one is answered 503.
inline constexpr std::size_t kLongestQueue = 1000;
/// Connections at a time; each has a thread here.
inline constexpr std::size_t kMostConnections = 1200;

[[nodiscard]] HttpLimits LimitsFromEnvironment();

/// Whether QV_DEVHOST_HTTP_FAIL names the function, which then fails.
[[nodiscard]] bool IsToldToFail(const wchar_t* function);

}  // namespace qv::devhost
