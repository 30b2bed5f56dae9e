#pragma once

#include <memory>
#include <string>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"

namespace qv {

/// Reads the local store on a worker and answers the page's request with it, later; a pane that has closed by
/// then hears nothing. A read that failed is answered without data. `output` is there whenever a task of the
/// pane runs. Host UI thread.
void AnswerWithLocalSnapshot(const std::shared_ptr<PaneContext>& pane, PanelOutput& output,
                             const std::wstring& requestId);

}  // namespace qv
