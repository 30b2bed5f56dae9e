#pragma once

#include <functional>

#include "panel/web_view.h"

namespace qv {

/// Hands the state of the page in `source` to the page in `target`. `done` is called later with whether
/// anything was handed over, from inside a browser event; not at all when `source` closes first. False when
/// the transfer could not begin. `target` outlives `source`'s answer. UI thread.
[[nodiscard]] bool TransferPanelState(WebView& source, WebView& target, std::function<void(bool)> done);

}  // namespace qv
