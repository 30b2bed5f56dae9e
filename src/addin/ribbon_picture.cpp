#include "addin/ribbon_picture.h"

#include <olectl.h>
#include <shlwapi.h>

#include <cstddef>

#include "addin/module_resource.h"
#include "foundation/com_object.h"
#include "foundation/gdi_plus_session.h"
#include "foundation/unique_gdi.h"

namespace qv {
namespace {

/// A bitmap of 32 bits a pixel; `pixels` receives its memory. Rows lie from the bottom up: a handle does not
/// tell its rows' order, and hosts that read the memory themselves count on this one.
UniqueBitmap MakeBitmap(int width, int height, void** pixels) {
  BITMAPINFO info{};
  BITMAPINFOHEADER& header = info.bmiHeader;
  header.biSize = sizeof(header);
  header.biWidth = width;
  header.biHeight = height;
  header.biPlanes = 1;
  header.biBitCount = 32;
  return UniqueBitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, pixels, nullptr, 0));
}

/// Decodes straight into the bitmap's own memory: GDI+'s conversion to a bitmap handle would lose the alpha.
HRESULT Decode(IStream* png, UniqueBitmap& bitmap) {
  Gdiplus::Bitmap image(png);
  if (image.GetLastStatus() != Gdiplus::Ok) return HRESULT_FROM_WIN32(ERROR_INVALID_DATA);
  const int width = static_cast<int>(image.GetWidth());
  const int height = static_cast<int>(image.GetHeight());
  const int rowBytes = width * 4;
  void* pixels = nullptr;
  bitmap = MakeBitmap(width, height, &pixels);
  if (!bitmap) return E_OUTOFMEMORY;

  Gdiplus::BitmapData data{};
  data.Width = static_cast<UINT>(width);
  data.Height = static_cast<UINT>(height);
  data.Stride = -rowBytes;
  data.PixelFormat = PixelFormat32bppPARGB;
  data.Scan0 = static_cast<BYTE*>(pixels) + static_cast<std::ptrdiff_t>(rowBytes) * (height - 1);
  const Gdiplus::Rect whole(0, 0, width, height);
  constexpr UINT kMode = Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeUserInputBuf;
  if (image.LockBits(&whole, kMode, PixelFormat32bppPARGB, &data) != Gdiplus::Ok) return E_FAIL;
  return image.UnlockBits(&data) == Gdiplus::Ok ? S_OK : E_FAIL;
}

}  // namespace

RibbonPictures::RibbonPictures() = default;
RibbonPictures::~RibbonPictures() = default;

void RibbonPictures::Release() {
  session_.reset();
}

HRESULT RibbonPictures::LoadPng(int resourceId, ComPtr<IPictureDisp>& picture) {
  const auto png = ModuleResource(resourceId, RT_RCDATA);
  if (!png) return HRESULT_FROM_WIN32(ERROR_RESOURCE_NAME_NOT_FOUND);
  const ComPtr<IStream> stream = TakeReference(
      SHCreateMemStream(reinterpret_cast<const BYTE*>(png->data()), static_cast<UINT>(png->size())));
  if (stream == nullptr) return E_OUTOFMEMORY;

  if (session_ == nullptr) session_ = std::make_unique<GdiplusSession>();
  if (!session_->Started()) return E_FAIL;
  UniqueBitmap bitmap;
  if (const HRESULT hr = Decode(stream.Get(), bitmap); FAILED(hr)) return hr;

  PICTDESC description{};
  description.cbSizeofstruct = sizeof(description);
  description.picType = PICTYPE_BITMAP;
  description.bmp.hbitmap = bitmap.Get();
  const HRESULT hr = OleCreatePictureIndirect(&description, __uuidof(IPictureDisp), TRUE,
                                              reinterpret_cast<void**>(picture.ReleaseAndGetAddressOf()));
  if (SUCCEEDED(hr)) static_cast<void>(bitmap.Detach());
  return hr;
}

}  // namespace qv
