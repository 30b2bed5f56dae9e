#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qv {

/// One request of a local service, built fresh for every request. Texts are bytes as the client sent them.
struct ListenerRequest {
  /// The HTTP Server API's number of the request; answers name it.
  std::uint64_t id = 0;
  /// "POST", "GET", "OPTIONS", the text of a verb that HTTP.sys does not know, or "OTHER".
  std::string method;
  /// Path and query as sent; empty when there is none.
  std::string path;
  /// Values of these headers, empty when absent.
  std::string authorization;
  std::string accept;
  std::string contentType;
  /// Whether the header asks the service to let go of its port.
  bool yield = false;
  std::string body;
};

/// What HTTP.sys says about a verb, as far as a service tells verbs apart.
enum class ListenerVerb { Post, Get, Options, Unknown, Other };

/// The method's text; `raw` is what the client sent for an unknown verb. Verbs with a number of their own
/// other than the first three, PUT among them, are "OTHER".
[[nodiscard]] std::string ListenerMethod(ListenerVerb verb, std::string_view raw);

/// Whether a request of that method has its body read.
[[nodiscard]] bool ReadsBody(std::string_view method);

/// Whether a header that HTTP.sys has no number for asks to yield: "X-Quorvantis-Yield" in any case, with a
/// value that begins with "1".
[[nodiscard]] bool IsYieldHeader(std::string_view name, std::string_view value);

enum class YieldDecision { NotAYield, Granted, Refused };

/// A yield's path is exactly "/yield" or "/yield/", its method anything but "OPTIONS"; without the header it
/// is refused.
[[nodiscard]] YieldDecision DecideYield(const ListenerRequest& request);

inline constexpr std::string_view kYieldGrantedBody = "{\"ok\":true}";
inline constexpr std::string_view kUnauthorizedBody = "{\"error\":\"unauthorized\"}";

}  // namespace qv
