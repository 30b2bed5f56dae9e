#include "translation/run_writer.h"

#include <utility>

#include "foundation/flag_scope.h"
#include "foundation/guard.h"
#include "translation/host_slice.h"

namespace qv {

RunWriter::RunWriter(std::shared_ptr<PaneContext> pane, const TargetContext& target,
                     TranslationSession& session, WriteBack writeBack, Layout layout, WriteListener& listener,
                     Patience patience)
    : target_(target),
      session_(session),
      writeBack_(std::move(writeBack)),
      layout_(layout),
      listener_(listener),
      patience_(patience),
      slices_(std::move(pane)) {}

void RunWriter::Add(TranslatedBatch batch) {
  if (stopped_) return;
  waiting_.push_back(std::move(batch));
  Drain();
}

void RunWriter::Finish() {
  finishing_ = true;
  Drain();
}

void RunWriter::Stop() {
  stopped_ = true;
  slices_.Stop();
  waiting_.clear();
}

void RunWriter::Drain() {
  // A host that runs messages inside a call may bring the next batch while one is being written.
  if (stopped_ || draining_ || resting_) return;
  const std::shared_ptr<RunWriter> keepAlive = shared_from_this();
  try {
    GoOn(WriteSlice());
  } catch (...) {
    static_cast<void>(HandleCurrentException(L"RunWriter"));
    Break();
  }
}

void RunWriter::GoOn(Slice slice) {
  if (stopped_) return;
  const bool allTaken = slice == Slice::kAllTaken && waiting_.empty();
  if (slice == Slice::kHostBusy || (allTaken && finishing_ && writeBack_.HasDueRows())) {
    RetryLater();
  } else if (!allTaken) {
    ContinueSoon();
  } else if (finishing_) {
    listener_.OnAllWritten();
  }
}

void RunWriter::Break() {
  writeBack_.ReleaseReferences();
  if (stopped_) return;
  Stop();
  listener_.OnWritingBroke();
}

RunWriter::Slice RunWriter::WriteSlice() {
  const FlagScope draining(draining_);
  return waiting_.empty() && !writeBack_.HasDueRows() ? Slice::kAllTaken : WriteWaiting();
}

RunWriter::Slice RunWriter::WriteWaiting() {
  const HostSlice host(target_.Application(), session_);
  Slice slice = Slice::kAllTaken;
  while (!stopped_ && !waiting_.empty()) {
    if (nextUnit_ == waiting_.front().size()) {
      waiting_.pop_front();
      nextUnit_ = 0;
      continue;
    }
    if (host.IsOver()) {
      slice = Slice::kTimeIsUp;
      break;
    }
    const TranslatedUnit unit = waiting_.front()[nextUnit_];
    if (!WriteOne(unit)) {
      slice = Slice::kHostBusy;
      break;
    }
    if (stopped_) break;
    busyAnswers_ = 0;
    ++nextUnit_;
    listener_.OnUnitDone(unit);
  }
  // A row that cannot be fitted costs none of the texts.
  Guard(L"RunWriter", [this] { writeBack_.FinishRows(); });
  writeBack_.ReleaseReferences();
  return slice;
}

bool RunWriter::WriteOne(const TranslatedUnit& unit) {
  listener_.OnUnitStarting(unit.index);
  return !KeepTranslation(unit) || writeBack_.WriteUnit(unit.index, layout_) != WriteOutcome::kBusy;
}

bool RunWriter::KeepTranslation(const TranslatedUnit& unit) {
  if (unit.skipped || unit.index >= session_.units.size()) return false;
  session_.units[unit.index].translation = unit.translation;
  return true;
}

void RunWriter::ContinueSoon() {
  resting_ = true;
  if (!slices_.ContinueSoon(Continuation())) Continue();
}

void RunWriter::RetryLater() {
  if (++busyAnswers_ <= patience_.maxBusyAnswers && RestFor(patience_.delayMs)) return;
  busyAnswers_ = 0;
  if (waiting_.empty()) {
    writeBack_.GiveUpRows();
  } else {
    GiveUpBatch();
  }
  Drain();
}

bool RunWriter::RestFor(UINT delayMs) {
  resting_ = slices_.ContinueAfter(delayMs, Continuation());
  return resting_;
}

std::function<void()> RunWriter::Continuation() {
  return [weak = weak_from_this()] {
    if (const std::shared_ptr<RunWriter> writer = weak.lock()) writer->Continue();
  };
}

void RunWriter::Continue() {
  resting_ = false;
  Drain();
}

void RunWriter::GiveUpBatch() {
  // The notice asks the host, which may bring the next batch or the run's end.
  const FlagScope draining(draining_);
  const TranslatedBatch batch = std::move(waiting_.front());
  waiting_.pop_front();
  for (std::size_t i = std::exchange(nextUnit_, 0); i < batch.size() && !stopped_; ++i) {
    if (KeepTranslation(batch[i])) writeBack_.GiveUp(batch[i].index, layout_);
    if (stopped_) return;
    listener_.OnUnitDone(batch[i]);
  }
}

}  // namespace qv
