#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/access_tokens.h"
#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "foundation/ui_slices.h"
#include "foundation/ui_timer.h"
#include "translation/display_controller.h"
#include "translation/pending_requests.h"
#include "translation/run_flags.h"
#include "translation/run_scripts.h"
#include "translation/run_worker.h"
#include "translation/run_writer.h"
#include "translation/start_request.h"
#include "translation/terminology_bridge.h"
#include "translation/translation_session.h"
#include "workbook/collector.h"
#include "workbook/target_context.h"

namespace qv {

/// One translation run at a time for one pane: takes the page's start, refuses what must not start, collects,
/// feeds the worker, writes results as they come and keeps the page informed. Host UI thread.
class RunController : private RunListener, private WriteListener {
 public:
  /// `context` is shared with workers that may outlive the pane; the others outlive the controller.
  RunController(std::shared_ptr<PaneContext> context, PanelOutput& output, TargetContext& target,
                AccessTokens& tokens, TranslationSession& session, Patience patience = {});
  RunController(const RunController&) = delete;
  RunController& operator=(const RunController&) = delete;
  /// Shuts down. Not from within one of the controller's own calls of the host.
  ~RunController() override;

  /// "start", "startSelection" or "restart" with the page's whole message; every refusal reaches the page as
  /// an error script. The run may begin later: when a write under way and the restore before it are done.
  void Start(std::wstring_view action, const std::wstring& message);
  void Cancel();
  void Pause();
  /// Goes on when the active sheet is the run's, else tells the page why not.
  void Resume();

  /// The page's answer to a batch request, matched by its id; an unknown one is ignored.
  void OnBatchResult(const std::wstring& message);
  /// The same for its answer to a run's question about terminology.
  void OnTerminologyResult(const std::wstring& message);

  /// The user activated another sheet. The page is told only while it shows a translation view.
  void OnSheetActivated(bool translationViewShown);

  /// A fresh translate page gets what it needs to show a run that is under way or paused.
  void PushState();
  /// A page was loaded: the requests that an earlier one took along unanswered are posted to it.
  void AskPageAgain();

  /// Ends the run for good, once: wakes waiting workers, gives the workbook free, drops what is still to
  /// come. Nothing of the host is touched afterwards; its references are the pane's to release.
  void BeginShutdownEarly();

  /// What the page asks of the cells that a run has written; waits while one goes on.
  [[nodiscard]] DisplayController& Display() { return *display_; }

  [[nodiscard]] bool IsRunning() const { return run_ != nullptr; }

 private:
  /// The run that is under way.
  struct Run {
    std::uint64_t id = 0;
    StartRequest start;
    std::shared_ptr<RunFlags> flags = std::make_shared<RunFlags>();
    std::shared_ptr<RunWriter> writer;
    std::wstring workbookKey;
    RunSize size;
    /// `size` is known.
    bool isCollected = false;
    std::uint64_t startTick = 0;
    /// The sheet that the run was started on, and the one that it works on now.
    std::wstring sourceSheet;
    std::wstring currentSheet;
    /// What the page will be told when the last unit is written.
    RunEnd end;
    bool announced = false;
    bool pausedBySheetChange = false;
  };

  void OnBatchTranslated(std::uint64_t runId, TranslatedBatch batch) override;
  void OnTranslationEnded(std::uint64_t runId, const RunEnd& end) override;
  void OnUnitStarting(std::size_t index) override;
  void OnUnitDone(const TranslatedUnit& unit) override;
  void OnAllWritten() override;
  void OnWritingBroke() override;

  [[nodiscard]] bool IsDuplicate(const std::wstring& clientTraceId);
  void TraceStart(const StartRequest& start, const std::wstring& message) const;
  /// A newer start, or the shutdown, came while the host was being called or the start waited.
  [[nodiscard]] bool IsOutdated(std::uint64_t serial) const { return shutDown_ || serial != startSerial_; }
  /// Runs one step of a start. What neither waits nor has become a run gives the cells free, whatever ended
  /// it.
  void StepStart(std::uint64_t serial, const std::function<void()>& step);
  void EndStep(std::uint64_t serial);
  void ReportBrokenStart();
  void Begin(const StartRequest& start, std::uint64_t serial);
  void WaitForWrites(const StartRequest& start, std::uint64_t serial);
  void RestoreThenCollect(const StartRequest& start, std::uint64_t serial, const std::wstring& sheetName);
  void OnRestored(const StartRequest& start, std::uint64_t serial, const std::wstring& sheetName,
                  bool complete);
  void BeginRun(const StartRequest& start, std::uint64_t serial, std::wstring sheetName);
  /// Ends a start that waits, or that is calling the host in this very moment. False when there is none.
  [[nodiscard]] bool DropStart();
  void DropWaitingStart();
  /// Has no id yet.
  [[nodiscard]] std::shared_ptr<Run> NewRun(const StartRequest& start, WriteBack writeBack,
                                            std::wstring sheetName);
  [[nodiscard]] bool Collect(Run& run);
  void Announce(Run& run);
  [[nodiscard]] RunJob JobOf(const Run& run) const;
  /// What the worker calls for the run's terminology.
  [[nodiscard]] TerminologySource TerminologyOf(const Run& run) const;

  void Refuse(std::wstring_view code, std::wstring_view message);
  void Fail(std::wstring_view code, std::wstring_view message);
  void Complete();
  void AbandonRun();
  /// Takes the run away from its worker and its writer and frees the workbook. Calls nothing of the host.
  std::shared_ptr<Run> StopRun();
  /// What a run leaves to be put back; the last step of its end, for the host may bring a new start in it.
  void RestoreHost();
  void SettleHost();
  void RepayHost();

  std::shared_ptr<PaneContext> context_;
  PanelOutput& output_;
  TargetContext& target_;
  AccessTokens& tokens_;
  TranslationSession& session_;
  std::shared_ptr<PendingRequests> pending_ = std::make_shared<PendingRequests>();
  std::shared_ptr<TerminologyBridge> terminology_;
  std::shared_ptr<RunMailbox> mailbox_;
  Patience patience_;
  std::shared_ptr<DisplayController> display_;

  /// The last run id that was given out.
  std::uint64_t runCounter_ = 0;
  std::uint64_t startSerial_ = 0;
  std::wstring lastStartTraceId_;
  std::uint64_t lastStartTick_ = 0;
  /// The newest start goes on later.
  bool startWaits_ = false;
  /// A step of the newest start is on the stack, and no run has come of it yet.
  bool startSteps_ = false;
  /// It was cancelled there, and gives free what it holds when it ends.
  bool stepCancelled_ = false;
  UiSlices startPause_;
  std::shared_ptr<Run> run_;
  UiTimer repayTimer_;
  int repaysLeft_ = 0;
  bool shutDown_ = false;
};

}  // namespace qv
