#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qv {

/// The value of a cell that shows source and translation, and where the translation lies in it.
struct BilingualValue {
  std::wstring text;
  std::size_t originalLength = 0;
  /// Length of the source without its trailing white space.
  std::size_t trimmedLength = 0;
  /// 1-based position of the translation's first character.
  std::int32_t start = 0;
  std::int32_t length = 0;
};

/// The source without trailing white space, a line feed, and the translation.
[[nodiscard]] BilingualValue MakeBilingualValue(std::wstring_view source, std::wstring_view translation);

}  // namespace qv
