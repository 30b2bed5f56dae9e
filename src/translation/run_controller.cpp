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

/// How long a busy host is left alone before it is asked again to take its settings back.
constexpr UINT kRepayMs = 1000;
constexpr int kMostRepays = 120;

constexpr std::wstring_view kClientProduct = L"excel";

std::wstring_view UsageKindOf(const StartRequest& start) {
  return start.selection ? L"translate_selection" : L"translate_full";
}

}  // namespace

RunController::RunController(std::shared_ptr<PaneContext> context, PanelOutput& output, TargetContext& target,
                             AccessTokens& tokens, TranslationSession& session)
    : context_(std::move(context)),
      output_(output),
      target_(target),
      tokens_(tokens),
      session_(session),
      terminology_(std::make_shared<TerminologyBridge>(context_, output)),
      mailbox_(std::make_shared<RunMailbox>(static_cast<RunListener&>(*this))),
      display_(std::make_shared<DisplayController>(context_, output_, target_, session_,
                                                   [this] { SettleHost(); })) {}

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
  const std::uint64_t serial = ++startSerial_;
  AbandonRun();
  display_->Hold();
  Begin(start, serial);
  if (run_ == nullptr && serial == startSerial_) display_->Release();
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

void RunController::Begin(const StartRequest& start, std::uint64_t serial) {
  // The host may run messages inside any call, and with them a newer start or the pane's end; what counts is
  // asked of it first, and nothing is claimed until then.
  if (IsOutdated(serial)) return;
  if (target_.Application() == nullptr) {
    return Refuse(L"app_not_connected", L"Excel Application not connected");
  }
  // A window that was closed meanwhile must not make the sheet of the new one look missing.
  const bool workbookBound = target_.RefreshPin();
  const bool hasSheet = target_.GetActiveSheetDispatch() != nullptr;
  if (IsOutdated(serial)) return;
  if (!hasSheet) return Refuse(L"no_active_sheet", L"没有活动工作表");
  std::wstring sheetName = target_.GetActiveSheetName();
  if (IsOutdated(serial)) return;
  RestoreBeforeCollect(start, sheetName, serial);
  if (IsOutdated(serial)) return;
  if (start.restart) session_.Replace({}, {});
  WriteBack writeBack(target_, output_, session_, start.font);
  writeBack.PrepareLayout(start.bilingual ? Layout::kDual : Layout::kTarget);
  if (IsOutdated(serial)) return;
  if (!workbookBound) {
    return Refuse(L"workbook_unavailable", L"无法确定当前窗口的工作簿，请重新打开任务窗格后再试");
  }
  if (!WorkbookBusyTable::TryClaimWorkbook(target_.WorkbookKey(), context_.get())) {
    return Refuse(L"workbook_busy", L"同一工作簿的另一个窗口正在翻译，请稍候再试");
  }

  const std::shared_ptr<Run> run = NewRun(start, std::move(writeBack), std::move(sheetName));
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

void RunController::RestoreBeforeCollect(const StartRequest& start, std::wstring_view sheetName,
                                         std::uint64_t serial) {
  // Without a name there is no telling which cells are meant, and nothing means all.
  if (!start.allSheets && sheetName.empty()) return;
  display_->RestoreBeforeCollect(start.allSheets ? std::wstring_view() : sheetName,
                                 [this, serial] { return !IsOutdated(serial); });
}

std::shared_ptr<RunController::Run> RunController::NewRun(const StartRequest& start, WriteBack writeBack,
                                                          std::wstring sheetName) {
  auto run = std::make_shared<Run>();
  run->id = ++runCounter_;
  run->start = start;
  run->workbookKey = target_.WorkbookKey();
  run->startTick = GetTickCount64();
  run->sourceSheet = std::move(sheetName);
  run->currentSheet = run->sourceSheet;
  const Layout layout = start.bilingual ? Layout::kDual : Layout::kTarget;
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
  const auto stillWanted = [this, &run] { return run_.get() == &run; };
  const bool collected = CollectForRun(run.start, run.id, target_, output_, *context_, stillWanted, result);
  // The host may have taken the pane away meanwhile.
  if (run_.get() != &run) return false;
  if (!collected) {
    Fail(L"", result.error);
    return false;
  }
  run.size = {result.cells, result.units.size()};
  run.isCollected = true;
  if (!result.sheetName.empty()) run.sourceSheet = run.currentSheet = result.sheetName;
  session_.Replace(std::move(result.units), std::move(result.warnings));
  session_.layout = run.start.bilingual ? Layout::kDual : Layout::kTarget;
  session_.font = run.start.font;
  session_.workbookKey = run.workbookKey;
  session_.pinSerial = target_.PinSerial();
  return true;
}

RunJob RunController::JobOf(const Run& run) const {
  RunJob job;
  job.pane = context_;
  job.mailbox = mailbox_;
  job.flags = run.flags;
  for (const CellUnit& unit : session_.units) {
    job.texts.texts.emplace_back(unit.WorkText());
    job.texts.unitIds.push_back(unit.UnitId());
  }
  job.head.sourceLang = run.start.sourceLang;
  job.head.targetLang = run.start.targetLang;
  job.head.usageKind = UsageKindOf(run.start);
  job.head.clientProduct = kClientProduct;
  job.head.clientTraceId = run.start.clientTraceId;
  job.head.runId = run.id;
  job.terminology = TerminologyOf(run);
  job.access = {HostSession::Get().Endpoint(), tokens_.Transport(), BuildClientContext(GatherClientFacts())};
  if (run.start.viaPanel) job.pending = pending_;
  job.output = &output_;
  return job;
}

TerminologySource RunController::TerminologyOf(const Run& run) const {
  return [bridge = terminology_, flags = run.flags, choice = run.start.terminology, runId = run.id,
          hasToken = !tokens_.Transport().empty()](const std::vector<std::wstring>& texts) {
    const TerminologyHelp help{[&](const TerminologyChoice& wanted, const std::vector<std::wstring>& corpus) {
                                 return bridge->Resolve(wanted, corpus, runId, *flags);
                               },
                               &PaneLog};
    return ApplyTerminologyForRun(choice, hasToken, texts, help);
  };
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
  if (activeSheet != run->sourceSheet) {
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
  if (shutDown_) return;
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
  repayTimer_.Stop();
  if (run_ == nullptr) return;
  StopRun();
  RestoreScreenUpdating(target_.Application());
}

}  // namespace qv
