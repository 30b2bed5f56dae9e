#pragma once

#include <oaidl.h>

#include <optional>
#include <string>

#include "foundation/variant.h"
#include "tools/range_args.h"
#include "tools/tool_arguments.h"
#include "tools/tool_context.h"
#include "workbook/range_reader.h"

namespace qv {

// From arguments to the host's objects. Host UI thread.

/// Ahead of each tool: the workbook of a window that the pane is bound to may have changed since the last
/// one. A run keeps the workbook that it began with.
void RefreshTarget(TargetContext& target);

/// A worksheet, or the result text that says why there is none.
struct ToolSheet {
  ComPtr<IDispatch> sheet;
  std::wstring name;
  std::wstring error;
};

/// The sheet that "sheetName" names in the target's workbook; absent, null or empty, the active sheet.
/// `missing` is the text for no active sheet.
[[nodiscard]] ToolSheet FindToolSheet(const ToolContext& context, const ToolArguments& arguments,
                                      std::wstring_view missing = L"未连接到工作表");

/// Place and size of a block.
[[nodiscard]] RangeGeometry GeometryOf(const RangeArgs& block);

/// Place and size of the sheet's used range; nothing when it cannot be read. `answer` (may be null) receives
/// how the host answered.
[[nodiscard]] std::optional<RangeGeometry> ReadUsedRange(IDispatch* sheet, HostAnswer* answer = nullptr);

/// Where a range meets the used range; nothing when they do not.
[[nodiscard]] std::optional<RangeGeometry> Intersect(const RangeArgs& range, const RangeGeometry& used);

/// The Range object of a block, of whole rows or of whole columns; null when the sheet has no such cells.
/// `answer` as of `GetDispProperty`.
[[nodiscard]] ComPtr<IDispatch> FindRange(IDispatch* sheet, const RangeArgs& range,
                                          HostAnswer* answer = nullptr);

}  // namespace qv
