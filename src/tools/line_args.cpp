#include "tools/line_args.h"

#include <algorithm>
#include <functional>

#include "foundation/json_parts.h"
#include "tools/whole_number.h"

namespace qv {

std::optional<LineMode> ParseLineMode(const ToolArguments& arguments) {
  const std::wstring word = arguments.Text(L"mode");
  if (word == L"rows") return LineMode::kRows;
  if (word == L"columns") return LineMode::kColumns;
  return std::nullopt;
}

bool NamesRange(const ToolArguments& arguments) {
  if (const auto text = TextOfValue(arguments.Value(L"range")); text && !text->empty()) return true;
  const bool namesCells = !arguments.Value(L"row").empty() || !arguments.Value(L"row1").empty();
  return namesCells && ParseRangeArgs(arguments).has_value();
}

std::optional<RangeArgs> ParseLineRange(const ToolArguments& arguments, LineMode mode) {
  const std::optional<RangeArgs> range = ParseRangeArgs(arguments);
  if (!range) return std::nullopt;
  const bool endless = mode == LineMode::kRows ? range->IsWholeColumns() : range->IsWholeRows();
  return endless ? std::nullopt : range;
}

LineIndices ParseLineIndices(const ToolArguments& arguments) {
  const auto elements = JsonElementsOf(arguments.Value(L"indices"));
  if (!elements) return {};
  LineIndices indices{elements->size(), {}};
  for (const std::wstring_view element : *elements) {
    if (const auto number = WholeNumberOfValue(element); number && *number >= 1) {
      indices.numbers.push_back(*number);
    }
  }
  std::ranges::sort(indices.numbers, std::greater());
  return indices;
}

RangeArgs LineAt(LineMode mode, std::int32_t index) {
  return mode == LineMode::kRows ? RangeArgs{index, -1, index, -1} : RangeArgs{-1, index, -1, index};
}

RangeArgs FirstCellsOf(RangeArgs range) {
  if (range.IsWholeRows()) range.col1 = range.col2 = 1;
  if (range.IsWholeColumns()) range.row1 = range.row2 = 1;
  return range;
}

}  // namespace qv
