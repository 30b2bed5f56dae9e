#include "tools/duplicate_args.h"

#include <algorithm>
#include <numeric>

#include "foundation/json_parts.h"

namespace qv {
namespace {

constexpr std::wstring_view kBeyondText = L"columns 超出范围列数";
constexpr std::wstring_view kMalformedText = L"columns 参数无效";

std::wstring_view ColumnsValue(const ToolArguments& arguments) {
  const std::wstring_view own = arguments.Value(L"columns");
  return own.empty() || own == L"null" ? arguments.Value(L"compare_columns") : own;
}

std::vector<std::int32_t> AllColumns(std::int32_t count) {
  std::vector<std::int32_t> all(static_cast<std::size_t>(count));
  std::iota(all.begin(), all.end(), 1);
  return all;
}

}  // namespace

CompareColumns ParseCompareColumns(const ToolArguments& arguments, std::int32_t columnCount) {
  const std::wstring_view value = ColumnsValue(arguments);
  if (value.empty() || value == L"null") return {AllColumns(columnCount), {}};
  auto elements = JsonElementsOf(value);
  if (!elements) elements.emplace({value});
  if (elements->empty()) return {AllColumns(columnCount), {}};
  CompareColumns result;
  std::vector<bool> named(static_cast<std::size_t>(columnCount) + 1);
  for (const std::wstring_view element : *elements) {
    const double number = NumberOfValue(element).value_or(0);
    const std::int32_t column = IntegerOfValue(element);
    if (column < 1 || number != column) return {{}, kMalformedText};
    if (column > columnCount) return {{}, kBeyondText};
    if (named[static_cast<std::size_t>(column)]) continue;
    named[static_cast<std::size_t>(column)] = true;
    result.columns.push_back(column);
  }
  return result;
}

bool HasHeader(const ToolArguments& arguments) {
  return FlagOfValue(arguments.Value(L"has_header")).value_or(true);
}

}  // namespace qv
