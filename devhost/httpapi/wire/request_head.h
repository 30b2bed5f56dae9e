#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "httpapi/wire/header_names.h"

namespace qv::devhost {

/// The most that one header's value may have: its length is told in 16 bits.
inline constexpr std::size_t kLongestHeaderValue = 0xFFFE;

/// What a request says before its body.
struct RequestHead {
  /// HTTP_VERB; `method` is the text as sent.
  int verb = kUnknownVerb;
  std::string method;
  /// The target as sent: path and query, an absolute address, or "*".
  std::string rawUrl;
  int minorVersion = 1;
  /// Trimmed values by HTTP_HEADER_ID; a repeated header's values are joined as HTTP.sys does.
  std::array<std::string, kRequestHeaders> known;
  std::vector<std::pair<std::string, std::string>> unknown;

  std::uint64_t contentLength = 0;
  bool chunked = false;
  bool keepAlive = true;
  bool expectsContinue = false;

  [[nodiscard]] bool HasBody() const { return chunked || contentLength > 0; }
};

struct HeadResult {
  enum class State { Incomplete, Complete, Refused };
  State state = State::Incomplete;
  /// Bytes of the head, its empty line and empty lines ahead of it included, when complete.
  std::size_t size = 0;
  /// The status that HTTP.sys answers by itself, when refused.
  int status = 0;
};

/// Reads a head from the beginning of what has arrived. `limit` is the most bytes that a head may have,
/// beyond which it is refused, complete or not. `head` means something only when complete.
[[nodiscard]] HeadResult ParseRequestHead(std::string_view bytes, std::size_t limit, RequestHead& head);

}  // namespace qv::devhost
