#include "panel/page_url.h"

#include <algorithm>
#include <array>

#include "foundation/text.h"

namespace qv {
namespace {

constexpr std::wstring_view kPanelPath = L"/panel/excel";
constexpr std::wstring_view kPageSuffix = L".html";

constexpr std::array<std::wstring_view, 12> kKnownPages = {
    L"account", L"login",  L"glossary", L"instruction",    L"quicktranslate", L"grammar",
    L"chat",    L"agents", L"support",  L"imagetranslate", L"imagetotable",   L"pdf2table",
};

// The page set is shared by the add-ins for both host families.
constexpr std::array<std::wstring_view, 2> kFamilies = {L"excel", L"word"};

std::wstring PathOf(const std::wstring& page) {
  std::wstring path(kPanelPath);
  if (page.empty() || EqualsIgnoreAsciiCase(page, kRootPage)) return path;
  path += L'/';
  path += page;
  if (!Contains(page, L".")) path += kPageSuffix;
  return path;
}

}  // namespace

std::wstring BuildPanelUrl(const PanelUrlParts& parts) {
  std::wstring url = Concat(parts.origin, PathOf(parts.page), L"?_=", parts.tick, L"&host=",
                            parts.wps ? L"wps-excel" : L"excel", L"&pane=xl", parts.paneNumber);
  if (EqualsIgnoreAsciiCase(parts.mode, L"full") || EqualsIgnoreAsciiCase(parts.mode, L"selection")) {
    url += L"&mode=" + parts.mode;
  }
  if (!parts.surface.empty()) url += L"&surface=" + parts.surface;
  return url + L"&uiLang=" + parts.uiLang;
}

std::wstring FileAddress(std::wstring_view path) {
  std::wstring address = L"file:///";
  for (const char byte : ToUtf8(path)) {
    const bool plain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                       (byte >= '0' && byte <= '9') ||
                       std::string_view("-._~:/").find(byte) != std::string_view::npos;
    if (byte == '\\') {
      address += L'/';
    } else if (plain) {
      address += static_cast<wchar_t>(byte);
    } else {
      address += Concat(L'%', Hex{static_cast<unsigned char>(byte), 2, true});
    }
  }
  return address;
}

std::span<const std::wstring_view> KnownPanelPages() {
  return kKnownPages;
}

std::wstring PanelPageFromUrl(std::wstring_view url) {
  url = url.substr(0, url.find_first_of(L"?#"));
  const std::size_t scheme = url.find(L"://");
  if (scheme == std::wstring_view::npos) return {};
  const std::size_t start = url.find(L'/', scheme + 3);
  if (start == std::wstring_view::npos) return {};
  std::wstring_view path = url.substr(start);

  constexpr std::wstring_view kPrefix = L"/panel/";
  if (!path.starts_with(kPrefix)) return {};
  path.remove_prefix(kPrefix.size());
  const std::wstring_view family = path.substr(0, path.find(L'/'));
  if (std::find(kFamilies.begin(), kFamilies.end(), family) == kFamilies.end()) return {};
  path.remove_prefix(family.size());
  if (path.empty() || path == L"/") return std::wstring(kRootPage);

  path.remove_prefix(1);
  if (path.ends_with(kPageSuffix)) path.remove_suffix(kPageSuffix.size());
  const auto* const known = std::find(kKnownPages.begin(), kKnownPages.end(), path);
  return known == kKnownPages.end() ? std::wstring() : std::wstring(*known);
}

}  // namespace qv
