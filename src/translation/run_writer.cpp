#include "translation/run_writer.h"

#include <utility>

#include "foundation/guard.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

/// Keeps the screen still for a batch, and never longer: between batches the user looks at the sheet.
class StillScreen {
 public:
  explicit StillScreen(IDispatch* application)
      : application_(application), still_(SetScreenUpdating(application, false)) {}
  StillScreen(const StillScreen&) = delete;
  StillScreen& operator=(const StillScreen&) = delete;
  ~StillScreen() {
    if (!still_) return;
    Guard(L"StillScreen", [this] { static_cast<void>(SetScreenUpdating(application_.Get(), true)); });
  }

 private:
  ComPtr<IDispatch> application_;
  bool still_;
};

}  // namespace

RunWriter::RunWriter(std::shared_ptr<PaneContext> pane, const TargetContext& target,
                     TranslationSession& session, WriteBack writeBack, Layout layout, WriteListener& listener,
                     Patience patience)
    : pane_(std::move(pane)),
      target_(target),
      session_(session),
      writeBack_(std::move(writeBack)),
      layout_(layout),
      listener_(listener),
      patience_(patience) {}

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
  retryTimer_.Stop();
  waiting_.clear();
}

void RunWriter::Drain() {
  // A host that runs messages inside a call may bring the next batch while one is being written; while it is
  // busy the timer goes on.
  if (stopped_ || draining_ || resting_) return;
  const std::shared_ptr<RunWriter> keepAlive = shared_from_this();
  draining_ = true;
  const bool hostTookAll = waiting_.empty() || WriteWaiting();
  draining_ = false;
  writeBack_.ReleaseReferences();
  if (stopped_) return;
  if (!hostTookAll) {
    RetryLater();
  } else if (finishing_) {
    listener_.OnAllWritten();
  }
}

bool RunWriter::WriteWaiting() {
  const StillScreen stillScreen(target_.Application());
  while (!stopped_ && !waiting_.empty()) {
    if (nextUnit_ == waiting_.front().size()) {
      waiting_.pop_front();
      nextUnit_ = 0;
      continue;
    }
    const TranslatedUnit unit = waiting_.front()[nextUnit_];
    if (!WriteOne(unit)) return false;
    if (stopped_) break;
    busyAnswers_ = 0;
    ++nextUnit_;
    listener_.OnUnitDone(unit);
  }
  return true;
}

bool RunWriter::WriteOne(const TranslatedUnit& unit) {
  listener_.OnUnitStarting(unit.index);
  if (unit.skipped || unit.index >= session_.units.size()) return true;
  session_.units[unit.index].translation = unit.translation;
  return writeBack_.WriteUnit(unit.index, layout_) != WriteOutcome::kBusy;
}

void RunWriter::RetryLater() {
  resting_ = ++busyAnswers_ <= patience_.maxBusyAnswers &&
             retryTimer_.Start(pane_->Window(), patience_.delayMs, [weak = weak_from_this()] {
               if (const std::shared_ptr<RunWriter> writer = weak.lock()) writer->Retry();
             });
  if (!resting_) GiveUpBatch();
}

void RunWriter::Retry() {
  resting_ = false;
  Drain();
}

void RunWriter::GiveUpBatch() {
  const TranslatedBatch batch = std::move(waiting_.front());
  waiting_.pop_front();
  for (std::size_t i = std::exchange(nextUnit_, 0); i < batch.size() && !stopped_; ++i) {
    if (!batch[i].skipped) writeBack_.GiveUp(batch[i].index);
    listener_.OnUnitDone(batch[i]);
  }
  busyAnswers_ = 0;
  Drain();
}

}  // namespace qv
