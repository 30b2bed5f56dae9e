#include "panel/panel_state_transfer.h"

#include <utility>

#include "panel/panel_state_scripts.h"

namespace qv {

bool TransferPanelState(WebView& source, WebView& target, std::function<void(bool)> done) {
  if (!source.HasWindow()) return false;
  return source.ExecuteScript(std::wstring(ExportStateScript()),
                              [&target, done = std::move(done)](HRESULT result, const std::wstring& json) {
                                const bool handed = SUCCEEDED(result) && IsExportedState(json);
                                if (handed) target.ExecuteScript(ImportStateScript(json));
                                done(handed);
                              });
}

}  // namespace qv
