#include "httpapi/wire/header_names.h"

#include <algorithm>
#include <array>

namespace qv::devhost {
namespace {

constexpr std::size_t kSharedHeaders = 20;

constexpr std::array<std::string_view, kSharedHeaders> kShared = {
    "Cache-Control",
    "Connection",
    "Date",
    "Keep-Alive",
    "Pragma",
    "Trailer",
    "Transfer-Encoding",
    "Upgrade",
    "Via",
    "Warning",
    "Allow",
    "Content-Length",
    "Content-Type",
    "Content-Encoding",
    "Content-Language",
    "Content-Location",
    "Content-MD5",
    "Content-Range",
    "Expires",
    "Last-Modified",
};

constexpr std::array<std::string_view, kRequestHeaders - kSharedHeaders> kRequestOnly = {
    "Accept",
    "Accept-Charset",
    "Accept-Encoding",
    "Accept-Language",
    "Authorization",
    "Cookie",
    "Expect",
    "From",
    "Host",
    "If-Match",
    "If-Modified-Since",
    "If-None-Match",
    "If-Range",
    "If-Unmodified-Since",
    "Max-Forwards",
    "Proxy-Authorization",
    "Referer",
    "Range",
    "TE",
    "Translate",
    "User-Agent",
};

constexpr std::array<std::string_view, kResponseHeaders - kSharedHeaders> kResponseOnly = {
    "Accept-Ranges", "Age",    "ETag",       "Location", "Proxy-Authenticate",
    "Retry-After",   "Server", "Set-Cookie", "Vary",     "WWW-Authenticate",
};

constexpr int kFirstVerb = 3;
constexpr std::array<std::string_view, 17> kVerbs = {
    "OPTIONS", "GET",  "HEAD",     "POST",      "PUT",   "DELETE", "TRACE",  "CONNECT", "TRACK",
    "MOVE",    "COPY", "PROPFIND", "PROPPATCH", "MKCOL", "LOCK",   "UNLOCK", "SEARCH",
};

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

template <std::size_t N>
std::optional<std::size_t> IndexOf(const std::array<std::string_view, N>& names, std::string_view name) {
  const auto found =
      std::find_if(names.begin(), names.end(), [name](std::string_view n) { return SameName(n, name); });
  if (found == names.end()) return std::nullopt;
  return static_cast<std::size_t>(found - names.begin());
}

}  // namespace

bool SameName(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return Lower(a) == Lower(b); });
}

std::optional<std::size_t> RequestHeaderId(std::string_view name) {
  if (const auto shared = IndexOf(kShared, name)) return shared;
  const auto own = IndexOf(kRequestOnly, name);
  return own ? std::optional(kSharedHeaders + *own) : std::nullopt;
}

std::string_view ResponseHeaderName(std::size_t id) {
  return id < kSharedHeaders ? kShared[id] : kResponseOnly[id - kSharedHeaders];
}

int VerbNumber(std::string_view method) {
  const auto found = std::find(kVerbs.begin(), kVerbs.end(), method);
  return found == kVerbs.end() ? kUnknownVerb : kFirstVerb + static_cast<int>(found - kVerbs.begin());
}

}  // namespace qv::devhost
