#pragma once

#include <string_view>

namespace qv {

/// Icon id of a ribbon control, by its id, else by its tag; 0 for a control without an icon. Knows the
/// controls of the other hosts' ribbons too, with which the icons are shared.
[[nodiscard]] int RibbonIconId(std::wstring_view controlId, std::wstring_view tag);

/// Edge of the icon to show, one of 32, 48, 64 and 96 pixels. WPS draws large buttons bigger than Excel.
[[nodiscard]] int RibbonIconPixels(int dpi, bool wps);

/// Resource id of an icon's PNG in one of those sizes; 0 when there is none.
[[nodiscard]] int RibbonIconResource(int iconId, int pixels);

}  // namespace qv
