#include "tools/tool_table.h"

#include "tools/autofill_tools.h"
#include "tools/calculation_tools.h"
#include "tools/chart_tool.h"
#include "tools/format_tools.h"
#include "tools/line_tools.h"
#include "tools/merge_tools.h"
#include "tools/range_tools.h"
#include "tools/remove_duplicates.h"
#include "tools/screenshot_tool.h"
#include "tools/sheet_tools.h"
#include "tools/tool_result.h"
#include "tools/undo_tools.h"

namespace qv {
namespace {

constexpr WorkbookTool kTools[] = {
    {L"autofillScan", &AutofillScan},
    {L"autofillApply", &AutofillApply},
    {L"autofillUndo", &AutofillUndoLast},
    {L"excelReadRange", &ReadRange},
    {L"excelWriteRange", &WriteRange},
    {L"excelFormatRange", &FormatRange},
    {L"excelSetSize", &SetSize},
    {L"excelMergeCells", &MergeCells},
    {L"excelUnmergeCells", &UnmergeCells},
    {L"excelListSheets", &ListSheets},
    {L"excelSetActiveSheet", &SetActiveSheet},
    {L"excelAddSheet", &AddSheet},
    {L"excelDeleteSheet", &DeleteSheet},
    {L"excelRenameSheet", &RenameSheet},
    {L"excelDeleteRowsCols", &DeleteRowsCols},
    {L"excelInsertRowsCols", &InsertRowsCols},
    {L"excelRemoveDuplicates", &RemoveDuplicates},
    {L"excelPushUndoMarker", &PushUndoMarker},
    {L"excelUndoMessage", &UndoMessage},
    {L"excelCalcSetMode", &CalcSetMode},
    {L"excelCalculateNow", &CalculateNow},
    {L"excelCalcGetMode", &CalcGetMode},
    {L"excelChartCreate", &ChartCreate},
    {L"excelScreenshotRange", &ScreenshotRange},
    {L"excelGetWriteContext", &GetWriteContext},
    {L"excelRangeHasContent", &RangeHasContent},
};

}  // namespace

std::span<const WorkbookTool> WorkbookToolTable() {
  return kTools;
}

std::wstring RunWorkbookTool(const ToolContext& context, std::wstring_view action, const std::wstring& json) {
  if (context.target.Application() == nullptr) return ErrorResult(kNotConnectedText);
  for (const WorkbookTool& tool : kTools) {
    if (tool.action == action) return tool.run(context, json);
  }
  return ErrorResult(kUnknownActionText);
}

}  // namespace qv
