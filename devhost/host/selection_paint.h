#pragma once

#include "host/grid_geometry.h"

namespace qv::devhost {

/// The green of selections and of what belongs to them.
inline constexpr COLORREF kSelectionColor = RGB(0x21, 0x73, 0x46);

/// The selected areas: shaded but for the active cell, framed, with the fill handle at the corner of a single
/// area.
void PaintSelection(HDC dc, const GridPane& pane, int dpi);

}  // namespace qv::devhost
