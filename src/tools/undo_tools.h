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

/// "excelPushUndoMarker": what tools write from here on belongs to one chat message.
[[nodiscard]] std::wstring PushUndoMarker(const ToolContext& context, const std::wstring& json);

/// "excelUndoMessage": puts back what was written since the last marker, newest first. A host that is busy
/// leaves the rest, and the marker, for another call.
[[nodiscard]] std::wstring UndoMessage(const ToolContext& context, const std::wstring& json);

}  // namespace qv
