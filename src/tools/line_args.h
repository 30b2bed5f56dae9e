#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "tools/range_args.h"
#include "tools/tool_arguments.h"

namespace qv {

/// Whole rows or whole columns: what "mode" of the tools that delete and insert them says.
enum class LineMode { kRows, kColumns };

/// "rows" or "columns"; nothing for anything else.
[[nodiscard]] std::optional<LineMode> ParseLineMode(const ToolArguments& arguments);

/// Whether the arguments mean a range: "range" has a text, good or bad, or "row" and the like give a whole
/// one. Anything less leaves it to "indices".
[[nodiscard]] bool NamesRange(const ToolArguments& arguments);

/// The range whose rows or columns are meant. Nothing where it is no range, and where it has no end in the
/// mode's direction: the rows of whole columns would be the whole sheet.
[[nodiscard]] std::optional<RangeArgs> ParseLineRange(const ToolArguments& arguments, LineMode mode);

/// Most numbers that "indices" may hold: each is a call of the host, which does nothing else meanwhile.
inline constexpr std::size_t kMaxLineIndices = 5000;

/// What "indices" says.
struct LineIndices {
  /// How many elements it has; 0 for no list.
  std::size_t given = 0;
  /// Its whole numbers from 1 on, the highest first, so that each still means what it meant once those before
  /// it have gone or come. Whatever else stands in the list is left out.
  std::vector<std::int32_t> numbers;
};
[[nodiscard]] LineIndices ParseLineIndices(const ToolArguments& arguments);

/// One whole row or column.
[[nodiscard]] RangeArgs LineAt(LineMode mode, std::int32_t index);

/// The first cells of whole rows or columns, which stand for them; any other range as it is.
[[nodiscard]] RangeArgs FirstCellsOf(RangeArgs range);

}  // namespace qv
