#pragma once

#include <string>

#include "tools/tool_context.h"

namespace qv {

// The tools that read and write blocks of cells. Host UI thread.

/// "excelReadRange": values as text and formulas of every cell.
[[nodiscard]] std::wstring ReadRange(const ToolContext& context, const std::wstring& json);

/// "excelWriteRange": puts rows of values into a block, cell by cell, and remembers what was there.
[[nodiscard]] std::wstring WriteRange(const ToolContext& context, const std::wstring& json);

/// "excelRangeHasContent": how many cells of a range hold something; large ranges are taken to.
[[nodiscard]] std::wstring RangeHasContent(const ToolContext& context, const std::wstring& json);

/// "excelGetWriteContext": workbook, sheet and selection where the user is.
[[nodiscard]] std::wstring GetWriteContext(const ToolContext& context, const std::wstring& json);

}  // namespace qv
