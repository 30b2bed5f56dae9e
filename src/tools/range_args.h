#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tools/tool_arguments.h"

namespace qv {

/// The rectangle that a tool works on, 1-based, ordered. -1 in both columns means whole rows, -1 in both rows
/// whole columns.
struct RangeArgs {
  std::int32_t row1 = 0;
  std::int32_t col1 = 0;
  std::int32_t row2 = 0;
  std::int32_t col2 = 0;

  [[nodiscard]] bool IsWholeRows() const { return col1 < 1 || col2 < 1; }
  [[nodiscard]] bool IsWholeColumns() const { return row1 < 1 || row2 < 1; }
  [[nodiscard]] bool IsBlock() const { return !IsWholeRows() && !IsWholeColumns(); }
  /// Number of cells of a block.
  [[nodiscard]] std::int64_t Cells() const {
    return (std::int64_t{row2} - row1 + 1) * (std::int64_t{col2} - col1 + 1);
  }

  friend bool operator==(const RangeArgs&, const RangeArgs&) = default;
};

/// Largest block that is read or written at once, in cells.
inline constexpr std::int64_t kMaxToolCells = 5000;

/// An A1 text: "B3", "B3:D9", "A:C", "2:4", in either case and order; nothing for anything else. Absolute
/// references, sheet names and blanks are not accepted.
[[nodiscard]] std::optional<RangeArgs> ParseA1(std::wstring_view text);

/// "range" where it is accepted, else "row" and "col", else "row1", "col1", "row2", "col2", all from 1 on.
[[nodiscard]] std::optional<RangeArgs> ParseRangeArgs(const ToolArguments& arguments);

}  // namespace qv
