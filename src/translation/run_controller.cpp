#include "translation/run_controller.h"

#include <windows.h>

#include <utility>

#include "foundation/logging.h"
#include "translation/error_codes.h"
#include "translation/panel_transport.h"
#include "translation/run_messages.h"
#include "workbook/host_state.h"
#include "workbook/workbook_busy_table.h"

namespace qv {
namespace {

/// How long a busy host is left alone before it is asked again to take its settings back.
constexpr UINT kRepayMs = 1000;
constexpr int kMostRepays = 120;

}  // namespace

RunController::RunController(std::shared_ptr<PaneContext> context, PanelOutput& output, TargetContext& target,
                             AccessTokens& tokens, TranslationSession& session, Patience patience)
    : context_(std::move(context)),
      output_(output),
      target_(target),
      tokens_(tokens),
      session_(session),
      terminology_(std::make_shared<TerminologyBridge>(context_, output)),
      mailbox_(std::make_shared<RunMailbox>(static_cast<RunListener&>(*this))),
      patience_(patience),
      display_(std::make_shared<DisplayController>(
          context_, output_, target_, session_, [this] { SettleHost(); }, patience)),
      startPause_(context_) {}

RunController::~RunController() {
  BeginShutdownEarly();
}

void RunController::OnBatchTranslated(std::uint64_t runId, TranslatedBatch batch) {
  if (run_ == nullptr || run_->id != runId) return;
  const std::shared_ptr<RunWriter> writer = run_->writer;
  writer->Add(std::move(batch));
}

void RunController::OnTranslationEnded(std::uint64_t runId, const RunEnd& end) {
  if (run_ == nullptr || run_->id != runId) return;
  run_->end = end;
  const std::shared_ptr<RunWriter> writer = run_->writer;
  writer->Finish();
}

void RunController::OnUnitStarting(std::size_t index) {
  if (!run_->start.allSheets || index >= session_.units.size()) return;
  const std::wstring& sheetName = session_.units[index].SheetName();
  if (sheetName == run_->currentSheet) return;
  run_->currentSheet = sheetName;
  output_.RunPanelScript(RunSheetChangedScript(run_->id, sheetName, run_->sourceSheet, run_->start.Mode()));
}

void RunController::OnUnitDone(const TranslatedUnit& unit) {
  if (unit.index >= session_.units.size()) return;
  const std::wstring_view original = session_.units[unit.index].sourceText;
  const std::wstring_view translated = unit.skipped ? original : std::wstring_view(unit.translation);
  output_.RunPanelScript(
      ProgressScript(run_->id, run_->size, {unit.index, unit.skipped, original, translated}));
}

void RunController::OnAllWritten() {
  const RunEnd end = run_->end;
  if (end.ok) {
    Complete();
  } else if (end.code == kCodeCancelled) {
    Cancel();
  } else {
    Fail(end.code, end.message);
  }
}

void RunController::OnWritingBroke() {
  Fail(L"internal_error", L"Writing translations failed");
}

void RunController::Complete() {
  output_.RunPanelScript(
      CompleteScript(run_->id, run_->size, GetTickCount64() - run_->startTick, run_->start.allSheets));
  StopRun();
  RestoreHost();
}

void RunController::Refuse(std::wstring_view code, std::wstring_view message) {
  target_.DropImplicitPin();
  output_.RunPanelScript(ShowRunError(code, message, std::nullopt));
}

void RunController::Fail(std::wstring_view code, std::wstring_view message) {
  // A page takes the error of a run that it knows.
  Announce(*run_);
  const std::shared_ptr<Run> run = StopRun();
  output_.RunPanelScript(ShowRunError(code, message, run->id));
  RestoreHost();
}

void RunController::Cancel() {
  if (DropStart()) output_.RunPanelScript(CancelledScript());
  if (run_ == nullptr) return;
  const std::shared_ptr<Run> run = StopRun();
  output_.RunPanelScript(CancelledScript());
  if (run->start.viaPanel) output_.PostPanelJson(TranslateAbortForRunMessage(run->id));
  RestoreHost();
}

void RunController::AbandonRun() {
  if (run_ == nullptr) return;
  const std::shared_ptr<Run> run = StopRun();
  if (run->start.viaPanel) output_.PostPanelJson(TranslateAbortForRunMessage(run->id));
  RestoreHost();
}

std::shared_ptr<RunController::Run> RunController::StopRun() {
  std::shared_ptr<Run> run = std::exchange(run_, nullptr);
  run->flags->Cancel();
  pending_->CancelRun(run->id);
  terminology_->CancelRun(run->id);
  run->writer->Stop();
  WorkbookBusyTable::ReleaseWorkbook(run->workbookKey, context_.get());
  target_.DropImplicitPin();
  display_->Release();
  return run;
}

void RunController::RestoreHost() {
  RestoreScreenUpdating(target_.Application());
  SettleHost();
}

void RunController::SettleHost() {
  repaysLeft_ = kMostRepays;
  RepayHost();
}

void RunController::RepayHost() {
  // A host that was too busy to take its settings back is asked again for a while; after that the next run
  // does.
  if (shutDown_ || repaysLeft_-- == 0 || RestoreOwedHostState(target_.Application())) return;
  static_cast<void>(repayTimer_.Start(context_->Window(), kRepayMs, [this] {
    static_cast<void>(context_->Tasks().PostFunction([this] { RepayHost(); }));
  }));
}

void RunController::Pause() {
  if (run_ == nullptr) return;
  run_->flags->SetPaused(true);
  run_->pausedBySheetChange = false;
}

void RunController::Resume() {
  const std::shared_ptr<Run> run = run_;
  if (run == nullptr || !run->flags->IsPaused()) return;
  // A run over all sheets goes on whatever sheet is shown.
  const std::wstring activeSheet = run->start.allSheets ? run->sourceSheet : target_.GetActiveSheetName();
  if (run_ != run) return;
  // A sheet whose name cannot be read now is not known to be another one.
  if (!activeSheet.empty() && activeSheet != run->sourceSheet) {
    output_.RunPanelScript(ResumeBlockedScript(activeSheet, run->sourceSheet));
    return;
  }
  run->flags->SetPaused(false);
  const bool bySheetChange = std::exchange(run->pausedBySheetChange, false);
  output_.RunPanelScript(ResumedScript(bySheetChange ? L"sheet_changed" : L"manual"));
}

void RunController::OnBatchResult(const std::wstring& message) {
  AcceptBatchResult(*pending_, message);
}

void RunController::OnTerminologyResult(const std::wstring& message) {
  terminology_->Accept(message);
}

void RunController::OnSheetActivated(bool translationViewShown) {
  if (shutDown_) return;
  const std::wstring activeSheet = target_.GetActiveSheetName();
  if (shutDown_ || activeSheet.empty()) return;
  if (translationViewShown) output_.RunPanelScript(ActiveSheetChangedScript(activeSheet));
  if (run_ == nullptr || run_->start.allSheets || run_->flags->IsPaused()) return;
  if (activeSheet == run_->sourceSheet) return;
  run_->flags->SetPaused(true);
  run_->pausedBySheetChange = true;
}

void RunController::PushState() {
  if (run_ == nullptr) return;
  output_.RunPanelScript(RunStartedScript(run_->id));
  // Before the cells are read there is nothing to tell yet; this page hears it then as any other.
  if (run_->isCollected) output_.RunPanelScript(ReadyScript(run_->id, run_->size));
}

void RunController::AskPageAgain() {
  for (const std::wstring& message : terminology_->WaitingMessages())
    output_.PostPanelJson(message);
  for (const std::wstring& message : pending_->WaitingMessages())
    output_.PostPanelJson(message);
}

void RunController::BeginShutdownEarly() {
  if (std::exchange(shutDown_, true)) return;
  PaneLog(L"Excel BeginShutdownEarly\r\n");
  // A worker that waits for the page is woken; one that waits for the network is left to end by itself.
  // Either finds nobody to talk to.
  mailbox_->Close();
  display_->Stop();
  startPause_.Stop();
  repayTimer_.Stop();
  if (run_ != nullptr) {
    StopRun();
    RestoreScreenUpdating(target_.Application());
  }
  // The last moment to do it: nobody asks again for a pane that is gone.
  static_cast<void>(RestoreOwedHostState(target_.Application()));
}

}  // namespace qv
