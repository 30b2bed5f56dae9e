#include "foundation/json_text.h"
#include "foundation/text.h"
#include "tools/range_tools.h"
#include "tools/tool_result.h"
#include "workbook/automation.h"

namespace qv {

std::wstring GetWriteContext(const ToolContext& context, const std::wstring&) {
  const TargetContext& target = context.target;
  HostAnswer answer;
  const ComPtr<IDispatch> sheet = target.GetActiveSheetDispatch(&answer);
  if (sheet == nullptr) return ErrorResult(answer.IsBusy() ? kHostBusyText : kNoSheetText);
  const ComPtr<IDispatch> selection = target.GetTargetSelectionDrv(&answer);
  if (answer.IsBusy()) return ErrorResult(kHostBusyText);
  return Concat(L"{\"workbookKey\":", JsonQuote(target.WorkbookKey()), L",\"sheetName\":",
                JsonQuote(GetStringProperty(sheet.Get(), L"Name")), L",\"row\":",
                GetIntProperty(selection.Get(), L"Row"), L",\"col\":",
                GetIntProperty(selection.Get(), L"Column"), L",\"rangeAddress\":",
                JsonQuote(GetStringProperty(selection.Get(), L"Address")), L'}');
}

}  // namespace qv
