#pragma once

#include <vector>

#include "host/font_cache.h"
#include "host/grid_geometry.h"

namespace qv::devhost {

/// Sizes in pixels for one DPI.
struct HeaderSizes {
  int rowHeaderWidth;
  int columnHeaderHeight;
};

/// Wide enough for the row number.
[[nodiscard]] HeaderSizes HeaderSizesFor(int lastRow, int dpi);

/// Letters above and numbers beside the panes, those of selected cells marked, and the lines at which panes
/// are frozen. `size` is that of the part of the view that headers and cells have together.
void PaintHeaders(HDC dc, FontCache& fonts, const std::vector<GridPane>& panes, const HeaderSizes& sizes,
                  SIZE size);

}  // namespace qv::devhost
