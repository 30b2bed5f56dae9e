#include "host/picture.h"

#include <objidl.h>
#include <olectl.h>

// The GDI+ headers count on these names.
#include <algorithm>
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

#include <memory>
#include <stdexcept>

#include "foundation/text.h"

namespace qv::devhost {
namespace {

/// The PNG encoder's class, as Windows documents it.
constexpr CLSID kPngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

/// A view of the section's own pixels, alpha included; null when the bitmap is no 32-bit section.
std::unique_ptr<Gdiplus::Bitmap> WithAlpha(HBITMAP bitmap) {
  DIBSECTION section{};
  if (GetObjectW(bitmap, sizeof section, &section) != sizeof section || section.dsBm.bmBits == nullptr ||
      section.dsBm.bmBitsPixel != 32) {
    return nullptr;
  }
  auto* pixels = static_cast<BYTE*>(section.dsBm.bmBits);
  int stride = section.dsBm.bmWidthBytes;
  if (section.dsBmih.biHeight > 0) {
    // Rows lie from the bottom up.
    pixels += static_cast<std::ptrdiff_t>(stride) * (section.dsBm.bmHeight - 1);
    stride = -stride;
  }
  return std::make_unique<Gdiplus::Bitmap>(section.dsBm.bmWidth, section.dsBm.bmHeight, stride,
                                           PixelFormat32bppPARGB, pixels);
}

}  // namespace

PictureLibrary::PictureLibrary() {
  const Gdiplus::GdiplusStartupInput input;
  if (Gdiplus::GdiplusStartup(&token_, &input, nullptr) != Gdiplus::Ok)
    throw std::runtime_error("GDI+ cannot be started");
}

PictureLibrary::~PictureLibrary() {
  Gdiplus::GdiplusShutdown(token_);
}

HBITMAP BitmapOf(IPicture* picture) {
  OLE_HANDLE handle = 0;
  short type = PICTYPE_NONE;
  if (picture == nullptr || FAILED(picture->get_Type(&type)) || type != PICTYPE_BITMAP) return nullptr;
  if (FAILED(picture->get_Handle(&handle))) return nullptr;
  // Handles are 32 bits wide here, and sign-extended on the way back, as Windows defines it.
  return reinterpret_cast<HBITMAP>(static_cast<LONG_PTR>(static_cast<LONG>(handle)));
}

void DrawBitmap(HDC canvas, HBITMAP bitmap, const RECT& area) {
  const auto image = WithAlpha(bitmap);
  const std::unique_ptr<Gdiplus::Bitmap> opaque(image ? nullptr : new Gdiplus::Bitmap(bitmap, nullptr));
  Gdiplus::Graphics graphics(canvas);
  graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
  graphics.DrawImage(image ? image.get() : opaque.get(), static_cast<INT>(area.left),
                     static_cast<INT>(area.top), static_cast<INT>(area.right - area.left),
                     static_cast<INT>(area.bottom - area.top));
}

void SavePng(HBITMAP bitmap, const std::wstring& path) {
  Gdiplus::Bitmap image(bitmap, nullptr);
  if (image.Save(path.c_str(), &kPngEncoder, nullptr) != Gdiplus::Ok)
    throw std::runtime_error("the picture cannot be written to " + ToUtf8(path));
}

}  // namespace qv::devhost
