#pragma once

#include <string>
#include <variant>
#include <vector>

namespace qv::devhost::memory {

/// The host's constant for "automatic" colors, alignments and the like.
inline constexpr long kAutomatic = -4105;
/// The host's constant for "none": no fill, no underline.
inline constexpr long kNone = -4142;

/// A font as the object model sees it. Colors are the host's numbers, red + 256 * green + 65536 * blue.
struct FontStyle {
  std::wstring name = L"Calibri";
  double size = 11;
  bool bold = false;
  bool italic = false;
  bool strikethrough = false;
  long underline = kNone;
  long color = 0;
  bool automaticColor = true;
  bool operator==(const FontStyle&) const = default;
};

/// One border of a cell; style and weight are the host's numbers.
struct BorderLine {
  long style = kNone;
  long weight = 2;
  long color = 0;
  bool operator==(const BorderLine&) const = default;
};

/// Everything about a cell but its content.
struct CellStyle {
  FontStyle font;
  std::wstring numberFormat = L"General";
  bool wrap = false;
  bool locked = true;
  long horizontalAlignment = 1;
  long verticalAlignment = -4107;
  long fillPattern = kNone;
  long fillColor = 0xFFFFFF;
  /// The host's number of a theme's colour that the fill has, 0 for a colour of its own; and how much lighter
  /// or darker it is.
  long fillTheme = 0;
  double fillTint = 0;
  BorderLine leftBorder;
  BorderLine topBorder;
  BorderLine bottomBorder;
  BorderLine rightBorder;
  bool operator==(const CellStyle&) const = default;
};

/// Part of a text with one font: from 0-based `start` to the next run's start or the text's end.
struct FontRun {
  size_t start = 0;
  FontStyle font;
  bool operator==(const FontRun&) const = default;
};

/// One property's value, as compared over a range and handed to the caller.
using StyleValue = std::variant<bool, long, double, std::wstring>;

/// How one property is read and written; `write` gives false for a value that the host refuses.
template <typename Style>
struct StyleProperty {
  StyleValue (*read)(const Style&);
  bool (*write)(Style&, const StyleValue&);
};

/// Index of a color in the host's default palette of 56; only its first eight, the pure colors, are kept here
/// and any other color answers the nearest of them.
[[nodiscard]] long NearestColorIndex(long color);
/// Color of one of the eight indices, or -1.
[[nodiscard]] long ColorOfIndex(long index);

extern const StyleProperty<FontStyle> kFontName, kFontSize, kFontBold, kFontItalic, kFontStrikethrough,
    kFontUnderline, kFontColor, kFontColorIndex;
extern const StyleProperty<CellStyle> kWrapText, kLocked, kNumberFormat, kHorizontalAlignment,
    kVerticalAlignment, kInteriorColor, kInteriorColorIndex, kInteriorPattern, kInteriorThemeColor,
    kInteriorTint;

}  // namespace qv::devhost::memory
