#include <algorithm>
#include <vector>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/line_tools.h"
#include "tools/tool_result.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

HRESULT Delete(IDispatch* lines) {
  return InvokeByName(lines, L"Delete", {}, nullptr);
}

std::wstring DeleteRange(IDispatch* sheet, LineMode mode, const ToolArguments& arguments) {
  const std::optional<RangeArgs> range = ParseLineRange(arguments, mode);
  if (!range) return ErrorResult(kInvalidRangeText);
  const ComPtr<IDispatch> lines = GetDispProperty(FindRange(sheet, *range).Get(), EntireMember(mode));
  if (lines == nullptr) return ErrorResult(kNoLinesText);
  return SUCCEEDED(Delete(lines.Get())) ? OkResult() : ErrorResult(L"删除失败");
}

int DeleteIndices(IDispatch* sheet, LineMode mode, std::vector<std::int32_t> indices) {
  // The second time the number would mean the line that has moved up.
  indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
  int applied = 0;
  for (const std::int32_t index : indices) {
    if (SUCCEEDED(Delete(FindRange(sheet, LineAt(mode, index)).Get()))) ++applied;
  }
  return applied;
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
  if (!NamesIndices(arguments)) return ErrorResult(kNoRangeOrIndicesText);
  return AppliedResult(DeleteIndices(sheet.sheet.Get(), *mode, ParseLineIndices(arguments)));
}

}  // namespace qv
