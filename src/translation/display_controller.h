#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "translation/display_mode.h"
#include "translation/restore_rules.h"
#include "translation/start_request.h"
#include "translation/translation_session.h"
#include "translation/ui_slices.h"
#include "translation/unit_pass.h"
#include "workbook/target_context.h"

namespace qv {

/// Switches what the session's cells show after a run: source and translation, the translation, or the
/// source. Requests are worked off in order, in short slices between which the host handles its messages; a
/// host that is busy is asked again later, a bounded number of times. While a run goes on they wait, or are
/// refused where an answer can say so. Host UI thread.
class DisplayController : public std::enable_shared_from_this<DisplayController> {
 public:
  /// `target`, `session` and `output` are valid until `Stop`. `onIdle` is called when the last request is
  /// done.
  DisplayController(std::shared_ptr<PaneContext> pane, PanelOutput& output, TargetContext& target,
                    TranslationSession& session, std::function<void()> onIdle);

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
  /// changed it since. Returns when it is done or nobody wants it any more; the host repaints meanwhile.
  void RestoreBeforeCollect(std::wstring_view sheetName, const std::function<bool()>& stillWanted);

 private:
  enum class Kind { kSwitch, kRestyle, kRestoreAll, kApplyAll, kRestoreOne, kApplyOne };

  struct Request {
    Kind kind;
    DisplayMode mode = DisplayMode::kOriginal;
    DisplayScope scope = DisplayScope::kSession;
    /// Of a single unit.
    std::size_t index = 0;
    TargetFont font{};

    [[nodiscard]] bool IsRestore() const;
  };

  /// The request that is being worked on.
  struct Job {
    Request request;
    std::unique_ptr<UnitPass> pass;
    /// In a row.
    int busyAnswers = 0;
    std::size_t lastPosition = 0;
  };

  void Submit(Request request);
  void Drain();
  void WorkOff();
  /// Takes the first request; it may be answered at once.
  void BeginNext();
  /// What the request is to change, or why there is nothing.
  [[nodiscard]] std::unique_ptr<UnitPass> Prepare(const Request& request, std::wstring_view& message);
  [[nodiscard]] UnitTest ScopeOf(const Request& request, std::wstring_view& message) const;
  [[nodiscard]] std::vector<std::size_t> UnitsOf(const Request& request, std::wstring_view& message) const;
  [[nodiscard]] bool IsSessionsWorkbook() const;
  /// Comes back later. False when it cannot or should not.
  [[nodiscard]] bool Rest(Job& job, UnitPass::Step step);
  void FinishJob();
  void Answer(const Request& request, const DisplayTally& tally, std::wstring_view message);
  void AbandonAll();

  std::shared_ptr<PaneContext> pane_;
  PanelOutput& output_;
  TargetContext& target_;
  TranslationSession& session_;
  std::function<void()> onIdle_;
  UiSlices slices_;
  std::deque<Request> waiting_;
  std::shared_ptr<Job> job_;
  /// Counts what makes a request that is being prepared pointless.
  std::uint64_t serial_ = 0;
  bool held_ = false;
  bool draining_ = false;
  /// A task or the timer brings the next slice.
  bool resting_ = false;
  bool stopped_ = false;
};

}  // namespace qv
