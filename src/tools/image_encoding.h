#pragma once

#include <windows.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/image_data.h"

namespace qv {

/// A picture as a PNG file, or the short code of the failure ("bitmap_save").
struct EncodedImage {
  std::vector<std::byte> png;
  PixelSize size;
  std::wstring_view error;

  [[nodiscard]] bool Ok() const { return error.empty(); }
};

/// 0 by 0 for no bitmap.
[[nodiscard]] PixelSize SizeOfBitmap(HBITMAP bitmap);

/// The bitmap as it is, and scaled down to a thumbnail where it is larger than one. GDI+ is started and shut
/// down inside.
[[nodiscard]] EncodedImage EncodeImage(HBITMAP bitmap);
[[nodiscard]] EncodedImage EncodeThumbnail(HBITMAP bitmap);

/// Whether GDI+ can draw the picture in a PNG file, every pixel of it.
[[nodiscard]] bool CanBeDrawn(std::span<const std::byte> png);

inline constexpr std::wstring_view kBase64Error = L"base64_encode";

}  // namespace qv
