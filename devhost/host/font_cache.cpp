#include "host/font_cache.h"

#include <algorithm>

#include "host/grid_geometry.h"

namespace qv::devhost {

HFONT FontCache::Get(const GridFont& font) {
  UniqueFont& made =
      fonts_[{font.name, font.size, font.bold, font.italic, font.underline, font.strikethrough}];
  if (made) return made.Get();
  LOGFONTW description{};
  description.lfHeight = -std::max(1, PixelsOf(font.size, dpi_));
  description.lfWeight = font.bold ? FW_BOLD : FW_NORMAL;
  description.lfItalic = font.italic;
  description.lfUnderline = font.underline;
  description.lfStrikeOut = font.strikethrough;
  description.lfCharSet = DEFAULT_CHARSET;
  // Smooth edges without colored fringes: a picture of the window looks the same everywhere.
  description.lfQuality = ANTIALIASED_QUALITY;
  const std::size_t length = std::min<std::size_t>(font.name.size(), LF_FACESIZE - 1);
  std::copy_n(font.name.begin(), length, description.lfFaceName);
  made.Reset(CreateFontIndirectW(&description));
  return made.Get();
}

}  // namespace qv::devhost
