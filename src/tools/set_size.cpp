#include <optional>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/format_tools.h"
#include "tools/size_args.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"
#include "workbook/range_reader.h"

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

/// A sheet without content answers one empty cell for its used range; the values of a larger one need not
/// be read.
bool IsEmptySheet(const ComPtr<IDispatch>& used) {
  const std::optional<RangeGeometry> place = ReadGeometry(RangeReader::LateBound(used));
  if (!place || place->Cells() != 1) return false;
  Variant value;
  return SUCCEEDED(GetProperty(used.Get(), L"Value2", value)) && value.Type() == VT_EMPTY;
}

/// Fits the used range; the result text.
std::wstring FitUsed(IDispatch* sheet, const SizeArgs& sizes, int applied) {
  HostAnswer answer;
  const ComPtr<IDispatch> used = GetDispProperty(sheet, L"UsedRange", &answer);
  if (used == nullptr) return ErrorResult(answer.IsBusy() ? kHostBusyText : kUnreadableText);
  if (IsEmptySheet(used)) return ErrorResult(kEmptySheetText);
  if (sizes.fitsUsedColumns && Fit(GetDispProperty(used.Get(), L"EntireColumn").Get())) ++applied;
  if (sizes.fitsUsedRows && Fit(GetDispProperty(used.Get(), L"EntireRow").Get())) ++applied;
  return AppliedResult(applied);
}

}  // namespace

std::wstring SetSize(const ToolContext& context, const std::wstring& json) {
  PaneLog(Concat(L"ExcelSetSize enter json=", json, L"\r\n"));
  const ToolArguments arguments(json);
  const SizeArgs sizes = ParseSizeArgs(arguments);
  if (!sizes.error.empty()) return ErrorResult(sizes.error);
  const ToolSheet sheet = FindToolSheet(context, arguments, kNoActiveSheetText);
  if (sheet.sheet == nullptr) return sheet.error;
  const DisplayAlertsGuard alertsOff(context.target.Application());
  int applied = 0;
  for (const SizeChange& change : sizes.changes) {
    if (Apply(sheet.sheet.Get(), change)) ++applied;
  }
  if (!sizes.fitsUsedColumns && !sizes.fitsUsedRows) return AppliedResult(applied);
  return FitUsed(sheet.sheet.Get(), sizes, applied);
}

}  // namespace qv
