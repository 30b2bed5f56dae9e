#pragma once

#include <oaidl.h>

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/variant.h"
#include "workbook/automation.h"
#include "workbook/cell_content.h"
#include "workbook/range_reader.h"

namespace qv {

// Reading the cells of a rectangle of one sheet. Results stand row by row. Host UI thread.

/// The Range object of a rectangle; null when the host has none. `answer` as of `GetDispProperty`.
[[nodiscard]] ComPtr<IDispatch> GetBlockRange(IDispatch* sheet, const RangeGeometry& block,
                                              HostAnswer* answer = nullptr);

/// A property ("Value2", "Formula") of every cell: in one call, or cell by cell where the host does not give
/// it for several at once. A cell that cannot be read is VT_ERROR with DISP_E_PARAMNOTFOUND; the answer is
/// good when any could. A host that is busy or has no such rectangle is not asked further.
[[nodiscard]] HostAnswer ReadBlock(IDispatch* sheet, const RangeGeometry& block, const wchar_t* property,
                                   std::vector<Variant>& values);

/// What one cell holds.
struct CellReading {
  /// The value as text: texts as they are, numbers as of `NumberText`, "TRUE", "FALSE", "#N/A" and the like.
  std::wstring text;
  /// What the host gives as formula when it begins with "=", which a text may do too; else empty.
  std::wstring formula;
  /// How `text` is meant when there is no formula.
  CellContentKind kind = CellContentKind::kText;
  /// `formula` is nothing but the cell's text.
  bool isText = false;
  bool isReadable = true;

  /// What would put the cell back.
  [[nodiscard]] CellContent Content() const;
};

/// What a cell's "Value2" says; the formula stays empty.
[[nodiscard]] CellReading ReadingOf(const Variant& value);

/// Texts and formulas of every cell in two calls, or as of `ReadBlock`.
[[nodiscard]] HostAnswer ReadCells(IDispatch* sheet, const RangeGeometry& block,
                                   std::vector<CellReading>& cells);

/// Whether a value is nothing: empty, null, or an empty text.
[[nodiscard]] bool IsEmptyValue(const Variant& value);

}  // namespace qv
