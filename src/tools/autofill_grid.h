#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/autofill_field.h"
#include "workbook/cell_place.h"
#include "workbook/cell_text.h"
#include "workbook/range_geometry.h"

namespace qv {

/// A sheet's used range as a person sees it, and the cells of it that wait for input.
class AutofillGrid {
 public:
  /// What one cell holds; a text is borrowed.
  struct Cell {
    std::wstring_view text;
    /// A number, a boolean, an error.
    bool holdsOther = false;
  };
  /// The text of a cell that holds something else, 1-based position in the range.
  using TextOfOther = std::function<std::wstring(std::int32_t row, std::int32_t col)>;

  /// The cells of the range, row by row. `isAlphabetic` tells the letters that make a text a label.
  AutofillGrid(const RangeGeometry& place, std::vector<Cell> cells, TextOfOther textOfOther,
               AlphabeticTest isAlphabetic);

  /// Cells of merged areas (on the sheet) other than the first one are not seen; what stands in the first one
  /// is seen in all of them.
  void SetMergedAreas(std::span<const RangeGeometry> areas);
  /// Hidden lines are not seen, neither their cells nor what stands in them: one flag each row and column.
  void SetHiddenLines(std::vector<bool> rows, std::vector<bool> cols);

  [[nodiscard]] bool HoldsData() const;

  /// The cells that wait for input, row by row, as far as their texts and what is around them tell: examples,
  /// underlines, and empty cells with a label.
  [[nodiscard]] std::vector<CellPlace> Candidates() const;

  /// The fields in the given cells, which are some of the candidates, row by row. What they say of their
  /// surroundings is bounded, each and together.
  [[nodiscard]] std::vector<AutofillField> Fields(std::span<const CellPlace> places) const;

 private:
  /// Marks a line that is not seen and those before the first one.
  static constexpr std::int32_t kNone = -1;
  /// A way up from a placeholder to the first row that is none.
  struct Climb {
    std::int32_t from = kNone;
    std::int32_t to = kNone;
  };

  [[nodiscard]] std::size_t IndexOf(std::int32_t row, std::int32_t col) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(place_.cols) +
           static_cast<std::size_t>(col);
  }
  [[nodiscard]] bool IsCovered(std::size_t index) const { return !shown_.empty() && shown_[index] != index; }
  /// The cell whose contents are seen at a position (0-based), or null where that is outside of the range.
  [[nodiscard]] const Cell* SeenAt(std::int32_t row, std::int32_t col, std::size_t& index) const;
  [[nodiscard]] std::wstring_view LabelAt(std::int32_t row, std::int32_t col) const;
  /// From the left, else from the given row above; empty when there is none.
  [[nodiscard]] std::wstring_view LabelFor(std::int32_t row, std::int32_t col, std::int32_t rowAbove) const;
  [[nodiscard]] bool IsPlaceholderAt(std::int32_t row, std::int32_t col) const;
  /// The nearest row above that is no placeholder in this column: those below one heading share it. `last` is
  /// the column's last way up, so that no cell is passed twice.
  [[nodiscard]] std::int32_t RowAbovePlaceholders(std::int32_t row, std::int32_t col, Climb& last) const;
  /// The texts are cut.
  [[nodiscard]] std::wstring TextAt(std::int32_t row, std::int32_t col) const;
  [[nodiscard]] std::wstring TextOfCell(std::size_t index) const;
  [[nodiscard]] std::wstring RowText(std::int32_t row) const;
  [[nodiscard]] AutofillField FieldAt(std::int32_t row, std::int32_t col, Climb& last) const;

  RangeGeometry place_;
  std::vector<Cell> cells_;
  TextOfOther textOfOther_;
  AlphabeticTest isAlphabetic_;
  /// For each cell the one whose contents are seen there; empty without merged areas.
  std::vector<std::size_t> shown_;
  /// For each row and column the one that is seen before it; of a hidden one nothing is asked.
  std::vector<std::int32_t> rowBefore_;
  std::vector<std::int32_t> colBefore_;
  std::vector<std::int32_t> seenRows_;
  std::vector<std::int32_t> seenCols_;
};

}  // namespace qv
