#include "httpapi/wire/url_prefix.h"

#include <algorithm>

#include "foundation/text.h"

namespace qv::devhost {
namespace {

constexpr std::wstring_view kScheme = L"http://";

std::optional<std::uint16_t> ParsePort(std::wstring_view text) {
  if (text.empty() || text.size() > 5) return std::nullopt;
  int port = 0;
  for (const wchar_t c : text) {
    if (c < L'0' || c > L'9') return std::nullopt;
    port = port * 10 + (c - L'0');
  }
  if (port < 1 || port > 0xFFFF) return std::nullopt;
  return static_cast<std::uint16_t>(port);
}

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::string DecodeEscapes(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 2 < text.size()) {
      const int high = HexValue(text[i + 1]);
      const int low = HexValue(text[i + 2]);
      if (high >= 0 && low >= 0) {
        out += static_cast<char>(high * 16 + low);
        i += 2;
        continue;
      }
    }
    out += text[i];
  }
  return out;
}

}  // namespace

std::optional<UrlPrefix> ParseUrlPrefix(std::wstring_view text) {
  if (!EqualsIgnoreAsciiCase(text.substr(0, kScheme.size()), kScheme)) return std::nullopt;
  text.remove_prefix(kScheme.size());
  const std::size_t slash = text.find(L'/');
  if (slash == std::wstring_view::npos || text.back() != L'/') return std::nullopt;
  const std::wstring_view authority = text.substr(0, slash);
  const std::size_t colon = authority.rfind(L':');
  if (colon == std::wstring_view::npos || colon == 0) return std::nullopt;
  const auto port = ParsePort(authority.substr(colon + 1));
  if (!port) return std::nullopt;
  return UrlPrefix{std::wstring(authority.substr(0, colon)), *port, std::wstring(text.substr(slash))};
}

CookedUrl CookUrl(std::string_view rawUrl, std::string_view hostHeader) {
  CookedUrl cooked;
  if (const std::size_t scheme = rawUrl.find("://"); !rawUrl.starts_with('/') && scheme != rawUrl.npos) {
    rawUrl.remove_prefix(scheme + 3);
    const std::size_t end = std::min(rawUrl.find_first_of("/?"), rawUrl.size());
    hostHeader = rawUrl.substr(0, end);
    rawUrl.remove_prefix(end);
  }
  const std::size_t question = std::min(rawUrl.find('?'), rawUrl.size());
  cooked.host = FromUtf8(hostHeader);
  cooked.path = FromUtf8(DecodeEscapes(rawUrl.substr(0, question)));
  if (!cooked.path.starts_with(L'/')) cooked.path.insert(0, 1, L'/');
  cooked.query = FromUtf8(rawUrl.substr(question));
  cooked.full = Concat(kScheme, cooked.host, cooked.path, cooked.query);
  return cooked;
}

}  // namespace qv::devhost
