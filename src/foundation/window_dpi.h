#pragma once

#include <windows.h>

namespace qv {

/// What every length in pixels is meant at.
inline constexpr int kDefaultDpi = 96;

/// Dots per inch of the window's screen; 96 for no window and on systems that cannot tell (before Windows 10
/// 1607).
[[nodiscard]] int WindowDpi(HWND window);

}  // namespace qv
