#include <windows.h>

#include <utility>

#include "foundation/guard.h"
#include "foundation/host_session.h"
#include "foundation/identity.h"
#include "foundation/logging.h"
#include "translation/error_codes.h"
#include "translation/host_slice.h"
#include "translation/run_collection.h"
#include "translation/run_controller.h"
#include "translation/trace_details.h"
#include "workbook/workbook_busy_table.h"

// From the page's start message to the worker.

namespace qv {
namespace {

/// A page that posts the same start twice within this time means one start.
constexpr std::uint64_t kDuplicateStartMs = 2500;

constexpr std::wstring_view kInternalError = L"internal_error";
constexpr std::wstring_view kClientProduct = L"excel";

std::wstring_view UsageKindOf(const StartRequest& start) {
  return start.selection ? L"translate_selection" : L"translate_full";
}

}  // namespace

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
  ++session_.starts;
  stepCancelled_ = false;
  StepStart(serial, [&] {
    AbandonRun();
    // The end of a run calls the host too.
    if (IsOutdated(serial)) return;
    display_->Hold();
    Begin(start, serial);
  });
}

void RunController::StepStart(std::uint64_t serial, const std::function<void()>& step) {
  if (IsOutdated(serial)) return;
  startWaits_ = false;
  startSteps_ = true;
  try {
    step();
  } catch (...) {
    static_cast<void>(HandleCurrentException(L"RunController::Start"));
    if (!IsOutdated(serial)) {
      startWaits_ = startSteps_ = false;
      display_->Release();
      ReportBrokenStart();
    }
  }
  EndStep(serial);
}

void RunController::EndStep(std::uint64_t serial) {
  if (!IsOutdated(serial)) {
    startSteps_ = false;
    if (!startWaits_ && run_ == nullptr) display_->Release();
  } else if (std::exchange(stepCancelled_, false) && !shutDown_) {
    target_.DropImplicitPin();
    display_->Release();
  }
}

void RunController::ReportBrokenStart() {
  constexpr std::wstring_view kMessage = L"Starting the translation failed";
  if (run_ != nullptr) return Fail(kInternalError, kMessage);
  Refuse(kInternalError, kMessage);
}

bool RunController::DropStart() {
  const bool steps = std::exchange(startSteps_, false);
  const bool waits = std::exchange(startWaits_, false);
  if (!steps && !waits) return false;
  ++startSerial_;
  if (waits) {
    DropWaitingStart();
  } else {
    // What the step holds may be in use by it until it ends.
    stepCancelled_ = true;
  }
  return true;
}

void RunController::DropWaitingStart() {
  startPause_.Stop();
  // Holding again ends the restore.
  display_->Hold();
  display_->Release();
  target_.DropImplicitPin();
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
  if (session_.isBeingWritten) return WaitForWrites(start, serial);
  if (target_.Application() == nullptr) {
    return Refuse(L"app_not_connected", L"Excel Application not connected");
  }
  // A window that was closed meanwhile must not make the sheet of the new one look missing.
  static_cast<void>(target_.RefreshPin());
  const bool hasSheet = target_.GetActiveSheetDispatch() != nullptr;
  if (IsOutdated(serial)) return;
  if (!hasSheet) return Refuse(L"no_active_sheet", L"没有活动工作表");
  const std::wstring sheetName = target_.GetActiveSheetName();
  if (!IsOutdated(serial)) RestoreThenCollect(start, serial, sheetName);
}

void RunController::WaitForWrites(const StartRequest& start, std::uint64_t serial) {
  startWaits_ = startPause_.ContinueAfter(
      kWritePauseMs, [this, start, serial] { StepStart(serial, [&] { Begin(start, serial); }); });
  if (!startWaits_) Refuse(kInternalError, L"SetTimer failed");
}

void RunController::RestoreThenCollect(const StartRequest& start, std::uint64_t serial,
                                       const std::wstring& sheetName) {
  // Without a name there is no telling which cells are meant, and nothing means all.
  if (!start.allSheets && sheetName.empty()) return BeginRun(start, serial, sheetName);
  startWaits_ = true;
  display_->RestoreBeforeCollect(start.allSheets ? std::wstring_view() : sheetName,
                                 [this, start, serial, sheetName](bool complete) {
                                   StepStart(serial, [&] { OnRestored(start, serial, sheetName, complete); });
                                 });
}

void RunController::OnRestored(const StartRequest& start, std::uint64_t serial, const std::wstring& sheetName,
                               bool complete) {
  if (!complete) {
    // What is left in the sheet would be read as source text.
    return start.selection ? Refuse(L"selection_read_failed", L"无法读取选区")
                           : Refuse(L"used_range_read_failed", L"无法读取已用区域");
  }
  // The user may have gone to another sheet while this one was restored.
  std::wstring shown = start.allSheets ? sheetName : target_.GetActiveSheetName();
  if (IsOutdated(serial)) return;
  if (!shown.empty() && shown != sheetName) return RestoreThenCollect(start, serial, shown);
  BeginRun(start, serial, sheetName);
}

void RunController::BeginRun(const StartRequest& start, std::uint64_t serial, std::wstring sheetName) {
  WriteBack writeBack(target_, output_, session_, start.font);
  writeBack.PrepareLayout(start.bilingual ? Layout::kDual : Layout::kTarget);
  if (IsOutdated(serial)) return;
  if (target_.Pinned().workbook == nullptr) {
    return Refuse(L"workbook_unavailable", L"无法确定当前窗口的工作簿，请重新打开任务窗格后再试");
  }
  const std::shared_ptr<Run> run = NewRun(start, std::move(writeBack), std::move(sheetName));
  // From the claim on the run exists, whose end gives the workbook free.
  if (!WorkbookBusyTable::TryClaimWorkbook(run->workbookKey, context_.get())) {
    return Refuse(L"workbook_busy", L"同一工作簿的另一个窗口正在翻译，请稍候再试");
  }
  run_ = run;
  run_->id = ++runCounter_;
  startSteps_ = false;
  output_.RunPanelScript(BlurChatInputScript());
  if (!start.selection) Announce(*run);
  if (!Collect(*run)) return;
  if (start.selection) {
    run->announced = true;
    output_.RunPanelScript(StartedAndReadyScript(run->id, run->size));
  } else {
    output_.RunPanelScript(ReadyScript(run->id, run->size));
  }
  if (!StartRunWorker(JobOf(*run))) Fail(kInternalError, L"CreateThread failed");
}

std::shared_ptr<RunController::Run> RunController::NewRun(const StartRequest& start, WriteBack writeBack,
                                                          std::wstring sheetName) {
  auto run = std::make_shared<Run>();
  run->start = start;
  run->workbookKey = target_.WorkbookKey();
  run->startTick = GetTickCount64();
  run->sourceSheet = std::move(sheetName);
  run->currentSheet = run->sourceSheet;
  const Layout layout = start.bilingual ? Layout::kDual : Layout::kTarget;
  run->writer = std::make_shared<RunWriter>(context_, target_, session_, std::move(writeBack), layout,
                                            static_cast<WriteListener&>(*this), patience_);
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

}  // namespace qv
