#include "tools/image_encoding.h"

#include <shlwapi.h>

#include <utility>

#include "foundation/com_object.h"
#include "foundation/gdi_plus_session.h"
#include "foundation/variant.h"
#include "tools/png_picture.h"

namespace qv {
namespace {

EncodedImage Encoded(PngPicture png, PixelSize size) {
  return {std::move(png.bytes), size, png.code};
}

/// Draws the bitmap into `scaled`, whose size it gets.
bool DrawScaled(HBITMAP bitmap, PixelSize size, Gdiplus::Bitmap& scaled, PixelSize to) {
  Gdiplus::Bitmap source(bitmap, nullptr);
  Gdiplus::Graphics canvas(&scaled);
  canvas.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
  canvas.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
  // Without this the edges are mixed with what lies outside of the picture.
  Gdiplus::ImageAttributes edges;
  edges.SetWrapMode(Gdiplus::WrapModeTileFlipXY);
  const Gdiplus::Rect place(0, 0, to.width, to.height);
  return canvas.DrawImage(&source, place, 0, 0, size.width, size.height, Gdiplus::UnitPixel, &edges) ==
         Gdiplus::Ok;
}

}  // namespace

PixelSize SizeOfBitmap(HBITMAP bitmap) {
  BITMAP facts{};
  if (bitmap == nullptr || GetObjectW(bitmap, sizeof(facts), &facts) == 0) return {};
  return {facts.bmWidth, facts.bmHeight};
}

EncodedImage EncodeImage(HBITMAP bitmap) {
  const PixelSize size = SizeOfBitmap(bitmap);
  if (size.width < 1 || size.height < 1) return {{}, {}, L"null_bitmap"};
  return Encoded(EncodePng(bitmap), size);
}

EncodedImage EncodeThumbnail(HBITMAP bitmap) {
  const PixelSize size = SizeOfBitmap(bitmap);
  const PixelSize small = FitInto(size, kThumbnailSide);
  if (small == size || size.width < 1 || size.height < 1) return EncodeImage(bitmap);
  const GdiplusSession session;
  if (!session.Started()) return {{}, {}, L"gdiplus_startup"};
  Gdiplus::Bitmap scaled(small.width, small.height, PixelFormat24bppRGB);
  if (!DrawScaled(bitmap, size, scaled, small)) return {{}, {}, L"scale_failed"};
  return Encoded(EncodePng(scaled), small);
}

bool CanBeDrawn(std::span<const std::byte> png) {
  const GdiplusSession session;
  const ComPtr<IStream> stream = TakeReference(
      SHCreateMemStream(reinterpret_cast<const BYTE*>(png.data()), static_cast<UINT>(png.size())));
  if (!session.Started() || stream == nullptr) return false;
  Gdiplus::Bitmap picture(stream.Get());
  const Gdiplus::Rect all(0, 0, static_cast<INT>(picture.GetWidth()), static_cast<INT>(picture.GetHeight()));
  // A picture is decoded when its pixels are asked for, not before.
  Gdiplus::BitmapData pixels;
  if (picture.LockBits(&all, Gdiplus::ImageLockModeRead, PixelFormat32bppARGB, &pixels) != Gdiplus::Ok) {
    return false;
  }
  return picture.UnlockBits(&pixels) == Gdiplus::Ok;
}

}  // namespace qv
