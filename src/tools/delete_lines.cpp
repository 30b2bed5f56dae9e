#include <algorithm>
#include <utility>
#include <vector>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/line_tools.h"
#include "tools/tool_result.h"
#include "workbook/automation.h"
#include "workbook/cell_block.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

/// The whole rows or columns of a range; null when there are none. `answer` as of `GetDispProperty`.
ComPtr<IDispatch> FindLines(IDispatch* sheet, LineMode mode, const RangeArgs& range, HostAnswer& answer) {
  const ComPtr<IDispatch> cells = GetBlockRange(sheet, GeometryOf(FirstCellsOf(range)), &answer);
  return cells != nullptr ? GetDispProperty(cells.Get(), EntireMember(mode), &answer) : nullptr;
}

HostAnswer Delete(IDispatch* lines) {
  HostAnswer answer;
  answer.hr = InvokeByName(lines, L"Delete", {}, nullptr, &answer.exceptionCode);
  return answer;
}

std::wstring DeleteRange(IDispatch* sheet, LineMode mode, const ToolArguments& arguments) {
  const std::optional<RangeArgs> range = ParseLineRange(arguments, mode);
  if (!range) return ErrorResult(kInvalidRangeText);
  HostAnswer answer;
  const ComPtr<IDispatch> lines = FindLines(sheet, mode, *range, answer);
  if (lines == nullptr) return ErrorResult(answer.IsBusy() ? kHostBusyText : kNoLinesText);
  answer = Delete(lines.Get());
  if (answer.Ok()) return OkResult();
  return ErrorResult(answer.IsBusy() ? kHostBusyText : L"删除失败");
}

/// A host that got busy is asked no further. Whoever comes back later must know what has gone already, as the
/// numbers of what is below have changed.
std::wstring BusyAfter(int applied) {
  if (applied == 0) return ErrorResult(kHostBusyText);
  return ErrorResult(Concat(kHostBusyText, L"（已从最大编号起删除 ", applied, L'）'));
}

std::wstring DeleteIndices(IDispatch* sheet, LineMode mode, std::vector<std::int32_t> indices) {
  // The second time the number would mean the line that has moved up.
  indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
  int applied = 0;
  for (const std::int32_t index : indices) {
    HostAnswer answer;
    const ComPtr<IDispatch> lines = FindLines(sheet, mode, LineAt(mode, index), answer);
    if (lines != nullptr) answer = Delete(lines.Get());
    if (answer.IsBusy()) return BusyAfter(applied);
    if (lines != nullptr && answer.Ok()) ++applied;
  }
  return AppliedResult(applied);
}

}  // namespace

ToolSheet FindLineSheet(const ToolContext& context, const ToolArguments& arguments) {
  if (!arguments.Text(L"sheetName").empty()) return FindToolSheet(context, arguments);
  ToolSheet found;
  found.sheet = context.target.GetTargetActiveSheetDrv();
  if (found.sheet == nullptr) {
    found.error = ErrorResult(kNoSheetText);
  } else {
    found.name = GetStringProperty(found.sheet.Get(), L"Name");
  }
  return found;
}

std::wstring DeleteRowsCols(const ToolContext& context, const std::wstring& json) {
  PaneLog(Concat(L"ExcelDeleteRowsCols enter json=", json, L"\r\n"));
  const ToolArguments arguments(json);
  const std::optional<LineMode> mode = ParseLineMode(arguments);
  if (!mode) return ErrorResult(kBadModeText);
  const ToolSheet sheet = FindLineSheet(context, arguments);
  if (sheet.sheet == nullptr) return sheet.error;
  const DisplayAlertsGuard alertsOff(context.target.Application());
  if (NamesRange(arguments)) return DeleteRange(sheet.sheet.Get(), *mode, arguments);
  LineIndices indices = ParseLineIndices(arguments);
  if (indices.given == 0) return ErrorResult(kNoRangeOrIndicesText);
  if (indices.given > kMaxLineIndices) return ErrorResult(kTooManyIndicesText);
  return DeleteIndices(sheet.sheet.Get(), *mode, std::move(indices.numbers));
}

}  // namespace qv
