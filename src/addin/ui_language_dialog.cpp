#include "addin/ui_language_dialog.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "addin/ui_language_window.h"
#include "addin/ui_languages.h"
#include "foundation/catalog.h"
#include "foundation/settings.h"
#include "foundation/variant.h"
#include "panel/pane_registry.h"
#include "panel/web_view2_pane.h"

namespace qv {
namespace {

void TellEveryPanel(std::wstring_view code) {
  const std::wstring message = UiLangChangedMessage(code);
  // References of our own, as a host may let go of a pane at any call.
  const std::vector<ComPtr<CWebView2Pane>> panes(PaneRegistry::Panes().begin(), PaneRegistry::Panes().end());
  for (const ComPtr<CWebView2Pane>& pane : panes)
    pane->PostPanelJson(message);
}

/// False when the choice could not be stored: the user has been told, and nothing has changed.
bool Commit(HWND dialog, std::wstring_view code, const std::function<void()>& refreshRibbon) {
  if (!SaveUiLang(code)) {
    MessageBoxW(dialog, GetCatalogText(L"settings.writeFailed").c_str(),
                GetCatalogText(L"settings.title").c_str(), MB_OK | MB_ICONWARNING);
    return false;
  }
  ForgetAutomaticLanguage();
  refreshRibbon();
  TellEveryPanel(code);
  return true;
}

}  // namespace

void ShowUiLanguageDialog(HWND owner, const std::function<void()>& refreshRibbon) {
  const std::wstring current = GetUiLanguage();
  UiLanguageWindow window(UiLanguageRow(current), IsRightToLeft(current),
                          [&](HWND dialog, std::optional<int> row) {
                            if (!row) return true;
                            const std::wstring_view code = UiLanguages()[static_cast<std::size_t>(*row)].code;
                            return code == current || Commit(dialog, code, refreshRibbon);
                          });
  window.RunModal(owner);
}

}  // namespace qv
