#include "addin/ui_language_paint.h"

#include <array>

#include "foundation/device_context.h"
#include "foundation/dpi.h"
#include "foundation/unique_gdi.h"

namespace qv {
namespace {

// Lengths at 96 DPI.
constexpr int kCorner = 8;
constexpr int kRing = 2;
constexpr int kRingInset = 3;
constexpr int kRowTextInset = 14;
constexpr int kMarkWidth = 3;
constexpr int kMarkInset = 8;

struct Box {
  COLORREF fill;
  COLORREF border;
  int borderWidth;
};

void DrawBox(HDC dc, const RECT& area, const Box& box, int corner) {
  const UniqueBrush brush(CreateSolidBrush(box.fill));
  // Inside the area, however wide.
  const UniquePen pen(CreatePen(PS_INSIDEFRAME, box.borderWidth, box.border));
  const Selected withBrush(dc, brush.Get());
  const Selected withPen(dc, pen.Get());
  RoundRect(dc, area.left, area.top, area.right, area.bottom, corner, corner);
}

void Fill(HDC dc, const RECT& area, COLORREF color) {
  const UniqueBrush brush(CreateSolidBrush(color));
  FillRect(dc, &area, brush.Get());
}

RECT Inset(RECT area, int by) {
  InflateRect(&area, -by, -by);
  return area;
}

void DrawOneLine(HDC dc, const wchar_t* text, RECT area, HFONT font, COLORREF color, UINT alignment) {
  const Selected withFont(dc, font);
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, color);
  DrawTextW(dc, text, -1, &area, alignment | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}

}  // namespace

void DrawDialogBorder(HDC dc, const RECT& client, const UiLanguageColors& colors) {
  const UniqueBrush brush(CreateSolidBrush(colors.hairline));
  FrameRect(dc, &client, brush.Get());
}

void DrawListFrame(HDC dc, const RECT& area, int dpi, bool focused, const UiLanguageColors& colors) {
  const Box box = focused ? Box{colors.ground, colors.accent, ScaleToDpi(kRing, dpi)}
                          : Box{colors.ground, colors.controlBorder, ScaleToDpi(1, dpi)};
  DrawBox(dc, area, box, ScaleToDpi(kCorner, dpi));
}

void DrawListRow(const DRAWITEMSTRUCT& item, const UiLanguage& language, HFONT font, int dpi,
                 const UiLanguageColors& colors) {
  const bool selected = (item.itemState & ODS_SELECTED) != 0;
  // With nothing selected yet it is all that shows where the keys start.
  const bool focused = (item.itemState & ODS_FOCUS) != 0;
  const COLORREF ground = selected ? colors.selected : colors.ground;
  const COLORREF text = selected ? colors.onSelected : colors.title;
  Fill(item.hDC, item.rcItem, colors.ground);
  if (selected || focused) {
    const Box box{ground, focused ? text : ground, ScaleToDpi(1, dpi)};
    DrawBox(item.hDC, item.rcItem, box, ScaleToDpi(kCorner, dpi));
  }
  if (selected) {
    // Not by colour alone.
    RECT mark = item.rcItem;
    InflateRect(&mark, 0, -ScaleToDpi(kMarkInset, dpi));
    mark.right = mark.left + ScaleToDpi(kMarkWidth, dpi);
    Fill(item.hDC, mark, text);
  }
  RECT textArea = item.rcItem;
  InflateRect(&textArea, -ScaleToDpi(kRowTextInset, dpi), 0);
  const UINT reading = IsRightToLeft(language.code) ? DT_RTLREADING : 0;
  DrawOneLine(item.hDC, language.name, textArea, font, text, DT_LEFT | reading);
}

void DrawDialogButton(const DRAWITEMSTRUCT& item, HFONT font, int dpi, bool primary,
                      const UiLanguageColors& colors) {
  const bool pressed = (item.itemState & ODS_SELECTED) != 0;
  const COLORREF fill =
      primary ? (pressed ? colors.accentPressed : colors.accent) : (pressed ? colors.pressed : colors.ground);
  const int corner = ScaleToDpi(kCorner, dpi);
  Fill(item.hDC, item.rcItem, colors.ground);
  const COLORREF border = primary ? fill : colors.controlBorder;
  DrawBox(item.hDC, item.rcItem, {fill, border, ScaleToDpi(1, dpi)}, corner);
  if ((item.itemState & ODS_FOCUS) != 0) {
    const COLORREF ring = primary ? colors.onAccent : colors.accent;
    DrawBox(item.hDC, Inset(item.rcItem, ScaleToDpi(kRingInset, dpi)), {fill, ring, ScaleToDpi(kRing, dpi)},
            corner);
  }
  std::array<wchar_t, 64> text{};
  GetWindowTextW(item.hwndItem, text.data(), static_cast<int>(text.size()));
  DrawOneLine(item.hDC, text.data(), item.rcItem, font, primary ? colors.onAccent : colors.title, DT_CENTER);
}

}  // namespace qv
