#pragma once

#include <windows.h>

#include "host/drawing.h"

namespace qv::devhost {

/// What the screen shows where the window is, with its frame and whatever lies above it. Throws
/// std::runtime_error when the screen cannot be read.
[[nodiscard]] UniqueBitmap CaptureWindow(HWND window);

}  // namespace qv::devhost
