#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "workbook/cell_content.h"

namespace qv {

/// Rows of what shall go into cells; rows may differ in length.
using ValuesMatrix = std::vector<std::vector<CellContent>>;

/// Most items that are taken from one call.
inline constexpr std::size_t kMaxValues = 100000;

/// Number of items in all rows.
[[nodiscard]] std::size_t CountOf(const ValuesMatrix& values);

/// The JSON array "values": rows of texts, numbers, true, false and null (an empty cell). An array without
/// rows is one row, or, where `goesDown` says so, one column. Texts from "=" on are formulas, other texts
/// what the host makes of them. Nothing for anything else and for an empty array. Reading ends behind the row
/// that exceeds `kMaxValues`, and a row that does so alone is cut behind it.
[[nodiscard]] std::optional<ValuesMatrix> ParseValuesMatrix(std::wstring_view json, bool goesDown);

}  // namespace qv
