#pragma once

#include <windows.h>

namespace qv {

/// Removes the blank rows of the active sheet for the ribbon's button. `owner` is the window that questions
/// and reports belong to, or null.
void RunBlankRowRemoval(HWND owner);

}  // namespace qv
