#include "translation/restore_pass.h"

#include <utility>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "translation/cell_style.h"
#include "translation/chart_titles.h"
#include "workbook/automation.h"

namespace qv {
namespace {

constexpr const wchar_t* kRowHeight = L"RowHeight";

/// Good when the unit's cell may be put back unasked.
CellWriteResult CheckCell(IDispatch* cell, const CellUnit& unit) {
  Variant live;
  CellWriteResult read;
  read.hr = GetProperty(cell, L"Value2", live, &read.exceptionCode);
  if (!read.Ok()) return read;
  if (!IsOurText(unit, live.Text())) return {E_FAIL, 0};
  std::wstring formula;
  const CellWriteResult asked = ReadFormula(cell, formula);
  if (asked.IsBusy()) return asked;
  return IsOurFormula(unit, formula) ? CellWriteResult() : CellWriteResult{E_FAIL, 0};
}

}  // namespace

RestorePass::RestorePass(const TargetContext& target, TranslationSession& session,
                         std::vector<std::size_t> units, RestoreRule rule, bool wholeSession)
    : UnitPass(session, {units.rbegin(), units.rend()}),
      target_(target),
      finder_(target),
      rule_(rule),
      wholeSession_(wholeSession) {}

WriteOutcome RestorePass::Change(std::size_t index) {
  CellUnit& unit = Session().units[index];
  if (!unit.written) return WriteOutcome::kNothing;
  const CellWriteResult result = Restore(index, unit);
  if (result.IsBusy()) return WriteOutcome::kBusy;
  if (!result.Ok()) return WriteOutcome::kFailed;
  unit.written = unit.bilingual = false;
  // From here on the cell is the user's own; the next write looks at it anew.
  unit.ForgetBaseline();
  changedAnything_ = true;
  return WriteOutcome::kWritten;
}

CellWriteResult RestorePass::Restore(std::size_t index, const CellUnit& unit) {
  return unit.kind == UnitKind::kCell ? RestoreCell(index, unit)
                                      : WriteChartTitle(target_, unit, unit.sourceText);
}

CellWriteResult RestorePass::RestoreCell(std::size_t index, const CellUnit& unit) {
  if (!unit.formulaBeforeWrite) LogCellPut(unit.SheetName(), unit.row, unit.col, unit.sourceText);
  const CellTarget place = finder_.Find(unit.SheetName(), unit.row, unit.col);
  if (place.cell == nullptr) return place.status;
  IDispatch* const cell = place.cell.Get();
  if (rule_ == RestoreRule::kOnlyOurs) {
    if (const CellWriteResult check = CheckCell(cell, unit); !check.Ok()) return check;
  }
  const CellWriteResult result =
      unit.formulaBeforeWrite ? PutProperty(cell, L"Formula", Variant(*unit.formulaBeforeWrite))
                              : PutCellText(place, unit.SheetName(), unit.row, unit.col, unit.sourceText);
  if (!result.Ok() || !unit.baseline) return result;
  PaneLog(Concat(L"RestoreBaselineFont idx=", index, L" row=", unit.row, L" col=", unit.col, L"\r\n"));
  return RestoreBaseline(cell, *unit.baseline);
}

UnitPass::Step RestorePass::Finish() {
  if (!std::exchange(rowsKnown_, true)) {
    rows_ = RowsToRestore(Session());
    heightsBefore_ = Session().previousRowHeights.size();
    changedAnything_ |= !rows_.empty();
  }
  if (rows_.empty()) {
    if (changedAnything_) LogRows();
    return Step::kDone;
  }
  const CellWriteResult result = RestoreRow(rows_.back());
  if (result.IsBusy()) return Step::kBusy;
  if (result.Ok()) {
    ++heightsRestored_;
    Session().previousRowHeights.erase(rows_.back());
  }
  rows_.pop_back();
  return Step::kMore;
}

CellWriteResult RestorePass::RestoreRow(const SheetRow& row) {
  const CellTarget place = finder_.Find(row.first, row.second, 1);
  if (place.cell == nullptr) return place.status;
  CellWriteResult result;
  const ComPtr<IDispatch> range = GetDispProperty(place.cell.Get(), L"EntireRow", &result);
  if (range == nullptr) return result;
  // A row that was hidden meanwhile would be shown by any height.
  if (GetNumberProperty(range.Get(), kRowHeight) == 0.0) return {E_FAIL, 0};
  return PutProperty(range.Get(), kRowHeight,
                     Variant(RestorableHeight(Session().previousRowHeights.at(row))));
}

void RestorePass::LogRows() const {
  PaneLog(Concat(L"Excel restore ", wholeSession_ ? L"" : L"scoped ", L"rowHeights count=", heightsRestored_,
                 L" of ", heightsBefore_, L"\r\n"));
}

}  // namespace qv
