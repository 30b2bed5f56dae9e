#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace qv {

/// Height in points of a row that cannot be asked; also the least that an estimate gives.
inline constexpr double kDefaultRowHeight = 15.0;
/// Limits of the host, in points.
inline constexpr double kMinRowHeight = 1.0;
inline constexpr double kMaxRowHeight = 409.0;

/// The height to set when a row of height `previous` needs `wanted` points; nothing when the row stays as it
/// is. A row never shrinks, and a gain of 0.4 or less is not worth a change.
[[nodiscard]] std::optional<double> GrownRowHeight(double previous, double wanted);

/// What a cell offers for an estimate; an absent member could not be read.
struct CellMetrics {
  /// Points.
  std::optional<double> fontSize;
  /// Width of the merge area in points, when the cell is merged.
  std::optional<double> mergeWidth;
  /// The column's width in characters.
  std::optional<double> columnWidth;
};

/// Whether a character takes a full em in East Asian type.
[[nodiscard]] bool IsWideCharacter(wchar_t unit);

/// Lines that a text needs at a width and font size, both in points.
[[nodiscard]] std::int64_t CountWrappedLines(std::wstring_view text, double width, double fontSize);

/// Height in points that a row needs to show the text, for hosts that cannot fit rows themselves.
[[nodiscard]] double EstimateRowHeight(std::wstring_view text, const CellMetrics& metrics);

}  // namespace qv
