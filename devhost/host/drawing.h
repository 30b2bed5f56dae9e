#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "foundation/device_context.h"
#include "foundation/unique_gdi.h"

namespace qv::devhost {

/// The colours of the host's own parts: a light theme.
namespace theme {
inline constexpr COLORREF kBar = RGB(245, 245, 245);
inline constexpr COLORREF kSurface = RGB(255, 255, 255);
inline constexpr COLORREF kLine = RGB(218, 218, 218);
inline constexpr COLORREF kText = RGB(36, 36, 36);
inline constexpr COLORREF kQuietText = RGB(96, 96, 96);
inline constexpr COLORREF kAccent = RGB(33, 115, 70);
inline constexpr COLORREF kHover = RGB(230, 230, 230);
inline constexpr COLORREF kPressed = RGB(208, 208, 208);
}  // namespace theme

/// Resolution of the window's monitor; 96 when it is not known.
[[nodiscard]] int DpiOf(HWND window);

/// The user-interface font in 9 points at that resolution.
[[nodiscard]] UniqueFont MakeUiFont(int dpi, bool isBold = false);

/// Paints a window without flicker: what is drawn into `Canvas` appears at once at the end. For WM_PAINT
/// only.
class BufferedPaint {
 public:
  explicit BufferedPaint(HWND window);
  BufferedPaint(const BufferedPaint&) = delete;
  BufferedPaint& operator=(const BufferedPaint&) = delete;
  ~BufferedPaint();

  [[nodiscard]] HDC Canvas() const { return canvas_; }
  [[nodiscard]] const RECT& Area() const { return area_; }

 private:
  HWND window_;
  PAINTSTRUCT paint_{};
  RECT area_{};
  HDC target_;
  HDC canvas_;
  UniqueBitmap bitmap_;
  HGDIOBJ former_;
};

void Fill(HDC canvas, const RECT& area, COLORREF color);
/// Draws text of one or more lines with DrawText's flags, background untouched.
void DrawLabel(HDC canvas, std::wstring_view text, RECT area, HFONT font, COLORREF color, UINT flags);
/// Size of one line of text.
[[nodiscard]] SIZE MeasureLine(HDC canvas, std::wstring_view text, HFONT font);
/// A small cross, as on a close button.
void DrawCross(HDC canvas, const RECT& area, int dpi, COLORREF color);

}  // namespace qv::devhost
