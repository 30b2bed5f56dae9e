#include <algorithm>
#include <vector>

#include "foundation/json_text.h"
#include "foundation/text.h"
#include "tools/range_tools.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "workbook/cell_block.h"

namespace qv {
namespace {

constexpr std::wstring_view kNoUsedRangeText = L"无法读取已用区域";
/// Intersections from here on are not counted.
constexpr std::int64_t kTooManyToCount = 5001;

/// Where a range meets the used range; nothing when they do not.
std::optional<RangeGeometry> Intersect(const RangeArgs& range, const RangeGeometry& used) {
  RangeArgs met{used.firstRow, used.firstCol, used.firstRow + (used.rows - 1),
                used.firstCol + (used.cols - 1)};
  if (!range.IsWholeColumns()) {
    met.row1 = std::max(met.row1, range.row1);
    met.row2 = std::min(met.row2, range.row2);
  }
  if (!range.IsWholeRows()) {
    met.col1 = std::max(met.col1, range.col1);
    met.col2 = std::min(met.col2, range.col2);
  }
  if (met.row1 > met.row2 || met.col1 > met.col2) return std::nullopt;
  return GeometryOf(met);
}

std::wstring ContentResult(bool hasContent, std::int64_t count, std::wstring_view sheetName) {
  return Concat(L"{\"hasContent\":", BoolWord(hasContent), L",\"nonEmptyCount\":", count, L",\"sheetName\":",
                JsonQuote(sheetName), L'}');
}

}  // namespace

std::wstring RangeHasContent(const ToolContext& context, const std::wstring& json) {
  const ToolArguments arguments(json);
  const std::optional<RangeArgs> range = ParseRangeArgs(arguments);
  if (!range) return ErrorResult(kBadRangeText);
  const ToolSheet sheet = FindToolSheet(context, arguments);
  if (sheet.sheet == nullptr) return sheet.error;
  const std::optional<RangeGeometry> used =
      ReadGeometry(RangeReader::LateBound(GetDispProperty(sheet.sheet.Get(), L"UsedRange")));
  if (!used) return ErrorResult(kNoUsedRangeText);
  const std::optional<RangeGeometry> met = Intersect(*range, *used);
  if (!met) return ContentResult(false, 0, sheet.name);
  if (met->Cells() >= kTooManyToCount) return ContentResult(true, -1, sheet.name);
  std::vector<Variant> values;
  const HostAnswer answer = ReadBlock(sheet.sheet.Get(), *met, L"Value2", values);
  if (!answer.Ok()) return ErrorResult(answer.IsBusy() ? kHostBusyText : kUnreadableText);
  const auto filled =
      std::ranges::count_if(values, [](const Variant& value) { return !IsEmptyValue(value); });
  return ContentResult(filled > 0, filled, sheet.name);
}

}  // namespace qv
