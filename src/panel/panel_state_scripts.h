#pragma once

#include <string>
#include <string_view>

namespace qv {

/// Asks a page for its state; null when it has none to give.
[[nodiscard]] std::wstring_view ExportStateScript();

/// Gives a page the state that another one exported, a JSON text.
[[nodiscard]] std::wstring ImportStateScript(std::wstring_view state);

/// Whether an export's result is a state: not empty and not the JSON text null.
[[nodiscard]] bool IsExportedState(std::wstring_view json);

}  // namespace qv
