#include "tools/png_picture.h"

#include <wincrypt.h>

#include <cwchar>
#include <memory>
#include <optional>

#include "foundation/variant.h"

namespace qv {
namespace {

const PngPicture kNoStartup{{}, L"GdiplusStartup failed", L"gdiplus_startup"};
const PngPicture kNoEncoders{{}, L"no GDI+ encoders", L"png_encoder_missing"};
const PngPicture kNoPngEncoder{{}, L"PNG encoder not found", L"png_encoder_missing"};
const PngPicture kNoStream{{}, L"CreateStreamOnHGlobal failed", L"stream_create"};
const PngPicture kNotSaved{{}, L"Bitmap.Save failed", L"bitmap_save"};

/// The class of the PNG encoder, or the failure.
struct Encoder {
  CLSID id{};
  const PngPicture* failure = nullptr;
};

Encoder FindPngEncoder() {
  UINT count = 0;
  UINT size = 0;
  const bool counted = Gdiplus::GetImageEncodersSize(&count, &size) == Gdiplus::Ok;
  if (!counted || size < count * sizeof(Gdiplus::ImageCodecInfo) || count == 0) return {{}, &kNoEncoders};
  // The records are followed by the texts that they point to.
  const auto memory = std::make_unique<std::byte[]>(size);
  auto* const encoders = reinterpret_cast<Gdiplus::ImageCodecInfo*>(memory.get());
  if (Gdiplus::GetImageEncoders(count, size, encoders) != Gdiplus::Ok) return {{}, &kNoEncoders};
  for (const Gdiplus::ImageCodecInfo& encoder : std::span(encoders, count)) {
    if (std::wcscmp(encoder.MimeType, L"image/png") == 0) return {encoder.Clsid, nullptr};
  }
  return {{}, &kNoPngEncoder};
}

std::vector<std::byte> BytesOf(IStream* stream) {
  HGLOBAL memory = nullptr;
  STATSTG facts{};
  if (FAILED(GetHGlobalFromStream(stream, &memory)) || FAILED(stream->Stat(&facts, STATFLAG_NONAME)))
    return {};
  const auto* const data = static_cast<const std::byte*>(GlobalLock(memory));
  if (data == nullptr) return {};
  std::vector<std::byte> bytes(data, data + facts.cbSize.QuadPart);
  GlobalUnlock(memory);
  return bytes;
}

}  // namespace

PngPicture EncodePng(HBITMAP bitmap) {
  const GdiplusSession session;
  if (!session.Started()) return kNoStartup;
  Gdiplus::Bitmap image(bitmap, nullptr);
  return EncodePng(image);
}

PngPicture EncodePng(Gdiplus::Image& image) {
  const Encoder encoder = FindPngEncoder();
  if (encoder.failure != nullptr) return *encoder.failure;
  ComPtr<IStream> stream;
  if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.GetAddressOf()))) return kNoStream;
  PngPicture png;
  if (image.Save(stream.Get(), &encoder.id, nullptr) == Gdiplus::Ok) png.bytes = BytesOf(stream.Get());
  return png.bytes.empty() ? kNotSaved : png;
}

std::wstring Base64Of(std::span<const std::byte> bytes) {
  constexpr DWORD kForm = CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF;
  const auto* const data = reinterpret_cast<const BYTE*>(bytes.data());
  const auto size = static_cast<DWORD>(bytes.size());
  // Counts the closing zero, which the second call does not.
  DWORD length = 0;
  if (bytes.empty() || !CryptBinaryToStringW(data, size, kForm, nullptr, &length)) return {};
  std::wstring text(length, L'\0');
  if (!CryptBinaryToStringW(data, size, kForm, text.data(), &length)) return {};
  text.resize(length);
  return text;
}

}  // namespace qv
