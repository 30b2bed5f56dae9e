#include "foundation/ui_slices.h"

namespace qv {
namespace {

/// Time for what the user does, between two slices.
constexpr UINT kBreathMs = USER_TIMER_MINIMUM;

/// Posted messages go before input and painting, so a chain of posted slices would starve the user.
bool UserIsWaiting() {
  return HIWORD(GetQueueStatus(QS_INPUT | QS_PAINT)) != 0;
}

}  // namespace

bool UiSlices::ContinueSoon(std::function<void()> next) {
  return (!UserIsWaiting() && pane_->Tasks().PostFunction(next)) || ContinueAfter(kBreathMs, std::move(next));
}

bool UiSlices::ContinueAfter(UINT delayMs, std::function<void()> next) {
  return timer_.Start(pane_->Window(), delayMs, [this, next = std::move(next)] {
    const bool posted = pane_->Tasks().PostFunction(next);
    // A queue that is full for a moment is tried again; a closed one belongs to a pane that goes away.
    if (!posted && !pane_->IsClosing()) static_cast<void>(ContinueAfter(kBreathMs, next));
  });
}

}  // namespace qv
