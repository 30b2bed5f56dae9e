#include "translation/unit_pass.h"

#include "translation/host_slice.h"

namespace qv {

UnitPass::Step UnitPass::Next() {
  if (refused_) return Step::kDone;
  const Step step = position_ == units_.size() ? Finish() : ChangeNext();
  if (step == Step::kMore) ++progress_;
  return step;
}

UnitPass::Step UnitPass::ChangeNext() {
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

bool UnitPass::GiveUp() {
  const std::size_t left = units_.size() - position_;
  tally_.failed += left;
  position_ = units_.size();
  return left > 0;
}

void UnitPass::Refuse() {
  static_cast<void>(GiveUp());
  refused_ = true;
}

UnitPass::Step RunSlice(UnitPass& pass, IDispatch* application, TranslationSession& session,
                        const std::function<bool()>& stillWanted) {
  const HostSlice slice(application, session);
  UnitPass::Step step = UnitPass::Step::kMore;
  while (step == UnitPass::Step::kMore && stillWanted() && !slice.IsOver())
    step = pass.Next();
  pass.EndSlice();
  return step;
}

}  // namespace qv
