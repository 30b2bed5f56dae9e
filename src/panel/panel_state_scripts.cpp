#include "panel/panel_state_scripts.h"

#include "foundation/text.h"

namespace qv {

std::wstring_view ExportStateScript() {
  return L"(function(){try{return window.quorvantisExportState?window.quorvantisExportState():null;}"
         L"catch(e){return null;}})()";
}

std::wstring ImportStateScript(std::wstring_view state) {
  return Concat(L"(function(s){if(window.quorvantisImportState)window.quorvantisImportState(s);})(", state,
                L")");
}

bool IsExportedState(std::wstring_view json) {
  return !json.empty() && !json.starts_with(L"nu");
}

}  // namespace qv
