#pragma once

#include <oaidl.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/variant.h"
#include "workbook/automation.h"
#include "workbook/cell_content.h"
#include "workbook/target_context.h"

namespace qv {

// Reading and writing single cells, and what may keep a write out. Rows and columns are 1-based. Host UI
// thread.

/// The cell object, or null (logged). `answer` as of `GetDispProperty`.
[[nodiscard]] ComPtr<IDispatch> GetCellDispatch(IDispatch* sheet, std::int32_t row, std::int32_t col,
                                                HostAnswer* answer = nullptr);

/// A worksheet by name or 1-based number through the collection's "Item"; null (logged) when there is none.
/// `answer` as of `GetDispProperty`.
[[nodiscard]] ComPtr<IDispatch> TryGetWorksheetItemDispatch(IDispatch* sheets, const Variant& key,
                                                            HostAnswer* answer = nullptr);

/// How a cell was found or written.
using CellWriteResult = HostAnswer;

/// The sheet with that name in the target's workbook, or the active sheet for an empty name; null when
/// missing. `status` receives how the host refused it.
[[nodiscard]] ComPtr<IDispatch> ResolveSheet(const TargetContext& target, std::wstring_view sheetName);
[[nodiscard]] ComPtr<IDispatch> ResolveSheet(const TargetContext& target, std::wstring_view sheetName,
                                             CellWriteResult& status);

/// A cell and its sheet, or how the host refused them.
struct CellTarget {
  ComPtr<IDispatch> sheet;
  /// Null unless `status` is good.
  ComPtr<IDispatch> cell;
  CellWriteResult status;
};

/// The cell of the named sheet (the active one for an empty name); a failure is logged.
[[nodiscard]] CellTarget FindCell(const TargetContext& target, std::wstring_view sheetName, std::int32_t row,
                                  std::int32_t col);

/// The line with which each write of a text begins, before the cell is looked for.
void LogCellPut(std::wstring_view sheetName, std::int32_t row, std::int32_t col, std::wstring_view text);

/// The formula of a cell that holds one, else empty; good unless the host refused.
[[nodiscard]] HostAnswer ReadFormula(IDispatch* cell, std::wstring& formula);

/// Writes a text into a cell already found, through "Value2", else "Value"; gives the status of a cell that
/// was not found. The text is text: what the host would read as a formula, a number, a date or a boolean is
/// written with a leading apostrophe, and the cell keeps its number format. `sheetName`, `row` and `col` are
/// for the log, which the caller has begun with `LogCellPut`. The caller holds the host's alerts off.
[[nodiscard]] CellWriteResult PutCellText(const CellTarget& target, std::wstring_view sheetName,
                                          std::int32_t row, std::int32_t col, std::wstring_view text);

/// `LogCellPut`, and the same for content of any kind: formulas through "Formula", the rest through "Value2",
/// else "Value". `touched` (may be null) receives whether the host took any put: a text that it misread is
/// put twice, and the look between the two may fail.
[[nodiscard]] CellWriteResult PutCellContent(const CellTarget& target, std::wstring_view sheetName,
                                             std::int32_t row, std::int32_t col, const CellContent& content,
                                             bool* touched = nullptr);

/// `LogCellPut`, `FindCell` and `PutCellText` with the host's alerts off.
[[nodiscard]] CellWriteResult PutCellValueDispatch(const TargetContext& target, std::wstring_view sheetName,
                                                   std::int32_t row, std::int32_t col,
                                                   std::wstring_view text);

/// Puts former content back into a cell already found, through the same members; gives the status of a cell
/// that was not found. A failure is logged. The caller holds the host's alerts off.
[[nodiscard]] CellWriteResult RestoreCellContent(const CellTarget& target, std::wstring_view sheetName,
                                                 std::int32_t row, std::int32_t col,
                                                 const CellContent& content);

/// "ProtectContents", else "Protected"; false when neither can be read. `answer` (may be null) receives how
/// the host answered; one that is busy is not asked twice.
[[nodiscard]] bool IsSheetProtected(IDispatch* sheet, HostAnswer* answer = nullptr);

/// Whether the active workbook is read-only; false when it cannot be read.
[[nodiscard]] bool IsWorkbookReadOnly(IDispatch* application);

/// Whether the cell is locked (logged); false when it cannot be read.
[[nodiscard]] bool IsCellLocked(IDispatch* sheet, std::int32_t row, std::int32_t col);

/// The same for a cell already found; the place is for the log.
[[nodiscard]] bool IsCellLocked(IDispatch* cell, std::wstring_view sheetName, std::int32_t row,
                                std::int32_t col);

}  // namespace qv
