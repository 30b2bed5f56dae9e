#pragma once

#include <oaidl.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/variant.h"
#include "workbook/target_context.h"

namespace qv {

// Reading and writing single cells, and what may keep a write out. Rows and columns are 1-based. Host UI
// thread.

/// The cell object, or null (logged).
[[nodiscard]] ComPtr<IDispatch> GetCellDispatch(IDispatch* sheet, std::int32_t row, std::int32_t col);

/// A worksheet by name or 1-based number through the collection's "Item"; null (logged) when there is none.
[[nodiscard]] ComPtr<IDispatch> TryGetWorksheetItemDispatch(IDispatch* sheets, const Variant& key);

/// The sheet with that name in the target's workbook, or the active sheet for an empty name; null when
/// missing.
[[nodiscard]] ComPtr<IDispatch> ResolveSheet(const TargetContext& target, std::wstring_view sheetName);

/// Outcome of writing one cell.
struct CellWriteResult {
  HRESULT hr = S_OK;
  /// EXCEPINFO's code when hr is DISP_E_EXCEPTION, else 0.
  SCODE exceptionCode = 0;

  [[nodiscard]] bool Ok() const { return SUCCEEDED(hr); }
  /// The host cannot take the write now, but may later.
  [[nodiscard]] bool IsBusy() const;
};

/// Writes a text into a cell of the named sheet (the active one for an empty name) through "Value2", else
/// "Value", with the host's alerts off. The text is text: what the host would read as a formula is written
/// with a leading apostrophe.
[[nodiscard]] CellWriteResult PutCellValueDispatch(const TargetContext& target, std::wstring_view sheetName,
                                                   std::int32_t row, std::int32_t col,
                                                   std::wstring_view text);

/// "ProtectContents", else "Protected"; false when neither can be read.
[[nodiscard]] bool IsSheetProtected(IDispatch* sheet);

/// Whether the active workbook is read-only; false when it cannot be read.
[[nodiscard]] bool IsWorkbookReadOnly(IDispatch* application);

/// Whether the cell is locked (logged); false when it cannot be read.
[[nodiscard]] bool IsCellLocked(IDispatch* sheet, std::int32_t row, std::int32_t col);

}  // namespace qv
