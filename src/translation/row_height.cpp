#include "translation/row_height.h"

#include <algorithm>
#include <array>

namespace qv {
namespace {

constexpr double kLeastGain = 0.4;

constexpr double kLeastFontSize = 6.0;
constexpr double kDefaultFontSize = 11.0;
constexpr double kLeastWidth = 8.0;
constexpr double kDefaultWidth = 80.0;
/// Points of one character of column width at the usual font.
constexpr double kPointsPerColumnUnit = 7.0;
/// What cell margins leave of the width.
constexpr double kUsableShare = 0.94;

constexpr double kWideShare = 1.05;
constexpr double kNarrowShare = 0.55;
constexpr double kLineHeight = 1.35;
constexpr double kMargin = 6.0;

struct WideRange {
  wchar_t first;
  wchar_t last;
};
/// Hangul jamo, CJK radicals to Yi, Hangul syllables, compatibility ideographs, vertical and small forms,
/// full-width forms and signs.
constexpr std::array<WideRange, 7> kWideRanges = {{{0x1100, 0x115F},
                                                   {0x2E80, 0xA4CF},
                                                   {0xAC00, 0xD7AF},
                                                   {0xF900, 0xFAFF},
                                                   {0xFE10, 0xFE6F},
                                                   {0xFF00, 0xFF60},
                                                   {0xFFE0, 0xFFE6}}};

constexpr wchar_t kZeroWidthSpace = 0x200B;

double FontSizeOf(const CellMetrics& metrics) {
  const double size = metrics.fontSize.value_or(kDefaultFontSize);
  return size < kLeastFontSize ? kDefaultFontSize : size;
}

double UsableWidthOf(const CellMetrics& metrics) {
  double width = metrics.mergeWidth.value_or(0.0);
  if (width < kLeastWidth) {
    const double column = metrics.columnWidth.value_or(0.0);
    width = column > 0.0 ? column * kPointsPerColumnUnit : 0.0;
  }
  return (width < kLeastWidth ? kDefaultWidth : width) * kUsableShare;
}

}  // namespace

std::optional<double> GrownRowHeight(double previous, double wanted) {
  if (wanted - previous <= kLeastGain || wanted < kMinRowHeight) return std::nullopt;
  return std::min(wanted, kMaxRowHeight);
}

bool IsWideCharacter(wchar_t unit) {
  return std::ranges::any_of(kWideRanges,
                             [unit](const WideRange& r) { return unit >= r.first && unit <= r.last; });
}

std::int64_t CountWrappedLines(std::wstring_view text, double width, double fontSize) {
  const double limit = std::max(width, kLeastWidth);
  std::int64_t lines = 1;
  double used = 0.0;
  for (const wchar_t unit : text) {
    if (unit == L'\n' || unit == L'\r') {
      ++lines;
      used = 0.0;
      continue;
    }
    if (unit == kZeroWidthSpace) continue;
    const double advance = (IsWideCharacter(unit) ? kWideShare : kNarrowShare) * fontSize;
    used += advance;
    if (used > limit) {
      ++lines;
      used = advance;
    }
  }
  return lines;
}

double EstimateRowHeight(std::wstring_view text, const CellMetrics& metrics) {
  const double fontSize = FontSizeOf(metrics);
  const auto lines = static_cast<double>(CountWrappedLines(text, UsableWidthOf(metrics), fontSize));
  return std::clamp(fontSize * kLineHeight * lines + kMargin, kDefaultRowHeight, kMaxRowHeight);
}

}  // namespace qv
