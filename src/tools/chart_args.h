#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "tools/tool_arguments.h"

namespace qv {

/// A kind of chart: its word, and the host's number (XlChartType).
struct ChartKind {
  std::wstring_view word;
  std::int32_t number = 0;
};

/// "type": "column", "line", "pie" or "bar", a column chart where it is missing or empty; nothing for any
/// other word.
[[nodiscard]] std::optional<ChartKind> ParseChartKind(const ToolArguments& arguments);

/// Where a chart goes, in points from the sheet's top left corner.
struct ChartPlace {
  double left = 300;
  double top = 50;
  double width = 400;
  double height = 300;

  friend bool operator==(const ChartPlace&, const ChartPlace&) = default;
};

/// "left", "top", "width" and "height"; what is missing or not above 0 stays the default.
[[nodiscard]] ChartPlace ParseChartPlace(const ToolArguments& arguments);

}  // namespace qv
