#pragma once

#include "host/grid_geometry.h"

namespace qv::devhost {

/// The selected areas: shaded but for the active cell, framed, with the fill handle at the corner of a single
/// area.
void PaintSelection(HDC dc, const GridPane& pane, int dpi);

}  // namespace qv::devhost
