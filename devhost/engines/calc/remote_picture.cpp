#include "engines/calc/remote_picture.h"

#include <windows.h>
// Wants the header above first.
#include <shlwapi.h>

#include <string>
#include <vector>

#include "engines/calc/base64.h"
#include "engines/common/clipboard_picture.h"
#include "foundation/com_object.h"
#include "foundation/gdi_plus_session.h"
#include "foundation/unique_gdi.h"

namespace qv::devhost::calc {

using nlohmann::json;

namespace {

/// How much of a picture is meant, in pixels from the top left corner.
struct PixelSize {
  int width = 0;
  int height = 0;
};

/// On white, because a bitmap on the clipboard has nothing to show through.
UniqueBitmap OnWhite(Gdiplus::Bitmap& image, PixelSize size) {
  Gdiplus::Bitmap page(size.width, size.height, PixelFormat24bppRGB);
  Gdiplus::Graphics canvas(&page);
  canvas.Clear(Gdiplus::Color(Gdiplus::Color::White));
  const Gdiplus::Rect place(0, 0, size.width, size.height);
  UniqueBitmap bitmap;
  if (canvas.DrawImage(&image, place, 0, 0, size.width, size.height, Gdiplus::UnitPixel) == Gdiplus::Ok)
    page.GetHBITMAP(Gdiplus::Color(Gdiplus::Color::White), bitmap.Put());
  return bitmap;
}

UniqueBitmap BitmapOf(const std::vector<unsigned char>& png, const json& size) {
  const Microsoft::WRL::ComPtr<IStream> stream =
      TakeReference(SHCreateMemStream(png.data(), static_cast<UINT>(png.size())));
  if (stream == nullptr) return {};
  Gdiplus::Bitmap image(stream.Get());
  const PixelSize whole{static_cast<int>(image.GetWidth()), static_cast<int>(image.GetHeight())};
  return OnWhite(image, size.is_array() ? PixelSize{size.at(0).get<int>(), size.at(1).get<int>()} : whole);
}

}  // namespace

bool IsPicture(const json& answer) {
  return answer.is_object() && answer.contains("picture");
}

bool PutOnClipboard(const json& answer) {
  const GdiplusSession session;
  if (!session.Started()) return false;
  const UniqueBitmap bitmap =
      BitmapOf(FromBase64(answer.at("picture").get<std::string>()), answer.value("size", json()));
  return bitmap && PutPictureOnClipboard(bitmap.Get(), answer.at("bitmap").get<bool>());
}

}  // namespace qv::devhost::calc
