#include "translation/display_controller.h"

#include <utility>

#include "foundation/flag_scope.h"
#include "foundation/guard.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "translation/display_passes.h"
#include "translation/restore_pass.h"
#include "translation/selected_cells.h"
#include "workbook/scan_progress.h"

namespace qv {
namespace {

/// As patient as the writing of a run: about ten seconds.
constexpr UINT kBusyDelayMs = 250;
constexpr int kMaxBusyAnswers = 40;

bool IsTranslated(const CellUnit& unit) {
  return !unit.translation.empty();
}

bool IsWritten(const CellUnit& unit) {
  return unit.written;
}

}  // namespace

DisplayController::DisplayController(std::shared_ptr<PaneContext> pane, PanelOutput& output,
                                     TargetContext& target, TranslationSession& session,
                                     std::function<void()> onIdle)
    : pane_(std::move(pane)),
      output_(output),
      target_(target),
      session_(session),
      onIdle_(std::move(onIdle)),
      slices_(pane_) {}

bool DisplayController::Request::IsRestore() const {
  return kind == Kind::kRestoreAll || kind == Kind::kRestoreOne ||
         (kind == Kind::kSwitch && mode == DisplayMode::kOriginal);
}

void DisplayController::SetMode(std::wstring_view mode, std::wstring_view scope) {
  if (stopped_) return;
  if (const std::optional<DisplayMode> known = ParseDisplayMode(mode)) {
    Submit({Kind::kSwitch, *known, ParseDisplayScope(scope), 0, {}});
  } else {
    output_.RunPanelScript(DisplayModeDoneScript(mode, {}, kUnknownDisplayMode));
  }
}

void DisplayController::SetTargetStyle(TargetFont font) {
  Request request{Kind::kRestyle};
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
  Request request{Kind::kRestoreOne};
  request.index = static_cast<std::size_t>(index);
  Submit(std::move(request));
}

void DisplayController::ApplyUnit(std::int32_t index) {
  if (index < 0) return;
  Request request{Kind::kApplyOne};
  request.index = static_cast<std::size_t>(index);
  Submit(std::move(request));
}

void DisplayController::Submit(Request request) {
  if (stopped_) return;
  if (held_ && (request.kind == Kind::kSwitch || request.kind == Kind::kRestyle)) {
    Answer(request, {}, kDisplayRunning);
    return;
  }
  waiting_.push_back(std::move(request));
  Drain();
}

void DisplayController::Hold() {
  if (stopped_) return;
  held_ = true;
  AbandonAll();
}

void DisplayController::Release() {
  held_ = false;
  if (stopped_ || resting_ || waiting_.empty()) return;
  // The end of a run calls nothing of the host.
  resting_ = slices_.ContinueSoon([weak = weak_from_this()] {
    const std::shared_ptr<DisplayController> self = weak.lock();
    if (self == nullptr) return;
    self->resting_ = false;
    self->Drain();
  });
}

void DisplayController::Stop() {
  stopped_ = true;
  ++serial_;
  slices_.Stop();
  waiting_.clear();
  job_ = nullptr;
}

void DisplayController::AbandonAll() {
  ++serial_;
  const std::shared_ptr<Job> job = std::exchange(job_, nullptr);
  const std::deque<Request> waiting = std::exchange(waiting_, {});
  if (job != nullptr) Answer(job->request, job->pass->Tally(), kDisplayRunning);
  for (const Request& request : waiting)
    Answer(request, {}, kDisplayRunning);
}

void DisplayController::Drain() {
  // A host that runs messages inside a call may bring the next request while one is being worked on.
  if (stopped_ || held_ || draining_ || resting_) return;
  const std::shared_ptr<DisplayController> keepAlive = shared_from_this();
  {
    const FlagScope draining(draining_);
    WorkOff();
  }
  if (stopped_ || held_ || job_ != nullptr) return;
  target_.DropImplicitPin();
  onIdle_();
}

void DisplayController::WorkOff() {
  while (!stopped_ && !held_ && (job_ != nullptr || !waiting_.empty())) {
    if (job_ == nullptr) BeginNext();
    const std::shared_ptr<Job> job = job_;
    if (job == nullptr) continue;
    UnitPass::Step step = UnitPass::Step::kDone;
    try {
      step = RunSlice(*job->pass, target_.Application(), [&] { return job_ == job; });
    } catch (...) {
      static_cast<void>(HandleCurrentException(L"DisplayController"));
      job->pass->GiveUp();
      job->pass->EndSlice();
    }
    if (job_ != job) continue;
    if (step != UnitPass::Step::kDone && Rest(*job, step)) return;
    if (step == UnitPass::Step::kMore) continue;
    if (step == UnitPass::Step::kBusy) job->pass->GiveUp();
    FinishJob();
  }
}

bool DisplayController::Rest(Job& job, UnitPass::Step step) {
  const auto next = [weak = weak_from_this()] {
    const std::shared_ptr<DisplayController> self = weak.lock();
    if (self == nullptr) return;
    self->resting_ = false;
    self->Drain();
  };
  if (std::exchange(job.lastPosition, job.pass->Position()) != job.pass->Position()) job.busyAnswers = 0;
  if (step == UnitPass::Step::kMore) {
    resting_ = slices_.ContinueSoon(next);
  } else {
    resting_ = ++job.busyAnswers <= kMaxBusyAnswers && slices_.ContinueAfter(kBusyDelayMs, next);
  }
  return resting_;
}

void DisplayController::BeginNext() {
  // It stays among those that wait, so that a start inside one of the calls answers it too.
  const Request request = waiting_.front();
  const std::uint64_t serial = serial_;
  std::wstring_view message;
  std::unique_ptr<UnitPass> pass = Prepare(request, message);
  if (serial != serial_) return;
  waiting_.pop_front();
  if (pass == nullptr) {
    Answer(request, {}, message);
    return;
  }
  job_ = std::make_shared<Job>();
  job_->request = request;
  job_->pass = std::move(pass);
}

std::unique_ptr<UnitPass> DisplayController::Prepare(const Request& request, std::wstring_view& message) {
  static_cast<void>(target_.RefreshPin());
  std::vector<std::size_t> units = UnitsOf(request, message);
  if (!message.empty()) return nullptr;
  std::unique_ptr<UnitPass> pass;
  if (request.kind == Kind::kRestyle) {
    session_.font = request.font;
    pass = std::make_unique<RestylePass>(target_, session_, std::move(units));
  } else if (request.IsRestore()) {
    const bool whole = request.kind != Kind::kRestoreOne && request.scope == DisplayScope::kSession;
    pass = std::make_unique<RestorePass>(target_, session_, std::move(units), RestoreRule::kAsked, whole);
  } else {
    if (request.kind == Kind::kSwitch) {
      session_.layout = request.mode == DisplayMode::kDual ? Layout::kDual : Layout::kTarget;
    }
    pass = std::make_unique<WritePass>(WriteBack(target_, output_, session_, session_.font), session_,
                                       std::move(units), session_.layout);
  }
  // Sheets of the same names in another workbook are not meant.
  if (!IsSessionsWorkbook()) pass->GiveUp();
  return pass;
}

bool DisplayController::IsSessionsWorkbook() const {
  return target_.PinSerial() == session_.pinSerial || target_.WorkbookKey() == session_.workbookKey;
}

UnitTest DisplayController::ScopeOf(const Request& request, std::wstring_view& message) const {
  if (request.scope == DisplayScope::kSession) return IsTranslated;
  if (request.scope == DisplayScope::kSelection) {
    std::optional<SelectedCells> selected = ReadSelectedCells(target_, message);
    if (!selected) return {};
    return [cells = *std::move(selected), ours = IsSessionsWorkbook()](const CellUnit& unit) {
      return ours && IsTranslated(unit) && cells.Contains(unit);
    };
  }
  return [sheetName = target_.GetActiveSheetName(), ours = IsSessionsWorkbook()](const CellUnit& unit) {
    return ours && IsTranslated(unit) && unit.SheetName() == sheetName;
  };
}

std::vector<std::size_t> DisplayController::UnitsOf(const Request& request,
                                                    std::wstring_view& message) const {
  switch (request.kind) {
    case Kind::kRestyle:
    case Kind::kRestoreAll:
      return UnitsThat(session_, IsWritten);
    case Kind::kApplyAll:
      return UnitsThat(session_, [](const CellUnit& unit) { return IsTranslated(unit) && !unit.written; });
    case Kind::kRestoreOne:
    case Kind::kApplyOne:
      return request.index < session_.units.size() ? std::vector{request.index} : std::vector<std::size_t>();
    case Kind::kSwitch:
      break;
  }
  const UnitTest scope = ScopeOf(request, message);
  if (!message.empty()) return {};
  const std::size_t translated = UnitsThat(session_, scope).size();
  std::vector<std::size_t> units = UnitsThat(session_, [&](const CellUnit& unit) {
    return scope(unit) && (request.mode != DisplayMode::kOriginal || unit.written);
  });
  message = EmptyScopeMessage(request.mode, request.scope, translated, units.size());
  return units;
}

void DisplayController::FinishJob() {
  const std::shared_ptr<Job> job = std::exchange(job_, nullptr);
  const DisplayTally& tally = job->pass->Tally();
  Answer(job->request, tally,
         job->request.kind == Kind::kRestyle ? StyleFailureMessage(tally) : SwitchFailureMessage(tally));
}

void DisplayController::Answer(const Request& request, const DisplayTally& tally, std::wstring_view message) {
  switch (request.kind) {
    case Kind::kSwitch:
      PaneLog(DisplayModeLogLine(request.mode, request.scope, tally));
      output_.RunPanelScript(DisplayModeDoneScript(DisplayModeName(request.mode), tally, message));
      break;
    case Kind::kRestyle:
      PaneLog(RestyleLogLine(tally));
      output_.RunPanelScript(TargetStyleDoneScript(tally, message));
      break;
    case Kind::kRestoreAll:
      PaneLog(DisplayModeLogLine(DisplayMode::kOriginal, DisplayScope::kSession, tally));
      output_.RunPanelScript(BatchDoneScript(L"restoreAll"));
      break;
    case Kind::kApplyAll:
      output_.RunPanelScript(BatchDoneScript(L"applyAll"));
      break;
    case Kind::kRestoreOne:
    case Kind::kApplyOne:
      break;
  }
}

void DisplayController::RestoreBeforeCollect(std::wstring_view sheetName,
                                             const std::function<bool()>& stillWanted) {
  const bool ours = IsSessionsWorkbook();
  const auto isMeant = [&](const CellUnit& unit) {
    return ours && unit.written && (sheetName.empty() || unit.SheetName() == sheetName);
  };
  std::vector<std::size_t> units = UnitsThat(session_, isMeant);
  const std::size_t candidates = units.size();
  RestorePass pass(target_, session_, std::move(units), RestoreRule::kOnlyOurs, sheetName.empty());
  UnitPass::Step step = candidates == 0 ? UnitPass::Step::kDone : UnitPass::Step::kMore;
  while (step == UnitPass::Step::kMore && stillWanted()) {
    step = RunSlice(pass, target_.Application(), stillWanted);
    PumpRepaints(pane_->Window());
  }
  if (step == UnitPass::Step::kBusy) pass.GiveUp();
  PaneLog(Concat(L"Excel restore before collect sheet=", sheetName.empty() ? L"<all>" : sheetName,
                 L" candidates=", candidates, L" restored=", pass.Tally().applied, L" failed=",
                 pass.Tally().failed, L"\r\n"));
}

}  // namespace qv
