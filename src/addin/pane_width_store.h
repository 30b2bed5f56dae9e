#pragma once

#include "addin/pane_width.h"

namespace qv {

/// The stored pane width in points, else the default one; logged with where it comes from. Host UI thread.
[[nodiscard]] int LoadInitialPaneWidth();

/// Stores a width that the watch wants to keep, and logs how that went. Host UI thread.
void SaveObservedWidth(PaneWidthRecord& record, int width);

/// Stores the width of the last look before the host goes away. Host UI thread.
void SaveWidthOfShutdown(int width);

}  // namespace qv
