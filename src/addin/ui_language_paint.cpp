#include "addin/ui_language_paint.h"

#include <array>

#include "addin/device_context.h"
#include "foundation/dpi.h"
#include "foundation/unique_gdi.h"

namespace qv {
namespace {

constexpr COLORREF kGround = RGB(255, 255, 255);
constexpr COLORREF kAccent = RGB(0x0F, 0x6C, 0xBD);
constexpr COLORREF kAccentPressed = RGB(0x0C, 0x54, 0x93);
constexpr COLORREF kAccentText = RGB(0x0B, 0x4F, 0x8A);
constexpr COLORREF kAccentSoft = RGB(0xE5, 0xF0, 0xFA);
constexpr COLORREF kHairline = RGB(0xD0, 0xD7, 0xDE);
constexpr COLORREF kControlBorder = RGB(0x82, 0x89, 0x92);
constexpr COLORREF kPressed = RGB(0xEE, 0xF1, 0xF4);

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

void DrawDialogBorder(HDC dc, const RECT& client) {
  const UniqueBrush brush(CreateSolidBrush(kHairline));
  FrameRect(dc, &client, brush.Get());
}

void DrawListFrame(HDC dc, const RECT& area, int dpi, bool focused) {
  const Box box = focused ? Box{kGround, kAccent, ScaleToDpi(kRing, dpi)}
                          : Box{kGround, kControlBorder, ScaleToDpi(1, dpi)};
  DrawBox(dc, area, box, ScaleToDpi(kCorner, dpi));
}

void DrawListRow(const DRAWITEMSTRUCT& item, const wchar_t* text, HFONT font, int dpi) {
  const bool selected = (item.itemState & ODS_SELECTED) != 0;
  Fill(item.hDC, item.rcItem, kGround);
  if (selected) {
    DrawBox(item.hDC, item.rcItem, {kAccentSoft, kAccentSoft, 1}, ScaleToDpi(kCorner, dpi));
    // Not by colour alone.
    RECT mark = item.rcItem;
    InflateRect(&mark, 0, -ScaleToDpi(kMarkInset, dpi));
    mark.right = mark.left + ScaleToDpi(kMarkWidth, dpi);
    Fill(item.hDC, mark, kAccent);
  }
  RECT textArea = item.rcItem;
  InflateRect(&textArea, -ScaleToDpi(kRowTextInset, dpi), 0);
  DrawOneLine(item.hDC, text, textArea, font, selected ? kAccentText : kDialogTitleColor, DT_LEFT);
}

void DrawDialogButton(const DRAWITEMSTRUCT& item, HFONT font, int dpi, bool primary) {
  const bool pressed = (item.itemState & ODS_SELECTED) != 0;
  const COLORREF fill = primary ? (pressed ? kAccentPressed : kAccent) : (pressed ? kPressed : kGround);
  const int corner = ScaleToDpi(kCorner, dpi);
  Fill(item.hDC, item.rcItem, kGround);
  DrawBox(item.hDC, item.rcItem, {fill, primary ? fill : kControlBorder, ScaleToDpi(1, dpi)}, corner);
  if ((item.itemState & ODS_FOCUS) != 0) {
    const COLORREF ring = primary ? kGround : kAccent;
    DrawBox(item.hDC, Inset(item.rcItem, ScaleToDpi(kRingInset, dpi)), {fill, ring, ScaleToDpi(kRing, dpi)},
            corner);
  }
  std::array<wchar_t, 64> text{};
  GetWindowTextW(item.hwndItem, text.data(), static_cast<int>(text.size()));
  DrawOneLine(item.hDC, text.data(), item.rcItem, font, primary ? kGround : kDialogTitleColor, DT_CENTER);
}

}  // namespace qv
