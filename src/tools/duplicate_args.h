#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "tools/tool_arguments.h"

namespace qv {

/// The columns that rows are compared in, 1-based within the range, each once; or why there are none.
struct CompareColumns {
  std::vector<std::int32_t> columns;
  /// The error's text; empty when the columns are good.
  std::wstring_view error;
};

/// "columns", else "compare_columns", of a range of that many columns: a list of numbers, or one number.
/// Without any, all columns.
[[nodiscard]] CompareColumns ParseCompareColumns(const ToolArguments& arguments, std::int32_t columnCount);

/// "has_header", true where it is missing.
[[nodiscard]] bool HasHeader(const ToolArguments& arguments);

}  // namespace qv
