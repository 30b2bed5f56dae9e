#include "host/font_cache.h"

#include <algorithm>
#include <string>

#include "host/grid_geometry.h"

namespace qv::devhost {
namespace {

/// Free fonts with the metrics of the host's usual ones, for systems that lack those.
struct StandIn {
  const wchar_t* wanted;
  const wchar_t* stand;
};
constexpr StandIn kStandIns[] = {{L"Calibri", L"Carlito"}, {L"Cambria", L"Caladea"}};

bool IsInstalled(const std::wstring& face) {
  LOGFONTW wanted{};
  wanted.lfCharSet = DEFAULT_CHARSET;
  std::copy_n(face.begin(), std::min<std::size_t>(face.size(), LF_FACESIZE - 1), wanted.lfFaceName);
  bool found = false;
  const auto visit = [](const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM result) -> int {
    *reinterpret_cast<bool*>(result) = true;
    return 0;
  };
  const HDC screen = GetDC(nullptr);
  EnumFontFamiliesExW(screen, &wanted, visit, reinterpret_cast<LPARAM>(&found), 0);
  ReleaseDC(nullptr, screen);
  return found;
}

/// The font itself, or its stand-in where only that one is there.
std::wstring FaceFor(const std::wstring& name) {
  for (const auto& [wanted, stand] : kStandIns) {
    if (name == wanted && !IsInstalled(name) && IsInstalled(stand)) return stand;
  }
  return name;
}

}  // namespace

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
  const std::wstring face = FaceFor(font.name);
  std::copy_n(face.begin(), std::min<std::size_t>(face.size(), LF_FACESIZE - 1), description.lfFaceName);
  made.Reset(CreateFontIndirectW(&description));
  return made.Get();
}

}  // namespace qv::devhost
