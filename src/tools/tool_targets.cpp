#include "tools/tool_targets.h"

#include <algorithm>
#include <optional>

#include "foundation/text.h"
#include "tools/tool_result.h"
#include "workbook/automation.h"
#include "workbook/cell_access.h"
#include "workbook/cell_block.h"
#include "workbook/workbook_busy_table.h"

namespace qv {

namespace {

/// The name that "sheetName" gives, a number's text counting as one; empty for the active sheet, nothing for
/// what no sheet is called.
std::optional<std::wstring> SheetNameOf(const ToolArguments& arguments) {
  const std::wstring_view value = arguments.Value(L"sheetName");
  if (value.empty() || value.starts_with(L'"')) return arguments.Text(L"sheetName");
  return NumberOfValue(value) ? std::optional(std::wstring(value)) : std::nullopt;
}

}  // namespace

void RefreshTarget(TargetContext& target) {
  if (!target.IsPinnedOnPurpose() || WorkbookBusyTable::IsClaimed(target.WorkbookKey())) return;
  static_cast<void>(target.RefreshPin());
}

ToolSheet FindToolSheet(const ToolContext& context, const ToolArguments& arguments,
                        std::wstring_view missing) {
  ToolSheet found;
  const std::optional<std::wstring> name = SheetNameOf(arguments);
  if (!name) {
    found.error = ErrorResult(kUnknownSheetText);
    return found;
  }
  CellWriteResult status;
  found.sheet = ResolveSheet(context.target, *name, status);
  if (found.sheet != nullptr) {
    found.name = GetStringProperty(found.sheet.Get(), L"Name");
  } else if (status.IsBusy()) {
    found.error = ErrorResult(kHostBusyText);
  } else {
    found.error = ErrorResult(name->empty() ? missing : kUnknownSheetText);
  }
  return found;
}

RangeGeometry GeometryOf(const RangeArgs& block) {
  return {block.row2 - block.row1 + 1, block.col2 - block.col1 + 1, block.row1, block.col1};
}

std::optional<RangeGeometry> ReadUsedRange(IDispatch* sheet, HostAnswer* answer) {
  HostAnswer own;
  const RangeReader used = RangeReader::LateBound(GetDispProperty(sheet, L"UsedRange", &own));
  std::optional<RangeGeometry> place = ReadGeometry(used);
  // A host that answers for the range but not for its place is asked why.
  Variant row;
  if (!place && own.Ok()) own.hr = used.Get(kRangeRow, row, &own.exceptionCode);
  if (answer != nullptr) *answer = own;
  return place;
}

std::optional<RangeGeometry> Intersect(const RangeArgs& range, const RangeGeometry& used) {
  RangeArgs met{used.firstRow, used.firstCol, used.firstRow + (used.rows - 1),
                used.firstCol + (used.cols - 1)};
  if (!range.IsWholeColumns()) {
    met.row1 = std::max(met.row1, range.row1);
    met.row2 = std::min(met.row2, range.row2);
  }
  if (!range.IsWholeRows()) {
    met.col1 = std::max(met.col1, range.col1);
    met.col2 = std::min(met.col2, range.col2);
  }
  if (met.row1 > met.row2 || met.col1 > met.col2) return std::nullopt;
  return GeometryOf(met);
}

ComPtr<IDispatch> FindRange(IDispatch* sheet, const RangeArgs& range, HostAnswer* answer) {
  // A block in the first column or row stands for whole rows and columns.
  RangeArgs block = range;
  if (range.IsWholeRows()) block.col1 = block.col2 = 1;
  if (range.IsWholeColumns()) block.row1 = block.row2 = 1;
  ComPtr<IDispatch> cells = GetBlockRange(sheet, GeometryOf(block), answer);
  if (range.IsBlock() || cells == nullptr) return cells;
  return GetDispProperty(cells.Get(), range.IsWholeRows() ? L"EntireRow" : L"EntireColumn", answer);
}

}  // namespace qv
