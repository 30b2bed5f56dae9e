#pragma once

#include <windows.h>

#include "foundation/dpi.h"

namespace qv {

/// Dots per inch of the window's screen; 96 for no window and on systems that cannot tell (before Windows 10
/// 1607).
[[nodiscard]] int WindowDpi(HWND window);

}  // namespace qv
