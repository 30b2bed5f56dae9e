#include "translation/display_controller.h"

#include <utility>

#include "foundation/flag_scope.h"
#include "foundation/guard.h"
#include "foundation/logging.h"
#include "translation/host_slice.h"

namespace qv {

DisplayController::DisplayController(std::shared_ptr<PaneContext> pane, PanelOutput& output,
                                     TargetContext& target, TranslationSession& session,
                                     std::function<void()> onIdle, Patience patience)
    : pane_(std::move(pane)),
      output_(output),
      target_(target),
      session_(session),
      onIdle_(std::move(onIdle)),
      slices_(pane_),
      patience_(patience) {}

DisplayTally DisplayController::Job::Tally() const {
  return plan.pass != nullptr ? plan.pass->Tally() : DisplayTally();
}

void DisplayController::SetMode(std::wstring_view mode, std::wstring_view scope) {
  if (stopped_) return;
  if (const std::optional<DisplayMode> known = ParseDisplayMode(mode)) {
    DisplayRequest request{Kind::kSwitch};
    request.mode = *known;
    request.scope = ParseDisplayScope(scope);
    Submit(std::move(request));
  } else {
    PaneLog(DisplayModeLogLine(mode, ParseDisplayScope(scope), {}));
    output_.RunPanelScript(DisplayModeDoneScript(mode, {}, kUnknownDisplayMode));
  }
}

void DisplayController::SetTargetStyle(TargetFont font) {
  DisplayRequest request{Kind::kRestyle};
  request.font = std::move(font);
  Submit(std::move(request));
}

void DisplayController::RestoreAll() {
  Submit({Kind::kRestoreAll});
}

void DisplayController::ApplyAll() {
  Submit({Kind::kApplyAll});
}

void DisplayController::RestoreUnit(std::int32_t index) {
  if (index < 0) return;
  DisplayRequest request{Kind::kRestoreOne};
  request.index = static_cast<std::size_t>(index);
  Submit(std::move(request));
}

void DisplayController::ApplyUnit(std::int32_t index) {
  if (index < 0) return;
  DisplayRequest request{Kind::kApplyOne};
  request.index = static_cast<std::size_t>(index);
  Submit(std::move(request));
}

void DisplayController::Submit(DisplayRequest request) {
  if (stopped_) return;
  if (held_ && request.CanBeRefused()) {
    ReportResult(request, {}, kDisplayRunning, output_);
    return;
  }
  waiting_.push_back(std::move(request));
  Drain();
}

void DisplayController::Hold() {
  if (stopped_) return;
  held_ = true;
  slices_.Stop();
  resting_ = false;
  AbandonAll();
}

void DisplayController::Release() {
  held_ = false;
  if (stopped_ || draining_ || resting_ || waiting_.empty()) return;
  // The end of a run calls nothing of the host.
  resting_ = slices_.ContinueSoon(Continuation());
}

void DisplayController::Stop() {
  stopped_ = true;
  slices_.Stop();
  waiting_.clear();
  job_ = nullptr;
}

void DisplayController::AbandonAll() {
  const std::shared_ptr<Job> job = std::exchange(job_, nullptr);
  const std::deque<DisplayRequest> waiting = std::exchange(waiting_, {});
  // A restore before a run goes down with its start.
  if (job != nullptr && !job->restored) ReportResult(job->request, job->Tally(), kDisplayRunning, output_);
  for (const DisplayRequest& request : waiting)
    ReportResult(request, {}, kDisplayRunning, output_);
}

void DisplayController::RestoreBeforeCollect(std::wstring_view sheetName, RestoreEnd restored) {
  if (stopped_) return;
  DisplayRequest request{Kind::kBeforeCollect};
  request.sheetName = sheetName;
  job_ = std::make_shared<Job>(Job{std::move(request), std::move(restored)});
  Drain();
}

void DisplayController::WaitForWrites() {
  resting_ = slices_.ContinueAfter(kWritePauseMs, Continuation());
  if (!resting_) AbandonAll();
}

bool DisplayController::HasWork() const {
  return !stopped_ && (job_ != nullptr || (!held_ && !waiting_.empty()));
}

void DisplayController::Drain() {
  // A host that runs messages inside a call may bring the next request while one is being worked on.
  if (draining_ || resting_ || !HasWork()) return;
  const std::shared_ptr<DisplayController> keepAlive = shared_from_this();
  if (session_.isBeingWritten) return WaitForWrites();
  {
    const FlagScope draining(draining_);
    WorkOff();
  }
  if (stopped_ || held_ || job_ != nullptr) return;
  target_.DropImplicitPin();
  onIdle_();
}

void DisplayController::WorkOff() {
  while (HasWork()) {
    if (job_ == nullptr) {
      job_ = std::make_shared<Job>(Job{waiting_.front()});
      waiting_.pop_front();
    }
    const std::shared_ptr<Job> job = job_;
    const UnitPass::Step step = Advance(job);
    if (job_ != job) continue;
    if (step != UnitPass::Step::kDone && Rest(*job, step)) return;
    const bool goesOn = step == UnitPass::Step::kMore || (step == UnitPass::Step::kBusy && GiveUp(*job));
    if (!goesOn) FinishJob();
  }
}

UnitPass::Step DisplayController::Advance(const std::shared_ptr<Job>& job) {
  const auto stillWanted = [&] { return job_ == job; };
  try {
    if (!job->isPlanned) {
      job->plan = PlanRequest(job->request, target_, output_, session_);
      if (job->plan.isHostBusy) return UnitPass::Step::kBusy;
      job->isPlanned = true;
    }
    if (job->plan.pass == nullptr || !stillWanted()) return UnitPass::Step::kDone;
    return RunSlice(*job->plan.pass, target_.Application(), session_, stillWanted);
  } catch (...) {
    static_cast<void>(HandleCurrentException(L"DisplayController"));
    if (job->plan.pass != nullptr) Guard(L"DisplayController", [&] { job->plan.pass->EndSlice(); });
    return GiveUp(*job) ? UnitPass::Step::kMore : UnitPass::Step::kDone;
  }
}

bool DisplayController::GiveUp(Job& job) const {
  job.gaveUp = true;
  // A host that stayed busy for so long is not waited for once more.
  job.busyAnswers = patience_.maxBusyAnswers;
  if (job.isPlanned) return job.plan.pass->GiveUp();
  job.plan.message = UnplannedMessage(job.request);
  return false;
}

bool DisplayController::Rest(Job& job, UnitPass::Step step) {
  const std::size_t progress = job.isPlanned ? job.plan.pass->Progress() : 0;
  if (std::exchange(job.lastProgress, progress) != progress) job.busyAnswers = 0;
  if (step == UnitPass::Step::kMore) {
    resting_ = slices_.ContinueSoon(Continuation());
  } else {
    resting_ = ++job.busyAnswers <= patience_.maxBusyAnswers &&
               slices_.ContinueAfter(patience_.delayMs, Continuation());
  }
  return resting_;
}

std::function<void()> DisplayController::Continuation() {
  return [weak = weak_from_this()] {
    const std::shared_ptr<DisplayController> self = weak.lock();
    if (self == nullptr) return;
    self->resting_ = false;
    self->Drain();
  };
}

void DisplayController::FinishJob() {
  const std::shared_ptr<Job> job = std::exchange(job_, nullptr);
  const DisplayTally tally = job->Tally();
  const std::wstring_view message =
      job->plan.message.empty() ? FailureMessage(job->request, tally) : job->plan.message;
  ReportResult(job->request, tally, message, output_);
  if (job->restored) job->restored(!job->gaveUp);
}

}  // namespace qv
