#pragma once

#include <functional>
#include <optional>
#include <string>

#include "panel/web_view.h"

namespace qv {

// The state of one page of a pane, handed to another. UI thread.

/// Receives a page's state as a JSON text, or nothing when it has none to give; from inside a browser event.
using PanelStateDone = std::function<void(const std::optional<std::wstring>& state)>;

/// Asks the page of a view for its state. `done` is called later, not at all when the view closes first.
/// False when there is no page of the service to ask.
[[nodiscard]] bool ExportPanelState(WebView& source, PanelStateDone done);

/// Gives the page of a view the state of another one, unless it is no page of the service.
void ImportPanelState(WebView& target, const std::wstring& state);

}  // namespace qv
