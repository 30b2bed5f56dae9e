#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv::devhost::memory {

inline constexpr long kMaxRow = 1048576;
inline constexpr long kMaxColumn = 16384;

/// A rectangle of cells, 1-based, both corners included, row1 <= row2 and col1 <= col2.
struct Area {
  long row1 = 1;
  long col1 = 1;
  long row2 = 1;
  long col2 = 1;

  [[nodiscard]] long Rows() const { return row2 - row1 + 1; }
  [[nodiscard]] long Columns() const { return col2 - col1 + 1; }
  [[nodiscard]] long long Cells() const { return static_cast<long long>(Rows()) * Columns(); }
  [[nodiscard]] bool IsWholeRows() const { return col1 == 1 && col2 == kMaxColumn; }
  [[nodiscard]] bool IsWholeColumns() const { return row1 == 1 && row2 == kMaxRow; }
  [[nodiscard]] bool Contains(long row, long col) const {
    return row >= row1 && row <= row2 && col >= col1 && col <= col2;
  }
  [[nodiscard]] bool Contains(const Area& other) const {
    return Contains(other.row1, other.col1) && Contains(other.row2, other.col2);
  }
  bool operator==(const Area&) const = default;
};

inline constexpr Area kWholeSheet{1, 1, kMaxRow, kMaxColumn};

[[nodiscard]] Area CellArea(long row, long col);

/// The common part, or nothing.
[[nodiscard]] std::optional<Area> Intersect(const Area& left, const Area& right);

/// "A1", "$B$2:C9", "A:C", "2:4" and lists of them separated by commas, as the host's Range property takes
/// them; nothing for anything else, a position outside the sheet included.
[[nodiscard]] std::optional<std::vector<Area>> ParseAddress(std::wstring_view text);

/// "A" for 1, "XFD" for 16384.
[[nodiscard]] std::wstring ColumnLetters(long column);

/// The host's Address text: whole rows as "$2:$4", whole columns as "$A:$C", one cell without a colon.
[[nodiscard]] std::wstring FormatAddress(const std::vector<Area>& areas, bool rowAbsolute,
                                         bool columnAbsolute);

}  // namespace qv::devhost::memory
