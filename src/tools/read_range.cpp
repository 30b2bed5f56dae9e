#include <vector>

#include "foundation/json_text.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/range_tools.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "workbook/cell_block.h"

namespace qv {
namespace {

constexpr std::wstring_view kNoWholeText = L"暂不支持整行/列读取";
constexpr std::wstring_view kTooLargeText = L"读取范围过大（>5000 单元格），请缩小";

std::wstring CellsResult(const RangeArgs& range, const std::vector<CellReading>& cells) {
  std::wstring out = L"{\"cells\":[";
  auto cell = cells.begin();
  for (std::int32_t row = range.row1; row <= range.row2; ++row) {
    for (std::int32_t col = range.col1; col <= range.col2; ++col, ++cell) {
      if (cell != cells.begin()) out += L',';
      out += Concat(L"{\"row\":", row, L",\"col\":", col, L",\"value\":", JsonQuote(cell->text));
      if (!cell->formula.empty()) out += Concat(L",\"formula\":", JsonQuote(cell->formula));
      out += L'}';
    }
  }
  return out += L"]}";
}

}  // namespace

std::wstring ReadRange(const ToolContext& context, const std::wstring& json) {
  PaneLog(Concat(L"ExcelReadRange enter json=", json, L"\r\n"));
  const ToolArguments arguments(json);
  const std::optional<RangeArgs> range = ParseRangeArgs(arguments);
  if (!range) return ErrorResult(kBadRangeText);
  if (!range->IsBlock()) return ErrorResult(kNoWholeText);
  if (range->Cells() > kMaxToolCells) return ErrorResult(kTooLargeText);
  const ToolSheet sheet = FindToolSheet(context, arguments);
  if (sheet.sheet == nullptr) return sheet.error;
  std::vector<CellReading> cells;
  const HostAnswer answer = ReadCells(sheet.sheet.Get(), GeometryOf(*range), cells);
  if (!answer.Ok()) return ErrorResult(answer.IsBusy() ? kHostBusyText : kUnreadableText);
  return CellsResult(*range, cells);
}

}  // namespace qv
