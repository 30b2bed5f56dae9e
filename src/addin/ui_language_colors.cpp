#include "addin/ui_language_colors.h"

namespace qv {
namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);

constexpr UiLanguageColors kOwn = {
    .ground = kWhite,
    .title = RGB(0x1F, 0x23, 0x28),
    .body = RGB(0x57, 0x60, 0x6A),
    .accent = RGB(0x0F, 0x6C, 0xBD),
    .accentPressed = RGB(0x0C, 0x54, 0x93),
    .onAccent = kWhite,
    .selected = RGB(0xE5, 0xF0, 0xFA),
    .onSelected = RGB(0x0B, 0x4F, 0x8A),
    .hairline = RGB(0xD0, 0xD7, 0xDE),
    .controlBorder = RGB(0x82, 0x89, 0x92),
    .pressed = RGB(0xEE, 0xF1, 0xF4),
};

bool WantsHighContrast() {
  HIGHCONTRASTW contrast{};
  contrast.cbSize = sizeof(contrast);
  return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof(contrast), &contrast, 0) &&
         (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

/// Only the pairs that the user's theme promises to tell apart.
UiLanguageColors SystemColors() {
  const COLORREF ground = GetSysColor(COLOR_WINDOW);
  const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
  const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
  const COLORREF onHighlight = GetSysColor(COLOR_HIGHLIGHTTEXT);
  return {.ground = ground,
          .title = text,
          .body = text,
          .accent = highlight,
          .accentPressed = highlight,
          .onAccent = onHighlight,
          .selected = highlight,
          .onSelected = onHighlight,
          .hairline = text,
          .controlBorder = text,
          .pressed = ground};
}

}  // namespace

UiLanguageColors ChooseUiLanguageColors() {
  return WantsHighContrast() ? SystemColors() : kOwn;
}

}  // namespace qv
