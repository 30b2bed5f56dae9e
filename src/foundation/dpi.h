#pragma once

#include <cstdint>

namespace qv {

/// What every length in pixels is meant at.
inline constexpr int kDefaultDpi = 96;

/// A length given at 96 DPI as pixels at `dpi`, rounded as Windows' MulDiv does. Neither is negative.
[[nodiscard]] constexpr int ScaleToDpi(int length, int dpi) {
  return static_cast<int>((std::int64_t{length} * dpi + kDefaultDpi / 2) / kDefaultDpi);
}

}  // namespace qv
