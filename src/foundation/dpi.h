#pragma once

#include <cstdint>

namespace qv {

/// Dots per inch of a screen that is not scaled.
inline constexpr int kUnscaledDpi = 96;

/// A length given at 96 DPI as pixels at `dpi`, rounded as Windows' MulDiv does. Neither is negative.
[[nodiscard]] constexpr int ScaleToDpi(int length, int dpi) {
  return static_cast<int>((std::int64_t{length} * dpi + kUnscaledDpi / 2) / kUnscaledDpi);
}

}  // namespace qv
