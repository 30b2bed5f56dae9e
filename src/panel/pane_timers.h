#pragma once

#include <windows.h>

namespace qv {

// Timers of a pane's window.

/// Watches the pane's width.
inline constexpr UINT_PTR kPaneWidthTimer = 1;
inline constexpr UINT kPaneWidthTimerMs = 300;
/// Holds the preview back until the selection has come to rest.
inline constexpr UINT_PTR kPreviewTimer = 3;
inline constexpr UINT kPreviewTimerMs = 250;

}  // namespace qv
