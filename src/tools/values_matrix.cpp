#include "tools/values_matrix.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <string>
#include <utility>

#include "foundation/json_parts.h"
#include "tools/tool_arguments.h"

namespace qv {
namespace {

using Elements = std::vector<std::wstring_view>;

bool IsArray(std::wstring_view value) {
  return value.starts_with(L'[');
}

CellContent ContentOfText(std::wstring text) {
  const CellContentKind kind = text.empty()          ? CellContentKind::kText
                               : IsFormulaText(text) ? CellContentKind::kFormula
                                                     : CellContentKind::kTyped;
  return {std::move(text), kind};
}

/// Nothing for an array or object.
std::optional<CellContent> ContentOfItem(std::wstring_view item) {
  if (IsArray(item) || item.starts_with(L'{')) return std::nullopt;
  if (std::optional<std::wstring> text = TextOfValue(item)) return ContentOfText(*std::move(text));
  if (item == L"null") return CellContent{};
  if (item == L"true") return CellContent{L"TRUE", CellContentKind::kFlag};
  if (item == L"false") return CellContent{L"FALSE", CellContentKind::kFlag};
  std::wstring number(item);
  // No cell holds a number beyond a double's range; the host decides about its text.
  const bool isFinite = std::isfinite(NumberOfText(number));
  return CellContent{std::move(number), isFinite ? CellContentKind::kNumber : CellContentKind::kTyped};
}

std::optional<std::vector<CellContent>> ParseRow(const Elements& items) {
  std::vector<CellContent> row;
  const std::size_t count = std::min(items.size(), kMaxValues + 1);
  row.reserve(count);
  for (const std::wstring_view item : std::span(items).first(count)) {
    std::optional<CellContent> content = ContentOfItem(item);
    if (!content) return std::nullopt;
    row.push_back(*std::move(content));
  }
  return row;
}

std::optional<ValuesMatrix> ParseLine(const Elements& items, bool goesDown) {
  std::optional<std::vector<CellContent>> line = ParseRow(items);
  if (!line) return std::nullopt;
  if (!goesDown) return ValuesMatrix{*std::move(line)};
  ValuesMatrix column;
  for (CellContent& content : *line)
    column.push_back({std::move(content)});
  return column;
}

}  // namespace

std::size_t CountOf(const ValuesMatrix& values) {
  std::size_t count = 0;
  for (const auto& row : values)
    count += row.size();
  return count;
}

std::optional<ValuesMatrix> ParseValuesMatrix(std::wstring_view json, bool goesDown) {
  const std::optional<Elements> rows = JsonElementsOf(json);
  if (!rows || rows->empty()) return std::nullopt;
  if (std::ranges::none_of(*rows, IsArray)) return ParseLine(*rows, goesDown);
  ValuesMatrix matrix;
  std::size_t taken = 0;
  for (const std::wstring_view row : *rows) {
    if (taken > kMaxValues) break;
    const std::optional<Elements> items = JsonElementsOf(row);
    std::optional<std::vector<CellContent>> contents = items ? ParseRow(*items) : std::nullopt;
    if (!contents) return std::nullopt;
    taken += contents->size();
    matrix.push_back(*std::move(contents));
  }
  return matrix;
}

}  // namespace qv
