#pragma once

#include <string>

#include "tools/tool_context.h"

namespace qv {

/// "excelPushUndoMarker": what tools write from here on belongs to one chat message.
[[nodiscard]] std::wstring PushUndoMarker(const ToolContext& context, const std::wstring& json);

/// "excelUndoMessage": puts back what was written since the last marker, newest first. A host that is busy
/// leaves the rest, and the marker, for another call.
[[nodiscard]] std::wstring UndoMessage(const ToolContext& context, const std::wstring& json);

}  // namespace qv
