#include "engines/calc/remote_picture.h"

#include <windows.h>
// Wants the header above first.
#include <shlwapi.h>
#include <wincrypt.h>

#include <string>
#include <vector>

#include "engines/common/clipboard_picture.h"
#include "foundation/com_object.h"
#include "foundation/gdi_plus_session.h"
#include "foundation/unique_gdi.h"

namespace qv::devhost::calc {
namespace {

std::vector<BYTE> Decoded(const std::string& base64) {
  const auto length = static_cast<DWORD>(base64.size());
  DWORD size = 0;
  if (!CryptStringToBinaryA(base64.data(), length, CRYPT_STRING_BASE64, nullptr, &size, nullptr, nullptr)) {
    return {};
  }
  std::vector<BYTE> bytes(size);
  CryptStringToBinaryA(base64.data(), length, CRYPT_STRING_BASE64, bytes.data(), &size, nullptr, nullptr);
  return bytes;
}

UniqueBitmap BitmapOf(const std::vector<BYTE>& png) {
  const Microsoft::WRL::ComPtr<IStream> stream =
      TakeReference(SHCreateMemStream(png.data(), static_cast<UINT>(png.size())));
  UniqueBitmap bitmap;
  if (stream == nullptr) return bitmap;
  Gdiplus::Bitmap image(stream.Get());
  if (image.GetHBITMAP(Gdiplus::Color(Gdiplus::Color::White), bitmap.Put()) != Gdiplus::Ok) bitmap.Reset();
  return bitmap;
}

}  // namespace

bool IsPicture(const nlohmann::json& answer) {
  return answer.is_object() && answer.contains("picture");
}

bool PutOnClipboard(const nlohmann::json& answer) {
  const GdiplusSession session;
  if (!session.Started()) return false;
  const UniqueBitmap bitmap = BitmapOf(Decoded(answer.at("picture").get<std::string>()));
  return bitmap && PutPictureOnClipboard(bitmap.Get(), answer.at("bitmap").get<bool>());
}

}  // namespace qv::devhost::calc
