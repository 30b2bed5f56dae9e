#include "translation/run_controller.h"

#include <windows.h>

#include <utility>

#include "foundation/host_session.h"
#include "foundation/identity.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "translation/error_codes.h"
#include "translation/panel_transport.h"
#include "translation/run_collection.h"
#include "translation/run_messages.h"
#include "translation/trace_details.h"
#include "workbook/host_state.h"
#include "workbook/workbook_busy_table.h"

namespace qv {
namespace {

/// A page that posts the same start twice within this time means one start.
constexpr std::uint64_t kDuplicateStartMs = 2500;

constexpr std::wstring_view kClientProduct = L"excel";

std::wstring_view UsageKindOf(const StartRequest& start) {
  return start.selection ? L"translate_selection" : L"translate_full";
}

/// The glossaries and the instruction that the page has chosen. None are kept for runs so far.
Terminology ResolveTerminology(const std::vector<std::wstring>&) {
  return {};
}

}  // namespace

RunController::RunController(std::shared_ptr<PaneContext> context, PanelOutput& output, TargetContext& target,
                             AccessTokens& tokens, TranslationSession& session)
    : context_(std::move(context)),
      output_(output),
      target_(target),
      tokens_(tokens),
      session_(session),
      mailbox_(std::make_shared<RunMailbox>(static_cast<RunListener&>(*this))) {}

RunController::~RunController() {
  BeginShutdownEarly();
}

void RunController::Start(std::wstring_view action, const std::wstring& message) {
  if (shutDown_) return;
  PaneLog(StartLogLine(action, message));
  const StartRequest start = ParseStartRequest(action, message);
  if (IsDuplicate(start.clientTraceId)) {
    PaneLog(L"Excel translateStart deduped duplicate clientTraceId\r\n");
    return;
  }
  TraceStart(start, message);
  AbandonRun();
  Begin(start);
}

bool RunController::IsDuplicate(const std::wstring& clientTraceId) {
  const std::uint64_t now = GetTickCount64();
  if (!clientTraceId.empty() && clientTraceId == lastStartTraceId_ &&
      now - lastStartTick_ < kDuplicateStartMs) {
    return true;
  }
  // Also a start that is refused later counts.
  lastStartTick_ = now;
  if (!clientTraceId.empty()) lastStartTraceId_ = clientTraceId;
  return false;
}

void RunController::TraceStart(const StartRequest& start, const std::wstring& message) const {
  TraceTranslateEvent("cpp.start.recv", StartReceivedDetail(start.hasViaPanelField, message.size(),
                                                            start.clientTraceId, WithoutTokens(message)));
  TraceTranslateEvent("cpp.bridge.transport", TransportChoiceDetail(start.viaPanel, start.hasViaPanelField,
                                                                    tokens_.Transport().size()));
}

void RunController::Begin(const StartRequest& start) {
  if (target_.Application() == nullptr) {
    return Refuse(L"app_not_connected", L"Excel Application not connected");
  }
  // A window that was closed meanwhile must not make the sheet of the new one look missing.
  const bool workbookBound = target_.RefreshPin();
  if (target_.GetActiveSheetDispatch() == nullptr) return Refuse(L"no_active_sheet", L"没有活动工作表");
  RestoreBeforeCollect(start);
  const Layout layout = start.bilingual ? Layout::kDual : Layout::kTarget;
  WriteBack writeBack(target_, output_, session_, start.font);
  writeBack.PrepareLayout(layout);
  if (!workbookBound) {
    return Refuse(L"workbook_unavailable", L"无法确定当前窗口的工作簿，请重新打开任务窗格后再试");
  }
  if (!WorkbookBusyTable::TryClaimWorkbook(target_.WorkbookKey(), context_.get())) {
    return Refuse(L"workbook_busy", L"同一工作簿的另一个窗口正在翻译，请稍候再试");
  }

  const std::shared_ptr<Run> run = NewRun(start, std::move(writeBack), layout);
  run_ = run;
  output_.RunPanelScript(BlurChatInputScript());
  if (!start.selection) Announce(*run);
  if (!Collect(*run)) return;
  if (start.selection) {
    run->announced = true;
    output_.RunPanelScript(StartedAndReadyScript(run->id, run->size));
  } else {
    output_.RunPanelScript(ReadyScript(run->id, run->size));
  }
  if (!StartRunWorker(JobOf(*run))) Fail(L"internal_error", L"CreateThread failed");
}

void RunController::RestoreBeforeCollect(const StartRequest&) {
  // Cells that an earlier run wrote are collected as they stand: putting them back comes with the restore
  // feature.
}

std::shared_ptr<RunController::Run> RunController::NewRun(const StartRequest& start, WriteBack writeBack,
                                                          Layout layout) {
  auto run = std::make_shared<Run>();
  run->id = ++runCounter_;
  run->start = start;
  run->workbookKey = target_.WorkbookKey();
  run->startTick = GetTickCount64();
  run->sourceSheet = target_.GetActiveSheetName();
  run->currentSheet = run->sourceSheet;
  run->writer = std::make_shared<RunWriter>(context_, target_, session_, std::move(writeBack), layout,
                                            static_cast<WriteListener&>(*this), RunWriter::Patience());
  return run;
}

void RunController::Announce(Run& run) {
  if (std::exchange(run.announced, true)) return;
  output_.RunPanelScript(RunStartedScript(run.id));
}

bool RunController::Collect(Run& run) {
  CollectResult result;
  const bool collected = CollectForRun(run.start, run.id, target_, output_, *context_, result);
  // The host may have taken the pane away meanwhile.
  if (run_.get() != &run) return false;
  if (!collected) {
    Fail(L"", result.error);
    return false;
  }
  run.size = {result.cells, result.units.size()};
  if (!result.sheetName.empty()) run.sourceSheet = run.currentSheet = result.sheetName;
  session_.Replace(std::move(result.units), std::move(result.warnings));
  return true;
}

RunJob RunController::JobOf(const Run& run) const {
  RunJob job;
  job.pane = context_;
  job.mailbox = mailbox_;
  job.flags = run.flags;
  for (const CellUnit& unit : session_.units) {
    job.texts.texts.push_back(unit.workText);
    job.texts.unitIds.push_back(unit.unitId);
  }
  job.head.sourceLang = run.start.sourceLang;
  job.head.targetLang = run.start.targetLang;
  job.head.usageKind = UsageKindOf(run.start);
  job.head.clientProduct = kClientProduct;
  job.head.clientTraceId = run.start.clientTraceId;
  job.head.runId = run.id;
  job.terminology = &ResolveTerminology;
  job.access = {HostSession::Get().Endpoint(), tokens_.Transport(), BuildClientContext(GatherClientFacts())};
  if (run.start.viaPanel) job.pending = pending_;
  job.output = &output_;
  return job;
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
  const std::wstring& sheetName = session_.units[index].sheetName;
  if (sheetName == run_->currentSheet) return;
  run_->currentSheet = sheetName;
  output_.RunPanelScript(RunSheetChangedScript(run_->id, sheetName, run_->sourceSheet, run_->start.Mode()));
}

void RunController::OnUnitDone(const TranslatedUnit& unit) {
  if (unit.index >= session_.units.size()) return;
  const std::wstring& original = session_.units[unit.index].sourceText;
  const std::wstring& translated = unit.skipped ? original : unit.translation;
  output_.RunPanelScript(
      ProgressScript(run_->id, run_->size, {unit.index, unit.skipped, original, translated}));
}

void RunController::OnAllWritten() {
  const RunEnd end = run_->end;
  if (end.ok) {
    Complete();
  } else if (end.code == kCodeCancelled) {
    EndRun();
    output_.RunPanelScript(CancelledScript());
  } else {
    Fail(end.code, end.message);
  }
}

void RunController::Complete() {
  const std::shared_ptr<Run> run = run_;
  EndRun();
  output_.RunPanelScript(
      CompleteScript(run->id, run->size, GetTickCount64() - run->startTick, run->start.allSheets));
}

void RunController::Refuse(std::wstring_view code, std::wstring_view message) {
  output_.RunPanelScript(ShowRunError(code, message, std::nullopt));
}

void RunController::Fail(std::wstring_view code, std::wstring_view message) {
  const std::shared_ptr<Run> run = run_;
  // A page takes the error of a run that it knows.
  Announce(*run);
  EndRun();
  output_.RunPanelScript(ShowRunError(code, message, run->id));
}

void RunController::Cancel() {
  if (run_ == nullptr) return;
  AbandonRun();
  output_.RunPanelScript(CancelledScript());
}

void RunController::AbandonRun() {
  if (run_ == nullptr) return;
  const std::shared_ptr<Run> run = run_;
  EndRun();
  if (run->start.viaPanel) output_.PostPanelJson(TranslateAbortForRunMessage(run->id));
}

void RunController::EndRun() {
  if (run_ == nullptr) return;
  const std::shared_ptr<Run> run = std::exchange(run_, nullptr);
  run->flags->Cancel();
  pending_->CancelRun(run->id);
  run->writer->Stop();
  RestoreScreenUpdating(target_.Application());
  WorkbookBusyTable::ReleaseWorkbook(run->workbookKey, context_.get());
}

void RunController::Pause() {
  if (run_ == nullptr) return;
  run_->flags->SetPaused(true);
  run_->pausedBySheetChange = false;
}

void RunController::Resume() {
  if (run_ == nullptr || !run_->flags->IsPaused()) return;
  const std::wstring activeSheet = target_.GetActiveSheetName();
  if (activeSheet != run_->currentSheet) {
    output_.RunPanelScript(ResumeBlockedScript(activeSheet, run_->currentSheet));
    return;
  }
  run_->flags->SetPaused(false);
  const bool bySheetChange = std::exchange(run_->pausedBySheetChange, false);
  output_.RunPanelScript(ResumedScript(bySheetChange ? L"sheet_changed" : L"manual"));
}

void RunController::OnBatchResult(const std::wstring& message) {
  AcceptBatchResult(*pending_, message);
}

void RunController::OnSheetActivated() {
  if (shutDown_) return;
  const std::wstring activeSheet = target_.GetActiveSheetName();
  output_.RunPanelScript(ActiveSheetChangedScript(activeSheet));
  if (run_ == nullptr || run_->start.allSheets || run_->flags->IsPaused()) return;
  if (activeSheet == run_->currentSheet) return;
  run_->flags->SetPaused(true);
  run_->pausedBySheetChange = true;
}

void RunController::PushState() {
  if (run_ == nullptr) return;
  output_.RunPanelScript(RunStartedScript(run_->id));
  output_.RunPanelScript(ReadyScript(run_->id, run_->size));
}

void RunController::BeginShutdownEarly() {
  if (std::exchange(shutDown_, true)) return;
  PaneLog(L"Excel BeginShutdownEarly\r\n");
  // A worker that waits for the page is woken; one that waits for the network is left to end by itself.
  // Either finds nobody to talk to.
  mailbox_->Close();
  EndRun();
  target_.ReleaseReferences();
}

}  // namespace qv
