#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "httpapi/wire/request_head.h"

namespace qv::devhost {

/// What the application says before a body.
struct ResponseHead {
  int status = 200;
  std::string reason;
  std::vector<std::pair<std::string, std::string>> headers;
};

/// How the end of a body shows, and what becomes of the connection.
struct ResponseFraming {
  /// The length to announce, if one is to be.
  std::optional<std::uint64_t> contentLength;
  /// False for HEAD and for statuses without a body: what the application sends is dropped.
  bool sendsBody = true;
  bool closes = false;
};

/// `bodyBytes` is the whole body's size, or nothing while more comes later. A body of unknown length ends
/// with the connection unless the application frames it itself, as HTTP.sys has it; that chunks nothing by
/// itself.
[[nodiscard]] ResponseFraming DecideFraming(const RequestHead& request, const ResponseHead& response,
                                            std::optional<std::uint64_t> bodyBytes, bool disconnect);

/// A moment as the header Date wants it, in UTC. `weekday` counts from Sunday, `month` from 1.
struct HttpDate {
  int weekday;
  int day;
  int month;
  int year;
  int hour;
  int minute;
  int second;
};

/// The head as it is sent, empty line included: what the application gave, and what HTTP.sys adds.
[[nodiscard]] std::string WriteResponseHead(const ResponseHead& response, const ResponseFraming& framing,
                                            const HttpDate& date);

/// A whole answer that HTTP.sys gives by itself, after which it closes the connection.
[[nodiscard]] std::string WriteRefusal(int status, const HttpDate& date);

}  // namespace qv::devhost
