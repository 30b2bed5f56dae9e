#include "host/line_breaks.h"

#include <algorithm>

namespace qv::devhost {
namespace {

/// Kana, ideographs, full-width forms: text that may be broken between any two characters. Hangul has blanks.
bool IsEastAsian(wchar_t unit) {
  return (unit >= 0x2E80 && unit <= 0x9FFF) || (unit >= 0xF900 && unit <= 0xFAFF) ||
         (unit >= 0xFF00 && unit <= 0xFFEF);
}

bool IsClosingMark(wchar_t unit) {
  return std::wstring_view(L"、。，．：；？！）」』】〉》").find(unit) != std::wstring_view::npos;
}

bool MayBreakBefore(std::wstring_view text, std::size_t at) {
  const wchar_t before = text[at - 1];
  const wchar_t after = text[at];
  if (after == L' ' || IsClosingMark(after)) return false;
  return before == L' ' || before == L'-' || IsEastAsian(before) || IsEastAsian(after);
}

bool IsInsidePair(std::wstring_view text, std::size_t at) {
  return at > 0 && at < text.size() && text[at] >= 0xDC00 && text[at] <= 0xDFFF;
}

/// End of the line that begins at `start` of a paragraph that ends at `limit`.
std::size_t LineEnd(std::wstring_view text, std::span<const int> advances, std::size_t start,
                    std::size_t limit, int width) {
  int used = 0;
  std::size_t lastBreak = start;
  for (std::size_t at = start; at < limit; ++at) {
    if (at > start && MayBreakBefore(text, at)) lastBreak = at;
    used += advances[at];
    // Blanks may hang over the edge.
    if (used <= width || text[at] == L' ') continue;
    if (lastBreak > start) return lastBreak;
    const std::size_t cut = IsInsidePair(text, at) ? at - 1 : at;
    if (cut > start) return cut;
    // Not even one character fits.
    return std::min(limit, IsInsidePair(text, start + 1) ? start + 2 : start + 1);
  }
  return limit;
}

}  // namespace

std::vector<TextLine> BreakLines(std::wstring_view text, std::span<const int> advances, int width) {
  std::vector<TextLine> lines;
  std::size_t start = 0;
  while (true) {
    const std::size_t limit = std::min(text.find(L'\n', start), text.size());
    do {
      const std::size_t end = width > 0 ? LineEnd(text, advances, start, limit, width) : limit;
      std::size_t trimmed = end;
      while (end < limit && trimmed > start && text[trimmed - 1] == L' ')
        --trimmed;
      lines.push_back({start, trimmed});
      start = end;
    } while (start < limit);
    if (limit == text.size()) return lines;
    start = limit + 1;
  }
}

}  // namespace qv::devhost
