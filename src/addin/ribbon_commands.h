#pragma once

#include <cstdint>
#include <string_view>

namespace qv {

/// What pressing a ribbon button leads to.
enum class RibbonAction { kShowPage, kRemoveBlankRows, kOpenPdfTranslation, kChooseLanguage };

/// One button's command. Texts are empty where the command has none.
struct RibbonCommand {
  /// Dispatch id of the button's callback.
  std::int32_t id;
  RibbonAction action;
  /// Page of the panel, and "full" or "selection" for the translation page.
  std::wstring_view page;
  std::wstring_view mode;
  /// Written before the page is shown.
  std::wstring_view logLine;
  /// Analytics event sent before the page is shown.
  std::wstring_view event;
};

/// The command of a callback; null when it is not a button's.
[[nodiscard]] const RibbonCommand* FindRibbonCommand(std::int32_t id);

}  // namespace qv
