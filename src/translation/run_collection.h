#pragma once

#include <cstdint>
#include <functional>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "translation/start_request.h"
#include "workbook/collector.h"
#include "workbook/target_context.h"

namespace qv {

/// Collects what a run translates: the selection, the active sheet with its chart titles, or all visible
/// sheets in order with theirs. Reports scan progress to the page. False with `result.error` on failure,
/// without one when `stillWanted` says no. Host UI thread.
[[nodiscard]] bool CollectForRun(const StartRequest& start, std::uint64_t runId, const TargetContext& target,
                                 PanelOutput& output, PaneContext& pane,
                                 const std::function<bool()>& stillWanted, CollectResult& result);

}  // namespace qv
