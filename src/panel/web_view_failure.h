#pragma once

#include <windows.h>

#include <memory>

#include "foundation/pane_context.h"

namespace qv {

/// The browser could not start: logs it, reports it to the service once per process, and tells the user once
/// per process in a box that is posted as a task. `step` names what failed; null means the start as a whole.
/// UI thread.
void ShowWebView2Failure(const std::shared_ptr<PaneContext>& context, const wchar_t* step, HRESULT hr);

/// The browser of a pane that had started is gone: one line in the log, and one message to the user for all
/// panes that lose it together. May be called from inside a browser event.
void ShowBrowserLoss(const std::shared_ptr<PaneContext>& context);

}  // namespace qv
