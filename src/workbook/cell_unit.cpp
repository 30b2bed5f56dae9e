#include "workbook/cell_unit.h"

#include "foundation/text.h"
#include "workbook/cell_text.h"

namespace qv {

std::wstring CellUnit::UnitId() const {
  return kind == UnitKind::kChartTitle ? Concat(L"ChartTitle:", chart) : UnitIdOf(row, col);
}

const std::wstring& CellUnit::SheetName() const {
  static const std::wstring kNone;
  return sheet ? sheet->SheetName() : kNone;
}

}  // namespace qv
