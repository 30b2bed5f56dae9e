#pragma once

#include "host/font_cache.h"
#include "host/grid_geometry.h"

namespace qv::devhost {

/// Paints one pane's cells, lines, floating objects and selection within its clip.
void PaintPane(HDC dc, FontCache& fonts, const GridPane& pane);

}  // namespace qv::devhost
