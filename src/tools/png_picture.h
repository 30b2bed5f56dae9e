#pragma once

#include <windows.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

/// A bitmap as the bytes of a PNG file, or why not.
struct PngPicture {
  std::vector<std::byte> bytes;
  /// The error's text; empty when there are bytes.
  std::wstring_view error;
};

[[nodiscard]] PngPicture EncodePng(HBITMAP bitmap);

/// Base64 without line breaks; empty when it cannot be made.
[[nodiscard]] std::wstring Base64Of(std::span<const std::byte> bytes);

}  // namespace qv
