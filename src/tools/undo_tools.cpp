#include "tools/undo_tools.h"

#include <optional>

#include "foundation/text.h"
#include "workbook/cell_access.h"
#include "workbook/host_state.h"

namespace qv {

std::wstring PushUndoMarker(const ToolContext& context, const std::wstring&) {
  context.undo.PushMarker();
  return Concat(L"{\"ok\":true,\"depth\":", context.undo.Depth(), L'}');
}

std::wstring UndoMessage(const ToolContext& context, const std::wstring&) {
  const DisplayAlertsGuard alertsOff(context.target.Application());
  UndoLog& undo = context.undo;
  int restored = 0;
  bool busy = false;
  while (!busy) {
    std::optional<UndoRecord> record = undo.TakeNewest();
    if (!record) break;
    if (record->row == 0) continue;
    const CellWriteResult result =
        RestoreCellContent(context.target, record->sheetName, record->row, record->col, record->previous);
    if (result.Ok()) ++restored;
    busy = result.IsBusy();
    if (busy) undo.Append(*std::move(record));
  }
  if (!busy) undo.PopMarker();
  return Concat(L"{\"restored\":", restored, L",\"depth\":", undo.Depth(), L'}');
}

}  // namespace qv
