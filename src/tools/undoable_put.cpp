#include "tools/undoable_put.h"

#include <cstdint>
#include <utility>

#include "workbook/automation.h"

namespace qv {
namespace {

/// Whether a put that the host did not take left the cell as it was for sure: the host itself refused it,
/// nothing was lost on the way.
bool ChangedNothing(const CellWriteResult& failure) {
  return failure.IsBusy() || failure.hr == DISP_E_EXCEPTION || failure.hr == DISP_E_UNKNOWNNAME ||
         failure.hr == DISP_E_MEMBERNOTFOUND || failure.hr == DISP_E_TYPEMISMATCH;
}

}  // namespace

bool PutUndoably(UndoLog& undo, const CellTarget& place, UndoRecord record, const CellContent& content,
                 const std::wstring& formerFormat) {
  const std::wstring sheetName = record.sheetName;
  const std::int32_t row = record.row;
  const std::int32_t col = record.col;
  undo.Append(std::move(record));
  bool touched = false;
  const CellWriteResult result = PutCellContent(place, sheetName, row, col, content, &touched);
  if (!touched) {
    if (ChangedNothing(result)) undo.DropNewest(1);
    return false;
  }
  if (formerFormat.empty()) return result.Ok();
  std::wstring format = GetStringProperty(place.cell.Get(), L"NumberFormat");
  if (!format.empty() && format != formerFormat) {
    undo.Newest(1).front().format = UndoFormat{formerFormat, std::move(format)};
  }
  return result.Ok();
}

}  // namespace qv
