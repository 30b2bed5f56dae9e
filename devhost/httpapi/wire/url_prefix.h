#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qv::devhost {

/// A prefix as HttpAddUrl takes it: "http://127.0.0.1:7878/".
struct UrlPrefix {
  std::wstring host;
  std::uint16_t port = 0;
  /// Begins and ends with "/".
  std::wstring path;
};

/// Nothing unless the text is such a prefix, with the scheme http, a port of 1 to 65535 and the closing "/".
[[nodiscard]] std::optional<UrlPrefix> ParseUrlPrefix(std::wstring_view text);

/// A request's address as HTTP.sys cooks it. Dot segments stay as they are.
struct CookedUrl {
  /// "http://" + host + path + query.
  std::wstring full;
  /// As the request names it: from an absolute address, else from the header Host.
  std::wstring host;
  /// Escapes decoded; without the query.
  std::wstring path;
  /// With its "?", as sent; empty when there is none.
  std::wstring query;
};

[[nodiscard]] CookedUrl CookUrl(std::string_view rawUrl, std::string_view hostHeader);

}  // namespace qv::devhost
