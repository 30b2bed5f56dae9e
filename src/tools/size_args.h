#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "tools/tool_arguments.h"

namespace qv {

enum class SizeAxis { kColumns, kRows };

/// One change of "excelSetSize": neighbouring columns or rows, 1-based and ordered.
struct SizeChange {
  SizeAxis axis = SizeAxis::kColumns;
  std::int32_t first = 0;
  std::int32_t last = 0;
  /// Characters for columns, points for rows; nothing where they are fitted to what they hold.
  std::optional<double> size;

  friend bool operator==(const SizeChange&, const SizeChange&) = default;
};

/// Most entries of one list, as many as there are cells in the largest block that is read at once.
inline constexpr std::size_t kMaxSizeEntries = 5000;

struct SizeArgs {
  /// Why the tool changes nothing; empty when all that is named can be used.
  std::wstring_view error;
  std::vector<SizeChange> changes;
  /// Fit the used range: fitting was asked for, and nothing is named that it applies to.
  bool fitsUsedColumns = false;
  bool fitsUsedRows = false;
};

/// Columns come from "columns", else "col", else the range; rows from "rows", else "row", else the range. An
/// entry is a number, letters ("C", "B:D") or rows ("2:4"), or an object with "col" or "row", or "range", and
/// a size of its own; others have the size "width" or "height" beside them. Without a size an entry is fitted
/// where "autofit" (a flag, "columns", "rows", or a list of these) says so, and left alone otherwise. An
/// entry that names no columns or rows is an error; an empty list names nothing, and nothing else is fitted
/// for it.
[[nodiscard]] SizeArgs ParseSizeArgs(const ToolArguments& arguments);

}  // namespace qv
