#include "translation/write_back.h"

#include <utility>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "translation/bilingual_text.h"
#include "translation/cell_style.h"
#include "translation/chart_titles.h"
#include "workbook/automation.h"

namespace qv {
namespace {

/// What a restore needs of a cell; taken before its first write.
void CaptureBaseline(CellUnit& unit, IDispatch* cell) {
  if (unit.baseline) return;
  unit.baseline = CaptureBaselineFont(cell, unit.row, unit.col);
  Variant hasFormula;
  if (FAILED(GetProperty(cell, L"HasFormula", hasFormula)) || !hasFormula.IsTrue()) return;
  unit.formulaBeforeWrite = GetStringProperty(cell, L"Formula");
}

}  // namespace

void WriteBack::PrepareLayout(Layout layout) {
  if (layout == Layout::kDual) rows_.NoteFrozenRows();
}

IDispatch* WriteBack::SheetOf(const CellUnit& unit) {
  if (sheet_ == nullptr || sheetName_ != unit.sheetName) {
    sheet_ = ResolveSheet(target_, unit.sheetName);
    sheetName_ = unit.sheetName;
  }
  return sheet_.Get();
}

WriteOutcome WriteBack::WriteUnit(std::size_t index, Layout layout) {
  if (index >= session_.units.size() || session_.units[index].translation.empty()) {
    return WriteOutcome::kNothing;
  }
  // A copy: the host may run a new start of the page before it comes back from a call.
  const std::uint64_t generation = session_.generation;
  CellUnit unit = session_.units[index];
  const CellWriteResult result = unit.kind == UnitKind::kChartTitle
                                     ? WriteChartTitle(target_, unit, unit.translation)
                                     : WriteCell(unit, layout);
  if (result.IsBusy()) {
    lastBusy_ = result;
    return WriteOutcome::kBusy;
  }
  if (!result.Ok()) {
    notice_.OnWriteFailed(unit, SheetOf(unit), result, layout == Layout::kDual);
    return WriteOutcome::kFailed;
  }
  unit.written = true;
  if (session_.generation == generation) session_.units[index] = std::move(unit);
  return WriteOutcome::kWritten;
}

CellWriteResult WriteBack::WriteCell(CellUnit& unit, Layout layout) {
  const ComPtr<IDispatch> cell = GetCellDispatch(SheetOf(unit), unit.row, unit.col);
  if (cell != nullptr) CaptureBaseline(unit, cell.Get());
  return layout == Layout::kDual
             ? BilingualWrite(unit, cell.Get())
             : PutCellValueDispatch(target_, unit.sheetName, unit.row, unit.col, unit.translation);
}

CellWriteResult WriteBack::BilingualWrite(const CellUnit& unit, IDispatch* cell) {
  const BilingualValue value = MakeBilingualValue(unit.sourceText, unit.translation);
  CellWriteResult result = PutCellValueDispatch(target_, unit.sheetName, unit.row, unit.col, value.text);
  if (!result.Ok() || cell == nullptr) return result;
  WrapCellText(cell);
  PaneLog(Concat(L"BilingualWrite row=", unit.row, L" col=", unit.col, L" originalLen=", value.originalLength,
                 L" trimmedLen=", value.trimmedLength, L" start1Based=", value.start, L" transLen=",
                 value.length, L"\r\n"));
  StyleTranslation(cell, value, font_);
  rows_.Fit(unit, cell, value.text);
  return result;
}

void WriteBack::GiveUp(std::size_t index) {
  if (index < session_.units.size()) notice_.OnWriteGivenUp(session_.units[index], lastBusy_);
}

void WriteBack::ReleaseReferences() {
  sheet_ = nullptr;
  sheetName_.clear();
}

}  // namespace qv
