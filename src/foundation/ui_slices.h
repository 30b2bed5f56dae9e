#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <utility>

#include "foundation/pane_context.h"
#include "foundation/ui_timer.h"

namespace qv {

/// How long a slice of long work may keep the host's UI thread.
inline constexpr ULONGLONG kUiSliceMs = 60;

/// How a busy host is waited for: milliseconds between two tries, and how many busy answers in a row are
/// taken. Together about ten seconds, long enough for a cell to be left or a dialog to be answered.
struct Patience {
  UINT delayMs = 250;
  int maxBusyAnswers = 40;
};

/// The pauses between the slices of long work, in which the host handles its messages. What follows runs as a
/// task of the pane, so that what keeps the pane alive in its tasks does so here. Host UI thread.
class UiSlices {
 public:
  explicit UiSlices(std::shared_ptr<PaneContext> pane) : pane_(std::move(pane)) {}

  /// Calls `next` soon, after what the user does. False when there is neither task nor timer to be had.
  [[nodiscard]] bool ContinueSoon(std::function<void()> next);
  /// Calls `next` after the delay. False when there is no timer to be had.
  [[nodiscard]] bool ContinueAfter(UINT delayMs, std::function<void()> next);
  /// A task that is posted already still runs: `next` finds out itself whether its owner is gone.
  void Stop() { timer_.Stop(); }

 private:
  std::shared_ptr<PaneContext> pane_;
  UiTimer timer_;
};

}  // namespace qv
