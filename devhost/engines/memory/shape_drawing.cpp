#include "engines/memory/shape_drawing.h"

#include <cmath>

#include "engines/memory/picture_file.h"
#include "engines/memory/sheet.h"
#include "foundation/device_context.h"

namespace qv::devhost::memory {
namespace {

constexpr double kPixelsPerPoint = 96.0 / 72.0;
constexpr int kMaxPixels = 10000;

struct DeviceTraits {
  using Type = HDC;
  static Type None() { return nullptr; }
  static void Close(Type handle) { DeleteDC(handle); }
};

void DrawBitmap(HDC canvas, HBITMAP bitmap, const RECT& place) {
  const UniqueHandle<DeviceTraits> source(CreateCompatibleDC(canvas));
  const Selected selected(source.Get(), bitmap);
  BitBlt(canvas, place.left, place.top, place.right - place.left, place.bottom - place.top, source.Get(), 0,
         0, SRCCOPY);
}

void DrawAt(HDC canvas, const FloatingObject& object, double left, double top) {
  const RECT place{PixelsOf(object.left - left), PixelsOf(object.top - top),
                   PixelsOf(object.left - left) + PixelsOf(object.width),
                   PixelsOf(object.top - top) + PixelsOf(object.height)};
  const auto* const shape = dynamic_cast<const Shape*>(&object);
  const auto* const chart = dynamic_cast<const Chart*>(&object);
  const PictureData* const picture =
      shape != nullptr ? shape->picture.get() : (chart != nullptr ? chart->pasted.get() : nullptr);
  if (picture != nullptr) {
    DrawBitmap(canvas, BitmapOf(*picture, PixelsOf(object.width), PixelsOf(object.height)).Get(), place);
  } else if (shape == nullptr || shape->children.empty()) {
    FillRect(canvas, &place, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    FrameRect(canvas, &place, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  }
  if (shape == nullptr) return;
  for (const auto& child : shape->children)
    DrawAt(canvas, *child, left, top);
}

}  // namespace

int PixelsOf(double points) {
  return static_cast<int>(std::lround(points * kPixelsPerPoint));
}

UniqueBitmap DrawFloating(const FloatingObject& object) {
  const int width = PixelsOf(object.width);
  const int height = PixelsOf(object.height);
  if (width < 1 || height < 1 || width > kMaxPixels || height > kMaxPixels) return {};
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(info.bmiHeader), width, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  const UniqueHandle<DeviceTraits> canvas(CreateCompatibleDC(nullptr));
  void* pixels = nullptr;
  UniqueBitmap bitmap(CreateDIBSection(canvas.Get(), &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
  if (!canvas || !bitmap) return {};
  const Selected selected(canvas.Get(), bitmap.Get());
  DrawAt(canvas.Get(), object, object.left, object.top);
  return bitmap;
}

}  // namespace qv::devhost::memory
