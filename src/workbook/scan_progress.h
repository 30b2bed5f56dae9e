#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <utility>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"

namespace qv {

/// Dispatches waiting repaints of any window of this thread and timers of `pane`, at most 64, and stops at
/// the first other message, which stays queued. So the host goes on painting while nothing else can re-enter
/// the scan.
void PumpRepaints(HWND pane);

/// Tells the page how far a scan is and lets the host repaint now and then. Host UI thread.
class ScanProgress {
 public:
  /// A run id of 0 reports nothing. `totalRows` covers all areas of the scan. `stillWanted` may be empty.
  ScanProgress(PanelOutput& output, PaneContext& pane, std::uint64_t runId, std::int64_t totalRows,
               std::function<bool()> stillWanted)
      : output_(output),
        pane_(pane),
        runId_(runId),
        totalRows_(totalRows),
        stillWanted_(std::move(stillWanted)) {}

  /// The rows of the areas before the one that is scanned now.
  void SetRowsBefore(std::int64_t rows) { rowsBefore_ = rows; }

  /// False when the pane is closing or nobody wants the scan any more.
  [[nodiscard]] bool IsWanted() const { return !pane_.IsClosing() && (!stillWanted_ || stillWanted_()); }

  /// Called before each row (1-based) of the area. False when the scan should end (see `IsWanted`).
  [[nodiscard]] bool BeginRow(std::int32_t row);

 private:
  void PumpNowAndThen();

  PanelOutput& output_;
  PaneContext& pane_;
  std::uint64_t runId_;
  std::int64_t totalRows_;
  std::function<bool()> stillWanted_;
  std::int64_t rowsBefore_ = 0;
  ULONGLONG lastPump_ = 0;
};

}  // namespace qv
