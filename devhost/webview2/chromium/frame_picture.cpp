#include "webview2/chromium/frame_picture.h"

#include <wincrypt.h>

#include <vector>

#include "foundation/com_object.h"
#include "webview2/chromium/gdi_plus.h"

namespace qv::devhost {
namespace {

std::vector<BYTE> DecodeBase64(const std::string& text) {
  std::vector<BYTE> bytes(text.size());
  auto size = static_cast<DWORD>(bytes.size());
  if (!CryptStringToBinaryA(text.data(), static_cast<DWORD>(text.size()), CRYPT_STRING_BASE64, bytes.data(),
                            &size, nullptr, nullptr)) {
    size = 0;
  }
  bytes.resize(size);
  return bytes;
}

Microsoft::WRL::ComPtr<IStream> StreamOf(const std::vector<BYTE>& bytes) {
  Microsoft::WRL::ComPtr<IStream> stream;
  if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.GetAddressOf()))) return nullptr;
  stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
  stream->Seek({}, STREAM_SEEK_SET, nullptr);
  return stream;
}

}  // namespace

FramePicture DecodeFrame(const std::string& base64) {
  FramePicture picture;
  const auto stream = StreamOf(DecodeBase64(base64));
  if (!stream) return picture;
  Gdiplus::Bitmap image(stream.Get());
  picture.size = {static_cast<LONG>(image.GetWidth()), static_cast<LONG>(image.GetHeight())};
  if (image.GetHBITMAP(Gdiplus::Color(255, 255, 255), picture.bitmap.Put()) != Gdiplus::Ok)
    picture.bitmap.Reset();
  return picture;
}

void FramePainter::Paint(HWND window) const {
  PAINTSTRUCT paint{};
  const HDC target = BeginPaint(window, &paint);
  RECT client{};
  GetClientRect(window, &client);
  const SIZE size = picture_.bitmap ? picture_.size : SIZE{};
  if (picture_.bitmap) {
    const HDC source = CreateCompatibleDC(target);
    const HGDIOBJ former = SelectObject(source, picture_.bitmap.Get());
    BitBlt(target, 0, 0, size.cx, size.cy, source, 0, 0, SRCCOPY);
    SelectObject(source, former);
    DeleteDC(source);
  }
  Fill(target, {size.cx, 0, client.right, client.bottom});
  Fill(target, {0, size.cy, size.cx, client.bottom});
  EndPaint(window, &paint);
}

void FramePainter::Fill(HDC target, const RECT& area) const {
  if (IsRectEmpty(&area)) return;
  const UniqueHandle<GdiTraits<HBRUSH>> brush(CreateSolidBrush(background_));
  FillRect(target, &area, brush.Get());
}

}  // namespace qv::devhost
