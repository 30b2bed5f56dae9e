#include "host/drawing.h"

#include <algorithm>
#include <cwchar>

#include "host/wine.h"

namespace qv::devhost {
namespace {

constexpr int kUiFontPoints = 9;
constexpr int kPointsPerInch = 72;

bool IsThai(wchar_t unit) {
  return unit >= 0x0E00 && unit <= 0x0E7F;
}

/// The same font with another family.
UniqueFont WithFamily(HFONT font, const wchar_t* family) {
  LOGFONTW description{};
  GetObjectW(font, sizeof description, &description);
  wcscpy(description.lfFaceName, family);
  return UniqueFont(CreateFontIndirectW(&description));
}

/// The font in which the text is drawn: Wine does not borrow Thai letters, which need shaping, from another
/// font than the one it is asked for. Elsewhere the family is not there, and the font stays as it is.
class FontForText {
 public:
  FontForText(HFONT font, std::wstring_view text)
      : own_(IsWine() && std::ranges::any_of(text, IsThai) ? WithFamily(font, L"Waree") : UniqueFont()),
        font_(own_ ? own_.Get() : font) {}

  [[nodiscard]] HFONT Get() const { return font_; }

 private:
  UniqueFont own_;
  HFONT font_;
};

}  // namespace

int DpiOf(HWND window) {
  const UINT dpi = GetDpiForWindow(window);
  return dpi == 0 ? USER_DEFAULT_SCREEN_DPI : static_cast<int>(dpi);
}

UniqueFont MakeUiFont(int dpi, bool isBold) {
  return UniqueFont(CreateFontW(-MulDiv(kUiFontPoints, dpi, kPointsPerInch), 0, 0, 0,
                                isBold ? FW_SEMIBOLD : FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                                DEFAULT_PITCH | FF_SWISS, L"Segoe UI"));
}

BufferedPaint::BufferedPaint(HWND window)
    : window_(window), target_(BeginPaint(window, &paint_)), canvas_(CreateCompatibleDC(target_)) {
  GetClientRect(window, &area_);
  bitmap_.Reset(CreateCompatibleBitmap(target_, area_.right, area_.bottom));
  former_ = SelectObject(canvas_, bitmap_.Get());
}

BufferedPaint::~BufferedPaint() {
  BitBlt(target_, 0, 0, area_.right, area_.bottom, canvas_, 0, 0, SRCCOPY);
  SelectObject(canvas_, former_);
  DeleteDC(canvas_);
  EndPaint(window_, &paint_);
}

void Fill(HDC canvas, const RECT& area, COLORREF color) {
  SetDCBrushColor(canvas, color);
  FillRect(canvas, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void DrawLabel(HDC canvas, std::wstring_view text, RECT area, HFONT font, COLORREF color, UINT flags) {
  const FontForText fitting(font, text);
  const Selected selected(canvas, fitting.Get());
  SetBkMode(canvas, TRANSPARENT);
  SetTextColor(canvas, color);
  DrawTextW(canvas, text.data(), static_cast<int>(text.size()), &area, flags | DT_NOPREFIX);
}

SIZE MeasureLine(HDC canvas, std::wstring_view text, HFONT font) {
  const FontForText fitting(font, text);
  const Selected selected(canvas, fitting.Get());
  RECT area{};
  DrawTextW(canvas, text.data(), static_cast<int>(text.size()), &area,
            DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
  return {area.right, area.bottom};
}

void DrawCross(HDC canvas, const RECT& area, int dpi, COLORREF color) {
  const int arm = MulDiv(4, dpi, USER_DEFAULT_SCREEN_DPI);
  const int x = (area.left + area.right) / 2;
  const int y = (area.top + area.bottom) / 2;
  const UniqueHandle<GdiTraits<HPEN>> pen(
      CreatePen(PS_SOLID, MulDiv(1, dpi, USER_DEFAULT_SCREEN_DPI), color));
  const Selected selected(canvas, pen.Get());
  MoveToEx(canvas, x - arm, y - arm, nullptr);
  LineTo(canvas, x + arm + 1, y + arm + 1);
  MoveToEx(canvas, x - arm, y + arm, nullptr);
  LineTo(canvas, x + arm + 1, y - arm - 1);
}

}  // namespace qv::devhost
