#include "tools/merge_tools.h"

#include <optional>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

constexpr const wchar_t* kMergeCells = L"MergeCells";

std::wstring SetMerged(const ToolContext& context, const std::wstring& json, bool merge) {
  PaneLog(Concat(L"ExcelMergeCells enter merge=", BoolWord(merge), L" json=", json, L"\r\n"));
  const ToolArguments arguments(json);
  const std::optional<RangeArgs> range = ParseRangeArgs(arguments);
  if (!range) return ErrorResult(kBadRangeText);
  const ToolSheet sheet = FindToolSheet(context, arguments);
  if (sheet.sheet == nullptr) return sheet.error;
  HostAnswer answer;
  const ComPtr<IDispatch> cells = FindRange(sheet.sheet.Get(), *range, &answer);
  if (answer.IsBusy()) return ErrorResult(kHostBusyText);
  // A range that is merged in parts only answers null, and is neither.
  if (GetFlagProperty(cells.Get(), kMergeCells) == merge) {
    return merge ? L"{\"ok\":true,\"alreadyMerged\":true}" : L"{\"ok\":true,\"alreadyUnmerged\":true}";
  }
  const DisplayAlertsGuard alertsOff(context.target.Application());
  const Variant wanted(merge);
  if (FAILED(PutDispProperty(cells.Get(), kMergeCells, &wanted))) {
    return ErrorResult(merge ? L"合并失败" : L"解除合并失败");
  }
  return OkResult();
}

}  // namespace

std::wstring MergeCells(const ToolContext& context, const std::wstring& json) {
  return SetMerged(context, json, true);
}

std::wstring UnmergeCells(const ToolContext& context, const std::wstring& json) {
  return SetMerged(context, json, false);
}

}  // namespace qv
