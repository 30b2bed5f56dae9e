#pragma once

#include <windows.h>

namespace qv {

/// The window that the connected application names as its own; null without one. In WPS it may be a child of
/// the frame that the user sees.
[[nodiscard]] HWND ApplicationWindow();

/// The top-level window that boxes and dialogs belong to; null when the application names none of this
/// process.
[[nodiscard]] HWND HostFrame();

}  // namespace qv
