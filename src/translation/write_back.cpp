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
  // A copy: the host may run a new start of the page before it comes back from a call.
  const std::uint64_t generation = session_.generation;
  const CellUnit unit = session_.units[index];
  const CellWriteResult result = unit.kind == UnitKind::kChartTitle
                                     ? WriteChartTitle(target_, unit, unit.translation)
                                     : WriteCell(index, unit, layout);
  if (session_.generation != generation) return WriteOutcome::kNothing;
  if (result.IsBusy()) {
    lastBusy_ = result;
    return WriteOutcome::kBusy;
  }
  if (!result.Ok()) {
    notice_.OnWriteFailed(unit, result, layout == Layout::kDual);
    return WriteOutcome::kFailed;
  }
  CellUnit& live = session_.units[index];
  live.written = true;
  live.bilingual = layout == Layout::kDual && unit.kind == UnitKind::kCell;
  return WriteOutcome::kWritten;
}

CellWriteResult WriteBack::WriteCell(std::size_t index, const CellUnit& unit, Layout layout) {
  const CellTarget place = finder_.Find(unit.SheetName(), unit.row, unit.col);
  if (place.cell == nullptr) return place.status;
  CaptureBaseline(index, place.cell.Get());
  return layout == Layout::kDual ? BilingualWrite(index, unit, place)
                                 : PutCellText(place, unit.SheetName(), unit.row, unit.col, unit.translation);
}

void WriteBack::CaptureBaseline(std::size_t index, IDispatch* cell) {
  const std::uint64_t generation = session_.generation;
  const CellUnit& unit = session_.units[index];
  if (unit.baseline) return;
  BaselineFont font = CaptureBaselineFont(cell, unit.row, unit.col);
  const std::optional<bool> hasFormula = GetFlagProperty(cell, L"HasFormula");
  std::wstring formula = hasFormula.value_or(false) ? GetStringProperty(cell, L"Formula") : std::wstring();
  if (session_.generation != generation) return;
  // Kept at once: a busy host makes the same unit come again, with a cell that may look different by then.
  CellUnit& live = session_.units[index];
  live.baseline = std::move(font);
  if (!formula.empty()) live.formulaBeforeWrite = std::move(formula);
}

void WriteBack::CaptureWrap(std::size_t index, IDispatch* cell) {
  const std::uint64_t generation = session_.generation;
  if (!session_.units[index].baseline || session_.units[index].baseline->wrap) return;
  const std::optional<bool> wrap = GetFlagProperty(cell, L"WrapText");
  if (session_.generation == generation) session_.units[index].baseline->wrap = wrap;
}

CellWriteResult WriteBack::BilingualWrite(std::size_t index, const CellUnit& unit, const CellTarget& place) {
  const BilingualValue value = MakeBilingualValue(unit.sourceText, unit.translation);
  CaptureWrap(index, place.cell.Get());
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
  if (index < session_.units.size()) {
    notice_.OnWriteGivenUp(session_.units[index], lastBusy_, layout == Layout::kDual);
  }
}

}  // namespace qv
