#pragma once

#include "engines/grid_snapshot.h"
#include "engines/memory/host.h"

namespace qv::devhost::memory {

/// What the window shows of its active sheet within the area, cut where the sheet ends. Cells have no borders
/// in this model.
[[nodiscard]] GridSnapshot GridOf(Window& window, const GridArea& area);

}  // namespace qv::devhost::memory
