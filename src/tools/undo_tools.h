#pragma once

#include <oaidl.h>

#include <string>

#include "tools/tool_context.h"
#include "workbook/automation.h"

namespace qv {

/// The workbook of a sheet of the target. `answer` receives a busy answer of any of the calls; the
/// workbook is not known then.
[[nodiscard]] UndoBook BookOfSheet(const TargetContext& target, IDispatch* sheet, HostAnswer& answer);
[[nodiscard]] inline UndoBook BookOfSheet(const ToolContext& context, IDispatch* sheet, HostAnswer& answer) {
  return BookOfSheet(context.target, sheet, answer);
}

/// Whether the target is known to be another workbook than that of the log's newest record. Nothing is taken
/// off the log.
[[nodiscard]] bool IsForOtherBook(const ToolContext& context, UndoLog& undo);

/// Puts back what was written since a log's last marker, newest first, and takes the marker off; the number
/// of cells. A host that is busy leaves the rest, and the marker, for another call. Without a marker there is
/// nothing to do.
[[nodiscard]] int RestoreToMarker(const ToolContext& context, UndoLog& undo);

/// "excelPushUndoMarker": what tools write from here on belongs to one chat message.
[[nodiscard]] std::wstring PushUndoMarker(const ToolContext& context, const std::wstring& json);

/// "excelUndoMessage": puts back what was written since the last marker.
[[nodiscard]] std::wstring UndoMessage(const ToolContext& context, const std::wstring& json);

}  // namespace qv
