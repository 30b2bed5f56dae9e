#pragma once

#include <string>

#include "tools/tool_context.h"

namespace qv {

// The tools that fill in a sheet that is a form. Host UI thread.

/// "autofillScan": the cells that wait for input, each with what it asks for.
[[nodiscard]] std::wstring AutofillScan(const ToolContext& context, const std::wstring& json);

/// "autofillApply": fills or clears cells, one after the other, and remembers what was there. Until a cell
/// was written the record of the apply before stays.
[[nodiscard]] std::wstring AutofillApply(const ToolContext& context, const std::wstring& json);

/// "autofillUndo": puts back what the last apply changed, newest first. A host that is busy leaves the rest
/// for another call; where another workbook is the target by now, all of it stays.
[[nodiscard]] std::wstring AutofillUndoLast(const ToolContext& context, const std::wstring& json);

}  // namespace qv
