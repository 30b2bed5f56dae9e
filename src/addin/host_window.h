#pragma once

#include <windows.h>

namespace qv {

/// The window that the connected application names as its own; null without one. In WPS it may be a child of
/// the frame that the user sees.
[[nodiscard]] HWND ApplicationWindow();

/// The top-level window that boxes and dialogs belong to: the application's, or where it names none of this
/// process the active one; null without either.
[[nodiscard]] HWND BoxOwner();

}  // namespace qv
