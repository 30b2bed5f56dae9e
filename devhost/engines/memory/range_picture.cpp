#include "engines/memory/range_picture.h"

#include <cmath>

namespace qv::devhost::memory {
namespace {

constexpr double kPixelsPerPoint = 96.0 / 72.0;
constexpr int kMaxPixels = 10000;
constexpr COLORREF kGridColor = RGB(0xD4, 0xD4, 0xD4);

struct DeviceTraits {
  using Type = HDC;
  static Type None() { return nullptr; }
  static void Close(Type handle) { DeleteDC(handle); }
};

int Pixels(double points) {
  return static_cast<int>(std::lround(points * kPixelsPerPoint));
}

void DrawCell(HDC canvas, const Cell* cell, RECT place) {
  const CellStyle style = cell == nullptr ? CellStyle() : cell->Style();
  const UniqueBrush fill(CreateSolidBrush(static_cast<COLORREF>(style.fillColor)));
  FillRect(canvas, &place, fill.Get());
  const UniqueBrush grid(CreateSolidBrush(kGridColor));
  FrameRect(canvas, &place, grid.Get());
  if (cell == nullptr) return;
  const std::wstring text = DisplayText(cell->value, style.numberFormat);
  SetTextColor(canvas, static_cast<COLORREF>(style.font.color));
  InflateRect(&place, -2, -1);
  DrawTextW(canvas, text.c_str(), static_cast<int>(text.size()), &place,
            DT_SINGLELINE | DT_BOTTOM | DT_NOPREFIX);
}

void DrawCells(HDC canvas, const Sheet& sheet, const Area& area) {
  SetBkMode(canvas, TRANSPARENT);
  double top = 0;
  for (long row = area.row1; row <= area.row2; ++row) {
    const double bottom = top + sheet.RowHeight(row);
    double left = 0;
    for (long col = area.col1; col <= area.col2; ++col) {
      const double right = left + sheet.ColumnPoints(col);
      DrawCell(canvas, sheet.Find(row, col), {Pixels(left), Pixels(top), Pixels(right), Pixels(bottom)});
      left = right;
    }
    top = bottom;
  }
}

}  // namespace

UniqueBitmap DrawRange(const Sheet& sheet, const Area& area) {
  // Before the sum over all of a sheet's columns is asked for.
  if (area.Cells() > kMaxPixels) return {};
  const int width = Pixels(sheet.WidthOf(area));
  const int height = Pixels(sheet.HeightOf(area));
  if (width < 1 || height < 1 || width > kMaxPixels || height > kMaxPixels) return {};
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(info.bmiHeader), width, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  const UniqueHandle<DeviceTraits> canvas(CreateCompatibleDC(nullptr));
  void* pixels = nullptr;
  UniqueBitmap bitmap(CreateDIBSection(canvas.Get(), &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
  if (!canvas || !bitmap) return {};
  const HGDIOBJ before = SelectObject(canvas.Get(), bitmap.Get());
  DrawCells(canvas.Get(), sheet, area);
  SelectObject(canvas.Get(), before);
  return bitmap;
}

}  // namespace qv::devhost::memory
