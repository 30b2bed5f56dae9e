#include "translation/unit_pass.h"

#include <windows.h>

#include "translation/ui_slices.h"
#include "workbook/host_state.h"

namespace qv {

UnitPass::Step UnitPass::Next() {
  if (IsOutdated()) return Step::kDone;
  if (position_ == units_.size()) return Finish();
  const WriteOutcome outcome = Change(units_[position_]);
  if (outcome == WriteOutcome::kBusy) return Step::kBusy;
  Count(outcome);
  ++position_;
  return Step::kMore;
}

void UnitPass::Count(WriteOutcome outcome) {
  switch (outcome) {
    case WriteOutcome::kWritten:
      ++tally_.applied;
      break;
    case WriteOutcome::kNothing:
      ++tally_.skipped;
      break;
    case WriteOutcome::kFailed:
    case WriteOutcome::kBusy:
      ++tally_.failed;
      break;
  }
}

void UnitPass::GiveUp() {
  tally_.failed += units_.size() - position_;
  position_ = units_.size();
}

UnitPass::Step RunSlice(UnitPass& pass, IDispatch* application, const std::function<bool()>& stillWanted) {
  const DisplayAlertsGuard alertsOff(application);
  const ScreenUpdatingGuard stillScreen(application);
  const ULONGLONG begin = GetTickCount64();
  UnitPass::Step step = UnitPass::Step::kMore;
  while (step == UnitPass::Step::kMore && stillWanted() && GetTickCount64() - begin < kUiSliceMs)
    step = pass.Next();
  pass.EndSlice();
  return step;
}

}  // namespace qv
