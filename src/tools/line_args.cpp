#include "tools/line_args.h"

#include <algorithm>
#include <functional>

#include "foundation/json_parts.h"

namespace qv {

namespace {

std::vector<std::wstring_view> Indices(const ToolArguments& arguments) {
  return JsonElementsOf(arguments.Value(L"indices")).value_or(std::vector<std::wstring_view>());
}

}  // namespace

std::optional<LineMode> ParseLineMode(const ToolArguments& arguments) {
  const std::wstring word = arguments.Text(L"mode");
  if (word == L"rows") return LineMode::kRows;
  if (word == L"columns") return LineMode::kColumns;
  return std::nullopt;
}

bool NamesRange(const ToolArguments& arguments) {
  constexpr std::wstring_view kNames[] = {L"range", L"row", L"row1"};
  return std::ranges::any_of(kNames, [&](std::wstring_view name) {
    const std::wstring_view value = arguments.Value(name);
    return !value.empty() && value != L"\"\"" && value != L"null";
  });
}

std::optional<RangeArgs> ParseLineRange(const ToolArguments& arguments, LineMode mode) {
  const std::optional<RangeArgs> range = ParseRangeArgs(arguments);
  if (!range) return std::nullopt;
  const bool endless = mode == LineMode::kRows ? range->IsWholeColumns() : range->IsWholeRows();
  return endless ? std::nullopt : range;
}

bool NamesIndices(const ToolArguments& arguments) {
  return !Indices(arguments).empty();
}

std::vector<std::int32_t> ParseLineIndices(const ToolArguments& arguments) {
  std::vector<std::int32_t> indices;
  for (const std::wstring_view element : Indices(arguments)) {
    if (const std::int32_t index = IntegerOfValue(element); index >= 1) indices.push_back(index);
  }
  std::ranges::sort(indices, std::greater());
  return indices;
}

RangeArgs LineAt(LineMode mode, std::int32_t index) {
  return mode == LineMode::kRows ? RangeArgs{index, -1, index, -1} : RangeArgs{-1, index, -1, index};
}

}  // namespace qv
