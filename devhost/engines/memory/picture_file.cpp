#include "engines/memory/picture_file.h"

#include <objidl.h>
#include <shlwapi.h>

#include <utility>

#include "foundation/com_object.h"
#include "foundation/device_context.h"
#include "foundation/gdi_plus_session.h"
#include "foundation/variant.h"

namespace qv::devhost::memory {
namespace {

/// The class of Windows' own PNG encoder.
constexpr CLSID kPngEncoder = {0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
constexpr std::uint32_t kOpaque = 0xFF000000;

std::shared_ptr<const PictureData> PixelsOf(Gdiplus::Bitmap& bitmap) {
  auto picture = std::make_shared<PictureData>();
  picture->width = static_cast<int>(bitmap.GetWidth());
  picture->height = static_cast<int>(bitmap.GetHeight());
  picture->pixels.resize(static_cast<size_t>(picture->width) * static_cast<size_t>(picture->height));
  if (picture->pixels.empty()) return nullptr;
  const Gdiplus::Rect all(0, 0, picture->width, picture->height);
  Gdiplus::BitmapData data;
  data.Width = static_cast<UINT>(picture->width);
  data.Height = static_cast<UINT>(picture->height);
  data.Stride = picture->width * 4;
  data.PixelFormat = PixelFormat32bppARGB;
  data.Scan0 = picture->pixels.data();
  constexpr UINT kReadIntoOurs = Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeUserInputBuf;
  if (bitmap.LockBits(&all, kReadIntoOurs, PixelFormat32bppARGB, &data) != Gdiplus::Ok) return nullptr;
  bitmap.UnlockBits(&data);
  return picture;
}

std::string BytesOf(IStream* stream) {
  HGLOBAL memory = nullptr;
  STATSTG facts{};
  if (FAILED(GetHGlobalFromStream(stream, &memory)) || FAILED(stream->Stat(&facts, STATFLAG_NONAME)))
    return {};
  const auto* const data = static_cast<const char*>(GlobalLock(memory));
  std::string bytes(data, facts.cbSize.QuadPart);
  GlobalUnlock(memory);
  return bytes;
}

}  // namespace

std::shared_ptr<const PictureData> LoadPicture(const std::wstring& path) {
  const GdiplusSession session;
  Gdiplus::Bitmap bitmap(path.c_str());
  return PixelsOf(bitmap);
}

std::shared_ptr<const PictureData> DecodePicture(const std::string& bytes) {
  const GdiplusSession session;
  const ComPtr<IStream> stream = TakeReference(
      SHCreateMemStream(reinterpret_cast<const BYTE*>(bytes.data()), static_cast<UINT>(bytes.size())));
  if (stream == nullptr) return nullptr;
  Gdiplus::Bitmap bitmap(stream.Get());
  return PixelsOf(bitmap);
}

std::string EncodePicture(const PictureData& picture) {
  const GdiplusSession session;
  ComPtr<IStream> stream;
  if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.GetAddressOf()))) return {};
  // Only read, though the class does not say so.
  auto* const pixels = reinterpret_cast<BYTE*>(const_cast<std::uint32_t*>(picture.pixels.data()));
  Gdiplus::Bitmap bitmap(picture.width, picture.height, picture.width * 4, PixelFormat32bppARGB, pixels);
  return bitmap.Save(stream.Get(), &kPngEncoder, nullptr) == Gdiplus::Ok ? BytesOf(stream.Get())
                                                                         : std::string();
}

UniqueBitmap BitmapOf(const PictureData& picture, int width, int height) {
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(info.bmiHeader), picture.width, -picture.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  BITMAPINFO target = info;
  target.bmiHeader.biWidth = width;
  target.bmiHeader.biHeight = -height;
  void* pixels = nullptr;
  const WindowDc screen(nullptr);
  UniqueBitmap bitmap(CreateDIBSection(screen.Get(), &target, DIB_RGB_COLORS, &pixels, nullptr, 0));
  const HDC canvas = CreateCompatibleDC(screen.Get());
  if (!bitmap || canvas == nullptr) return {};
  {
    const Selected selected(canvas, bitmap.Get());
    SetStretchBltMode(canvas, COLORONCOLOR);
    StretchDIBits(canvas, 0, 0, width, height, 0, 0, picture.width, picture.height, picture.pixels.data(),
                  &info, DIB_RGB_COLORS, SRCCOPY);
  }
  DeleteDC(canvas);
  return bitmap;
}

std::shared_ptr<const PictureData> PictureOf(HBITMAP bitmap) {
  BITMAP facts{};
  if (GetObjectW(bitmap, sizeof(facts), &facts) == 0) return nullptr;
  auto picture = std::make_shared<PictureData>();
  picture->width = facts.bmWidth;
  picture->height = facts.bmHeight;
  picture->pixels.resize(static_cast<size_t>(facts.bmWidth) * static_cast<size_t>(facts.bmHeight));
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(info.bmiHeader), facts.bmWidth, -facts.bmHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  const WindowDc screen(nullptr);
  if (GetDIBits(screen.Get(), bitmap, 0, static_cast<UINT>(facts.bmHeight), picture->pixels.data(), &info,
                DIB_RGB_COLORS) == 0) {
    return nullptr;
  }
  for (std::uint32_t& pixel : picture->pixels)
    pixel |= kOpaque;
  return picture;
}

}  // namespace qv::devhost::memory
