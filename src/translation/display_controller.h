#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string_view>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "foundation/ui_slices.h"
#include "translation/display_request.h"
#include "translation/start_request.h"
#include "translation/translation_session.h"
#include "translation/unit_pass.h"
#include "workbook/target_context.h"

namespace qv {

/// Switches what the session's cells show after a run: source and translation, the translation, or the
/// source. Requests are worked off in order, in short slices between which the host handles its messages; a
/// host that is busy is asked again later, a bounded number of times. While a run goes on they wait, or are
/// refused where an answer can say so; the restore before a run goes the same way. Host UI thread.
class DisplayController : public std::enable_shared_from_this<DisplayController> {
 public:
  /// Hears whether everything was tried; false when the host was too busy to the end. It may begin the next.
  using RestoreEnd = std::function<void(bool complete)>;

  /// `target`, `session` and `output` are valid until `Stop`. `onIdle` is called when the last request is
  /// done.
  DisplayController(std::shared_ptr<PaneContext> pane, PanelOutput& output, TargetContext& target,
                    TranslationSession& session, std::function<void()> onIdle, Patience patience);

  /// Words as the page sends them; answered with "onExcelDisplayModeDone".
  void SetMode(std::wstring_view mode, std::wstring_view scope);
  /// For the translations in bilingual cells, now and later; answered with "onTargetStyleDone".
  void SetTargetStyle(TargetFont font);
  /// Both are answered with "onBatchDone".
  void RestoreAll();
  void ApplyAll();
  /// One unit by its 0-based index; an unknown one has no effect.
  void RestoreUnit(std::int32_t index);
  void ApplyUnit(std::int32_t index);

  /// A run claims the cells. What is under way and what waits is ended and answered.
  void Hold();
  /// The run is over.
  void Release();
  /// Nothing more is written or told.
  void Stop();

  /// Puts back what an earlier run wrote to the sheet (all sheets for an empty name), as far as nobody has
  /// changed it since; what is short is done when this returns. Only while held; `Hold` drops it without a
  /// word. The target is pinned.
  void RestoreBeforeCollect(std::wstring_view sheetName, RestoreEnd restored);

 private:
  using Kind = DisplayRequest::Kind;

  /// The request that is being worked on.
  struct Job {
    DisplayRequest request;
    /// Of a restore before a run; else empty.
    RestoreEnd restored{};
    bool isPlanned = false;
    DisplayPlan plan{};
    bool gaveUp = false;
    /// In a row.
    int busyAnswers = 0;
    std::size_t lastProgress = 0;

    [[nodiscard]] DisplayTally Tally() const;
  };

  void Submit(DisplayRequest request);
  void Drain();
  /// Comes back when the call of the host that brought this moment may be over: a run that was ended inside
  /// one of its writes has still to leave that cell.
  void WaitForWrites();
  [[nodiscard]] bool HasWork() const;
  void WorkOff();
  /// Plans the job or does a slice of it.
  [[nodiscard]] UnitPass::Step Advance(const std::shared_ptr<Job>& job);
  /// What is left fails. True when something is to be done even so.
  [[nodiscard]] bool GiveUp(Job& job) const;
  /// Comes back later. False when it cannot or should not.
  [[nodiscard]] bool Rest(Job& job, UnitPass::Step step);
  /// Works on when it is called.
  [[nodiscard]] std::function<void()> Continuation();
  void FinishJob();
  void AbandonAll();

  std::shared_ptr<PaneContext> pane_;
  PanelOutput& output_;
  TargetContext& target_;
  TranslationSession& session_;
  std::function<void()> onIdle_;
  UiSlices slices_;
  Patience patience_;
  std::deque<DisplayRequest> waiting_;
  std::shared_ptr<Job> job_;
  bool held_ = false;
  bool draining_ = false;
  /// A task or the timer brings the next slice.
  bool resting_ = false;
  bool stopped_ = false;
};

}  // namespace qv
