#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace qv {

/// The panel's root page, which an empty request leads to.
inline constexpr std::wstring_view kRootPage = L"translate";
inline constexpr std::wstring_view kImageTranslatePage = L"imagetranslate";
inline constexpr std::wstring_view kQuickTranslatePage = L"quicktranslate";

/// What one address of the panel is made of.
struct PanelUrlParts {
  /// Scheme, host and port of the service, without a trailing slash.
  std::wstring origin;
  std::wstring page;
  /// Only "full" and "selection" reach the address.
  std::wstring mode;
  /// "workspace" for the workspace window, empty for the pane.
  std::wstring surface;
  /// Milliseconds since system start; makes every address new to the browser's cache.
  std::uint64_t tick = 0;
  bool wps = false;
  /// 1-based.
  int paneNumber = 0;
  std::wstring uiLang;
};

[[nodiscard]] std::wstring BuildPanelUrl(const PanelUrlParts& parts);

/// The pages besides the root that the panel serves by name.
[[nodiscard]] std::span<const std::wstring_view> KnownPanelPages();

/// Name of the page that an address of the panel shows: "translate" for the root, one of the known pages, or
/// empty for anything else.
[[nodiscard]] std::wstring PanelPageFromUrl(std::wstring_view url);

/// Address of a local file, given by its full path "C:\\…".
[[nodiscard]] std::wstring FileAddress(std::wstring_view path);

}  // namespace qv
