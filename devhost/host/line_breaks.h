#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace qv::devhost {

/// A line of a text: from the 0-based `start` to before `end`, without the line feed or the blanks at which
/// it was broken.
struct TextLine {
  std::size_t start = 0;
  std::size_t end = 0;
  bool operator==(const TextLine&) const = default;
};

/// Breaks a text at its line feeds and, when `width` is not 0, where a line would become wider: after blanks
/// and hyphens, around East Asian characters, and within words that are too long for a line of their own.
/// `advances` gives the width of each UTF-16 unit.
[[nodiscard]] std::vector<TextLine> BreakLines(std::wstring_view text, std::span<const int> advances,
                                               int width);

}  // namespace qv::devhost
