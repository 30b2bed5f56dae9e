#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "workbook/cell_unit.h"
#include "workbook/range_geometry.h"

namespace qv {

/// A selection of at most this many cells is small enough to be shown as a text.
inline constexpr std::int64_t kMaxQuickTextCells = 64;

inline constexpr std::wstring_view kSelectionUnreadableError = L"无法读取选区";
inline constexpr std::wstring_view kSelectionFailedError = L"读取 Excel 选区异常";

/// Units that hold their translation now.
struct WrittenCounts {
  std::size_t onSheet = 0;
  std::size_t inSelection = 0;
};

/// What the page is told about the selected cells.
struct SelectionPreview {
  /// Texts that a run over the selection would translate, and their length in UTF-16 units.
  std::size_t fragments = 0;
  std::size_t chars = 0;
  /// As the host writes it, "$B$2:$D$10".
  std::wstring rangeAddress;
  WrittenCounts written;
  /// The selection's own text; absent for a larger one.
  std::optional<std::wstring> quickText;
};

/// Counts the written units of a sheet, and those of them inside the blocks. A unit in several blocks counts
/// once; a chart title lies in none.
[[nodiscard]] WrittenCounts CountWritten(const std::vector<CellUnit>& units, std::wstring_view sheetName,
                                         std::span<const RangeGeometry> blocks);

/// Adds a cell's text to a selection's: one line a cell, nothing for a blank one.
void AppendQuickText(std::wstring& quickText, std::wstring_view cellText);

[[nodiscard]] std::wstring SelectionPreviewScript(const SelectionPreview& preview);
[[nodiscard]] std::wstring SelectionPreviewErrorScript(std::wstring_view error);

}  // namespace qv
