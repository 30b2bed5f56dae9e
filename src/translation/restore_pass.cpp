#include "translation/restore_pass.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "translation/cell_style.h"
#include "translation/chart_titles.h"
#include "workbook/automation.h"

namespace qv {
namespace {

constexpr const wchar_t* kRowHeight = L"RowHeight";

CellWriteResult Put(IDispatch* object, const wchar_t* name, const Variant& value) {
  CellWriteResult result;
  result.hr = PutDispProperty(object, name, &value, &result.exceptionCode);
  return result;
}

/// Good when the unit's cell may be put back unasked.
CellWriteResult CheckText(const CellUnit& unit, const CellWriteResult& read, std::wstring_view live) {
  if (!read.Ok() || IsOurText(unit, live)) return read;
  return {E_FAIL, 0};
}

CellWriteResult CheckCell(IDispatch* cell, const CellUnit& unit) {
  Variant live;
  CellWriteResult read;
  read.hr = GetProperty(cell, L"Value2", live, &read.exceptionCode);
  return CheckText(unit, read, live.Text());
}

CellWriteResult CheckChart(const TargetContext& target, const CellUnit& unit) {
  std::wstring live;
  const CellWriteResult read = ReadChartTitle(target, unit, live);
  return CheckText(unit, read, live);
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
  // A copy: the host may run a new start of the page before it comes back from a call.
  const CellUnit unit = Session().units[index];
  if (!unit.written) return WriteOutcome::kNothing;
  const CellWriteResult result = Restore(index, unit);
  if (IsOutdated()) return WriteOutcome::kNothing;
  if (result.IsBusy()) return WriteOutcome::kBusy;
  if (!result.Ok()) return WriteOutcome::kFailed;
  CellUnit& live = Session().units[index];
  live.written = live.bilingual = false;
  // From here on the cell is the user's own; the next write looks at it anew.
  live.baseline.reset();
  live.formulaBeforeWrite.reset();
  restored_.push_back(index);
  return WriteOutcome::kWritten;
}

CellWriteResult RestorePass::Restore(std::size_t index, const CellUnit& unit) {
  if (unit.kind == UnitKind::kCell) return RestoreCell(index, unit);
  if (rule_ == RestoreRule::kOnlyOurs) {
    if (const CellWriteResult check = CheckChart(target_, unit); !check.Ok()) return check;
  }
  return WriteChartTitle(target_, unit, unit.sourceText);
}

CellWriteResult RestorePass::RestoreCell(std::size_t index, const CellUnit& unit) {
  const CellTarget place = finder_.Find(unit.SheetName(), unit.row, unit.col);
  if (place.cell == nullptr) return place.status;
  IDispatch* const cell = place.cell.Get();
  if (rule_ == RestoreRule::kOnlyOurs) {
    if (const CellWriteResult check = CheckCell(cell, unit); !check.Ok()) return check;
  }
  const CellWriteResult result =
      unit.formulaBeforeWrite ? Put(cell, L"Formula", Variant(*unit.formulaBeforeWrite))
                              : PutCellText(place, unit.SheetName(), unit.row, unit.col, unit.sourceText);
  if (!result.Ok() || !unit.baseline) return result;
  PaneLog(Concat(L"RestoreBaselineFont idx=", index, L" row=", unit.row, L" col=", unit.col, L"\r\n"));
  return RestoreBaseline(cell, *unit.baseline);
}

UnitPass::Step RestorePass::Finish() {
  if (!std::exchange(rowsKnown_, true)) {
    rows_ = RowsToRestore(Session(), restored_);
    heightsBefore_ = Session().previousRowHeights.size();
  }
  if (rows_.empty()) {
    if (!restored_.empty()) LogRows();
    return Step::kDone;
  }
  const SheetRow row = rows_.back();
  const CellWriteResult result = RestoreRow(row);
  if (IsOutdated()) return Step::kDone;
  if (result.IsBusy()) return Step::kBusy;
  rows_.pop_back();
  if (result.Ok()) {
    ++heightsRestored_;
    Session().previousRowHeights.erase(row);
  }
  return Step::kMore;
}

CellWriteResult RestorePass::RestoreRow(const SheetRow& row) {
  const auto height = Session().previousRowHeights.find(row);
  if (height == Session().previousRowHeights.end()) return {E_FAIL, 0};
  const double points = RestorableHeight(height->second);
  const CellTarget place = finder_.Find(row.first, row.second, 1);
  if (place.cell == nullptr) return place.status;
  const ComPtr<IDispatch> range = GetDispProperty(place.cell.Get(), L"EntireRow");
  // A row that was hidden meanwhile would be shown by any height.
  if (GetNumberProperty(range.Get(), kRowHeight) == 0.0) return {E_FAIL, 0};
  return Put(range.Get(), kRowHeight, Variant(points));
}

void RestorePass::LogRows() const {
  PaneLog(Concat(L"Excel restore ", wholeSession_ ? L"" : L"scoped ", L"rowHeights count=", heightsRestored_,
                 L" of ", heightsBefore_, L"\r\n"));
}

}  // namespace qv
