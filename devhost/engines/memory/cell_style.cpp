#include "engines/memory/cell_style.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <optional>

namespace qv::devhost::memory {
namespace {

constexpr std::array<long, 8> kPalette = {0x000000, 0xFFFFFF, 0x0000FF, 0x00FF00,
                                          0xFF0000, 0x00FFFF, 0xFF00FF, 0xFFFF00};
constexpr long kMaxColor = 0xFFFFFF;
constexpr long kSolid = 1;

std::optional<double> AsNumber(const StyleValue& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? 1 : 0;
  if (const auto* integer = std::get_if<long>(&value)) return *integer;
  if (const auto* number = std::get_if<double>(&value)) return *number;
  return std::nullopt;
}

std::optional<long> AsLong(const StyleValue& value) {
  const auto number = AsNumber(value);
  if (!number || std::abs(*number) > 2147483647.0) return std::nullopt;
  return std::lround(*number);
}

std::optional<long> AsColor(const StyleValue& value) {
  const auto color = AsLong(value);
  return color && *color >= 0 && *color <= kMaxColor ? color : std::nullopt;
}

template <auto Field, typename Style>
StyleValue ReadField(const Style& style) {
  return style.*Field;
}

template <auto Field, typename Style>
bool WriteFlag(Style& style, const StyleValue& value) {
  const auto number = AsNumber(value);
  if (number) style.*Field = *number != 0;
  return number.has_value();
}

template <auto Field, typename Style>
bool WriteText(Style& style, const StyleValue& value) {
  const auto* text = std::get_if<std::wstring>(&value);
  if (text == nullptr || text->empty()) return false;
  style.*Field = *text;
  return true;
}

template <auto Field, typename Style>
bool WriteLong(Style& style, const StyleValue& value) {
  const auto number = AsLong(value);
  if (number) style.*Field = *number;
  return number.has_value();
}

bool WriteFontSize(FontStyle& font, const StyleValue& value) {
  const auto size = AsNumber(value);
  if (!size || *size < 1 || *size > 409) return false;
  font.size = *size;
  return true;
}

/// The host takes booleans for underlines too.
bool WriteUnderline(FontStyle& font, const StyleValue& value) {
  const auto* flag = std::get_if<bool>(&value);
  const auto style = flag != nullptr ? std::optional<long>(*flag ? 2 : kNone) : AsLong(value);
  if (style) font.underline = *style;
  return style.has_value();
}

/// Color properties answer a double.
StyleValue ReadFontColor(const FontStyle& font) {
  return static_cast<double>(font.color);
}

bool WriteFontColor(FontStyle& font, const StyleValue& value) {
  const auto color = AsColor(value);
  if (!color) return false;
  font.color = *color;
  font.automaticColor = false;
  return true;
}

StyleValue ReadFontColorIndex(const FontStyle& font) {
  return font.automaticColor ? kAutomatic : NearestColorIndex(font.color);
}

bool WriteFontColorIndex(FontStyle& font, const StyleValue& value) {
  const auto index = AsLong(value);
  if (!index) return false;
  const bool automatic = *index == kAutomatic;
  const long color = automatic ? 0 : ColorOfIndex(*index);
  if (color < 0) return false;
  font.color = color;
  font.automaticColor = automatic;
  return true;
}

StyleValue ReadFillColor(const CellStyle& style) {
  return static_cast<double>(style.fillColor);
}

bool WriteFillColor(CellStyle& style, const StyleValue& value) {
  const auto color = AsColor(value);
  if (!color) return false;
  style.fillColor = *color;
  style.fillTheme = 0;
  style.fillTint = 0;
  // A pattern stays, on another ground.
  if (style.fillPattern == kNone) style.fillPattern = kSolid;
  return true;
}

StyleValue ReadFillColorIndex(const CellStyle& style) {
  return style.fillPattern == kNone ? kNone : NearestColorIndex(style.fillColor);
}

bool WriteFillColorIndex(CellStyle& style, const StyleValue& value) {
  const auto index = AsLong(value);
  if (!index) return false;
  const bool none = *index == kNone || *index == kAutomatic;
  const long color = none ? kMaxColor : ColorOfIndex(*index);
  if (color < 0) return false;
  style.fillColor = color;
  style.fillTheme = 0;
  style.fillTint = 0;
  style.fillPattern = none ? kNone : kSolid;
  return true;
}

/// In the order of the host's numbers of them, from 1 on; a tint leaves the number of the colour as it is.
constexpr std::array<long, 12> kThemeColors = {0xFFFFFF, 0x000000, 0xE6E6E7, 0x6A5444, 0xC47244, 0x317DED,
                                               0xA5A5A5, 0x00C0FF, 0xD59B5B, 0x47AD70, 0xC16305, 0x724F95};

bool WriteFillTheme(CellStyle& style, const StyleValue& value) {
  const auto theme = AsLong(value);
  if (!theme || *theme < 1 || *theme > static_cast<long>(kThemeColors.size())) return false;
  style.fillTheme = *theme;
  style.fillColor = kThemeColors[static_cast<size_t>(*theme - 1)];
  style.fillTint = 0;
  if (style.fillPattern == kNone) style.fillPattern = kSolid;
  return true;
}

bool WriteFillTint(CellStyle& style, const StyleValue& value) {
  const auto tint = AsNumber(value);
  if (!tint || std::abs(*tint) > 1) return false;
  style.fillTint = *tint;
  return true;
}

}  // namespace

long NearestColorIndex(long color) {
  const auto part = [](long value, int shift) { return (value >> shift) & 0xFF; };
  long best = 1;
  long bestDistance = -1;
  for (size_t i = 0; i < kPalette.size(); ++i) {
    long distance = 0;
    for (const int shift : {0, 8, 16}) {
      const long difference = part(color, shift) - part(kPalette[i], shift);
      distance += difference * difference;
    }
    if (bestDistance < 0 || distance < bestDistance) {
      best = static_cast<long>(i) + 1;
      bestDistance = distance;
    }
  }
  return best;
}

long ColorOfIndex(long index) {
  return index >= 1 && index <= static_cast<long>(kPalette.size()) ? kPalette[static_cast<size_t>(index - 1)]
                                                                   : -1;
}

const StyleProperty<FontStyle> kFontName{ReadField<&FontStyle::name>, WriteText<&FontStyle::name>};
const StyleProperty<FontStyle> kFontSize{ReadField<&FontStyle::size>, WriteFontSize};
const StyleProperty<FontStyle> kFontBold{ReadField<&FontStyle::bold>, WriteFlag<&FontStyle::bold>};
const StyleProperty<FontStyle> kFontItalic{ReadField<&FontStyle::italic>, WriteFlag<&FontStyle::italic>};
const StyleProperty<FontStyle> kFontStrikethrough{ReadField<&FontStyle::strikethrough>,
                                                  WriteFlag<&FontStyle::strikethrough>};
const StyleProperty<FontStyle> kFontUnderline{ReadField<&FontStyle::underline>, WriteUnderline};
const StyleProperty<FontStyle> kFontColor{ReadFontColor, WriteFontColor};
const StyleProperty<FontStyle> kFontColorIndex{ReadFontColorIndex, WriteFontColorIndex};

const StyleProperty<CellStyle> kWrapText{ReadField<&CellStyle::wrap>, WriteFlag<&CellStyle::wrap>};
const StyleProperty<CellStyle> kLocked{ReadField<&CellStyle::locked>, WriteFlag<&CellStyle::locked>};
const StyleProperty<CellStyle> kNumberFormat{ReadField<&CellStyle::numberFormat>,
                                             WriteText<&CellStyle::numberFormat>};
const StyleProperty<CellStyle> kHorizontalAlignment{ReadField<&CellStyle::horizontalAlignment>,
                                                    WriteLong<&CellStyle::horizontalAlignment>};
const StyleProperty<CellStyle> kVerticalAlignment{ReadField<&CellStyle::verticalAlignment>,
                                                  WriteLong<&CellStyle::verticalAlignment>};
const StyleProperty<CellStyle> kInteriorColor{ReadFillColor, WriteFillColor};
const StyleProperty<CellStyle> kInteriorColorIndex{ReadFillColorIndex, WriteFillColorIndex};
const StyleProperty<CellStyle> kInteriorPattern{ReadField<&CellStyle::fillPattern>,
                                                WriteLong<&CellStyle::fillPattern>};
const StyleProperty<CellStyle> kInteriorThemeColor{ReadField<&CellStyle::fillTheme>, WriteFillTheme};
const StyleProperty<CellStyle> kInteriorTint{ReadField<&CellStyle::fillTint>, WriteFillTint};

}  // namespace qv::devhost::memory
