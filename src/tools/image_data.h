#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace qv {

/// Width and height in pixels.
struct PixelSize {
  std::int32_t width = 0;
  std::int32_t height = 0;

  friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// What a picture that comes from outside may have at most: bytes of its file, and pixels, which take four
/// bytes each once it is decoded and as many again while that is checked (256 MiB together). A file of a few
/// kilobytes may claim any number of pixels.
inline constexpr std::size_t kMaxImageBytes = std::size_t{64} << 20;
inline constexpr std::int64_t kMaxImagePixels = std::int64_t{32} << 20;

/// Neither side of a thumbnail is longer than this many pixels.
inline constexpr std::int32_t kThumbnailSide = 160;

/// The bytes that a base64 text stands for. Blanks and line breaks between its letters are skipped, and a
/// "data:" prefix in front; anything else that is not base64, an empty text and one of more than `limit`
/// bytes give nothing.
[[nodiscard]] std::optional<std::vector<std::byte>> BytesOfBase64(std::wstring_view text,
                                                                  std::size_t limit = kMaxImageBytes);

/// The size that the header of a PNG file tells; nothing for what is no complete PNG file (its signature, its
/// header, and all its pieces up to the last one) or has no pixels. What is inside the pieces is not looked
/// at.
[[nodiscard]] std::optional<PixelSize> PngSize(std::span<const std::byte> file);

/// Whether a picture has too many pixels to be decoded.
[[nodiscard]] bool IsTooLarge(PixelSize size);

/// The size in which a picture fits a square; a smaller one stays as it is. No side gets shorter than 1.
[[nodiscard]] PixelSize FitInto(PixelSize size, std::int32_t side);

}  // namespace qv
