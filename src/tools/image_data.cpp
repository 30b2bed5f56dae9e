#include "tools/image_data.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "foundation/text.h"

namespace qv {
namespace {

constexpr std::int8_t kNoDigit = -1;

constexpr std::array<std::int8_t, 128> kDigits = [] {
  std::array<std::int8_t, 128> digits{};
  digits.fill(kNoDigit);
  constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (std::size_t value = 0; value < kAlphabet.size(); ++value)
    digits[static_cast<std::size_t>(kAlphabet[value])] = static_cast<std::int8_t>(value);
  return digits;
}();

std::int8_t DigitOf(wchar_t unit) {
  const auto index = static_cast<std::size_t>(unit);
  return index < kDigits.size() ? kDigits[index] : kNoDigit;
}

std::wstring_view WithoutPrefix(std::wstring_view text) {
  if (!text.starts_with(L"data:")) return text;
  return text.substr(std::min(text.find(L','), text.size() - 1) + 1);
}

constexpr std::array<unsigned char, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
/// Length, type and checksum around the content of each piece of a PNG file.
constexpr std::size_t kPieceFrame = 12;
constexpr std::size_t kHeaderBytes = 13;

std::uint32_t NumberAt(std::span<const std::byte> file, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i)
    number = number << 8 | std::to_integer<std::uint32_t>(file[at + i]);
  return number;
}

bool IsType(std::span<const std::byte> piece, std::string_view type) {
  return std::memcmp(piece.data() + 4, type.data(), type.size()) == 0;
}

/// Whether whole pieces follow each other up to the closing one.
bool HasAllPieces(std::span<const std::byte> pieces) {
  while (pieces.size() >= kPieceFrame) {
    const std::size_t length = NumberAt(pieces, 0);
    if (length > pieces.size() - kPieceFrame) return false;
    if (IsType(pieces, "IEND")) return true;
    pieces = pieces.subspan(kPieceFrame + length);
  }
  return false;
}

}  // namespace

std::optional<std::vector<std::byte>> BytesOfBase64(std::wstring_view text, std::size_t limit) {
  text = WithoutPrefix(text);
  std::vector<std::byte> bytes;
  bytes.reserve(std::min(text.size() / 4 * 3, limit));
  std::uint32_t bits = 0;
  int count = 0;
  int padding = 0;
  for (const wchar_t unit : text) {
    if (IsSpace(unit)) continue;
    const std::int8_t digit = DigitOf(unit);
    if (unit == L'=') {
      ++padding;
    } else if (digit == kNoDigit || padding > 0) {
      return std::nullopt;
    } else {
      bits = bits << 6 | static_cast<std::uint32_t>(digit);
      count += 6;
    }
    if (count < 8) continue;
    count -= 8;
    if (bytes.size() == limit) return std::nullopt;
    bytes.push_back(static_cast<std::byte>(bits >> count & 0xFF));
  }
  // Left over are 0 bits of a full group, 4 with two signs of padding, 2 with one.
  if (bytes.empty() || count == 6 || padding * 2 != count) return std::nullopt;
  return bytes;
}

std::optional<PixelSize> PngSize(std::span<const std::byte> file) {
  const std::size_t headed = kSignature.size() + kPieceFrame + kHeaderBytes;
  if (file.size() < headed || std::memcmp(file.data(), kSignature.data(), kSignature.size()) != 0) {
    return std::nullopt;
  }
  const auto pieces = file.subspan(kSignature.size());
  if (NumberAt(pieces, 0) != kHeaderBytes || !IsType(pieces, "IHDR") || !HasAllPieces(pieces)) {
    return std::nullopt;
  }
  const std::uint32_t width = NumberAt(pieces, 8);
  const std::uint32_t height = NumberAt(pieces, 12);
  if (width == 0 || height == 0 || width > INT32_MAX || height > INT32_MAX) return std::nullopt;
  return PixelSize{static_cast<std::int32_t>(width), static_cast<std::int32_t>(height)};
}

bool IsTooLarge(PixelSize size) {
  return std::int64_t{size.width} * size.height > kMaxImagePixels;
}

PixelSize FitInto(PixelSize size, std::int32_t side) {
  const std::int64_t longer = std::max(size.width, size.height);
  if (longer <= side) return size;
  const auto scaled = [&](std::int32_t length) {
    return static_cast<std::int32_t>(
        std::max<std::int64_t>(1, (length * std::int64_t{side} + longer / 2) / longer));
  };
  return {scaled(size.width), scaled(size.height)};
}

}  // namespace qv
