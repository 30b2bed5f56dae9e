#pragma once

#include "engines/memory/sheet.h"
#include "foundation/unique_gdi.h"

namespace qv::devhost::memory {

/// What a block of cells looks like at 96 dots an inch: fills, grid lines and texts on one line. Null for a
/// block without any extent, and for one that is too large for a picture.
[[nodiscard]] UniqueBitmap DrawRange(const Sheet& sheet, const Area& area);

}  // namespace qv::devhost::memory
