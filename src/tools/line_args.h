#pragma once

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

/// Whether the arguments name a range at all, well or badly.
[[nodiscard]] bool NamesRange(const ToolArguments& arguments);

/// The range whose rows or columns are meant. Nothing where it is no range, and where it has no end in the
/// mode's direction: the rows of whole columns would be the whole sheet.
[[nodiscard]] std::optional<RangeArgs> ParseLineRange(const ToolArguments& arguments, LineMode mode);

/// Whether "indices" is a list with anything in it.
[[nodiscard]] bool NamesIndices(const ToolArguments& arguments);

/// The numbers of "indices" from 1 on, the highest first, so that each still means what it meant once those
/// before it have gone or come. Numbers below 1 and what is no number are left out.
[[nodiscard]] std::vector<std::int32_t> ParseLineIndices(const ToolArguments& arguments);

/// One whole row or column.
[[nodiscard]] RangeArgs LineAt(LineMode mode, std::int32_t index);

}  // namespace qv
