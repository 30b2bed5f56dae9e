#include "translation/write_back.h"

#include <utility>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "translation/bilingual_text.h"
#include "translation/cell_style.h"
#include "translation/chart_titles.h"
#include "workbook/automation.h"

namespace qv {

void WriteBack::PrepareLayout(Layout layout) {
  if (layout == Layout::kDual) rows_.NoteFrozenRows();
}

WriteOutcome WriteBack::WriteUnit(std::size_t index, Layout layout) {
  if (index >= session_.units.size() || session_.units[index].translation.empty()) {
    return WriteOutcome::kNothing;
  }
  CellUnit& unit = session_.units[index];
  const CellWriteResult result = unit.kind == UnitKind::kChartTitle
                                     ? WriteChartTitle(target_, unit, unit.translation)
                                     : WriteCell(unit, layout);
  if (result.IsBusy()) {
    lastBusy_ = result;
    return WriteOutcome::kBusy;
  }
  if (!result.Ok()) {
    notice_.OnWriteFailed(unit, result, layout == Layout::kDual);
    return WriteOutcome::kFailed;
  }
  unit.written = true;
  unit.bilingual = layout == Layout::kDual && unit.kind == UnitKind::kCell;
  return WriteOutcome::kWritten;
}

CellWriteResult WriteBack::WriteCell(CellUnit& unit, Layout layout) {
  const CellTarget place = finder_.Find(unit.SheetName(), unit.row, unit.col);
  if (place.cell == nullptr) return place.status;
  CaptureBaseline(unit, place.cell.Get());
  return layout == Layout::kDual ? BilingualWrite(unit, place)
                                 : PutCellText(place, unit.SheetName(), unit.row, unit.col, unit.translation);
}

void WriteBack::CaptureBaseline(CellUnit& unit, IDispatch* cell) {
  // Taken once: a busy host makes the same unit come again, with a cell that may look different by then.
  if (unit.baseline) return;
  BaselineFont font = CaptureBaselineFont(cell, unit.row, unit.col);
  const std::optional<bool> hasFormula = GetFlagProperty(cell, L"HasFormula");
  std::wstring formula = hasFormula.value_or(false) ? GetStringProperty(cell, L"Formula") : std::wstring();
  unit.baseline = std::move(font);
  if (!formula.empty()) unit.formulaBeforeWrite = std::move(formula);
}

void WriteBack::CaptureWrap(CellUnit& unit, IDispatch* cell) {
  if (unit.baseline && !unit.baseline->wrap) unit.baseline->wrap = GetFlagProperty(cell, L"WrapText");
}

CellWriteResult WriteBack::BilingualWrite(CellUnit& unit, const CellTarget& place) {
  const BilingualValue value = MakeBilingualValue(unit.sourceText, unit.translation);
  CaptureWrap(unit, place.cell.Get());
  // A row of automatic height grows with its text, so its height is read before.
  rows_.BeginCell(unit, place.cell.Get());
  const CellWriteResult result = PutCellText(place, unit.SheetName(), unit.row, unit.col, value.text);
  if (!result.Ok()) return result;
  WrapCellText(place.cell.Get());
  PaneLog(Concat(L"BilingualWrite row=", unit.row, L" col=", unit.col, L" originalLen=", value.originalLength,
                 L" trimmedLen=", value.trimmedLength, L" start1Based=", value.start, L" transLen=",
                 value.length, L"\r\n"));
  static_cast<void>(StyleTranslation(place.cell.Get(), value, font_));
  rows_.EndCell(place.cell.Get(), value.text);
  return result;
}

void WriteBack::GiveUp(std::size_t index, Layout layout) {
  if (index >= session_.units.size()) return;
  // A copy: the notice asks the host, and with it a new start may come that replaces the units.
  const CellUnit unit = session_.units[index];
  notice_.OnWriteGivenUp(unit, lastBusy_, layout == Layout::kDual);
}

}  // namespace qv
