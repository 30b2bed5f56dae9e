#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/gdi_plus_session.h"

namespace qv {

/// A bitmap as the bytes of a PNG file, or why not.
struct PngPicture {
  std::vector<std::byte> bytes;
  /// The error's text, and its short code for who tells failures that way; empty when there are bytes.
  std::wstring_view error;
  std::wstring_view code;
};

[[nodiscard]] PngPicture EncodePng(HBITMAP bitmap);

/// The same for a picture of GDI+, which has been started.
[[nodiscard]] PngPicture EncodePng(Gdiplus::Image& image);

/// Base64 without line breaks; empty when it cannot be made.
[[nodiscard]] std::wstring Base64Of(std::span<const std::byte> bytes);

}  // namespace qv
