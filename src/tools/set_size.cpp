#include <array>
#include <optional>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/format_tools.h"
#include "tools/size_args.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

constexpr std::wstring_view kNoActiveSheetText = L"没有活动工作表";
constexpr std::wstring_view kEmptySheetText = L"工作表为空";

bool Fit(IDispatch* lines) {
  return SUCCEEDED(InvokeByName(lines, L"AutoFit", {}, nullptr));
}

bool Apply(IDispatch* sheet, const SizeChange& change) {
  const bool isColumns = change.axis == SizeAxis::kColumns;
  const RangeArgs lines =
      isColumns ? RangeArgs{-1, change.first, -1, change.last} : RangeArgs{change.first, -1, change.last, -1};
  const ComPtr<IDispatch> range = FindRange(sheet, lines);
  if (!change.size) return Fit(range.Get());
  const Variant size(*change.size);
  return SUCCEEDED(PutDispProperty(range.Get(), isColumns ? L"ColumnWidth" : L"RowHeight", &size));
}

/// A sheet without content answers one empty cell for its used range.
bool IsEmptySheet(IDispatch* used) {
  Variant value;
  return used == nullptr || (SUCCEEDED(GetProperty(used, L"Value2", value)) && value.Type() == VT_EMPTY);
}

}  // namespace

std::wstring SetSize(const ToolContext& context, const std::wstring& json) {
  PaneLog(Concat(L"ExcelSetSize enter json=", json, L"\r\n"));
  const ToolArguments arguments(json);
  const ToolSheet sheet = FindToolSheet(context, arguments, kNoActiveSheetText);
  if (sheet.sheet == nullptr) return sheet.error;
  const DisplayAlertsGuard alertsOff(context.target.Application());
  const SizeArgs sizes = ParseSizeArgs(arguments);
  int applied = 0;
  for (const SizeChange& change : sizes.changes) {
    if (Apply(sheet.sheet.Get(), change)) ++applied;
  }
  if (!sizes.fitsUsedColumns && !sizes.fitsUsedRows) return AppliedResult(applied);
  const ComPtr<IDispatch> used = GetDispProperty(sheet.sheet.Get(), L"UsedRange");
  if (IsEmptySheet(used.Get())) return ErrorResult(kEmptySheetText);
  if (sizes.fitsUsedColumns && Fit(GetDispProperty(used.Get(), L"EntireColumn").Get())) ++applied;
  if (sizes.fitsUsedRows && Fit(GetDispProperty(used.Get(), L"EntireRow").Get())) ++applied;
  return AppliedResult(applied);
}

}  // namespace qv
