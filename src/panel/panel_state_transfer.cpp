#include "panel/panel_state_transfer.h"

#include <utility>

#include "panel/own_page.h"
#include "panel/panel_state_scripts.h"

namespace qv {

bool ExportPanelState(WebView& source, PanelStateDone done) {
  if (!source.HasWindow() || !ShowsOwnPage(source)) return false;
  return source.ExecuteScript(
      std::wstring(ExportStateScript()), [done = std::move(done)](HRESULT result, const std::wstring& json) {
        done(SUCCEEDED(result) && IsExportedState(json) ? std::optional(json) : std::nullopt);
      });
}

void ImportPanelState(WebView& target, const std::wstring& state) {
  if (ShowsOwnPage(target)) target.ExecuteScript(ImportStateScript(state));
}

}  // namespace qv
