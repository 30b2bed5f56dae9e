#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>

#include "foundation/pane_context.h"
#include "foundation/ui_slices.h"
#include "translation/run_translation.h"
#include "translation/write_back.h"
#include "workbook/target_context.h"

namespace qv {

/// Hears how the writing of a run goes on. Host UI thread.
class WriteListener {
 public:
  virtual ~WriteListener() = default;
  virtual void OnUnitStarting(std::size_t index) = 0;
  /// Written, refused or given up; `unit.skipped` for one that needed nothing.
  virtual void OnUnitDone(const TranslatedUnit& unit) = 0;
  /// Everything that was added has been done, and `Finish` was called.
  virtual void OnAllWritten() = 0;
  /// Writing cannot go on (no memory); nothing more is written.
  virtual void OnWritingBroke() = 0;
};

/// Writes a run's finished batches in order, in short slices between which the host handles its messages. A
/// host that is busy is asked again later; after a bounded number of busy answers in a row the first waiting
/// batch is given up; its translations stay in the session, where they can be applied later. Host UI thread.
class RunWriter : public std::enable_shared_from_this<RunWriter> {
 public:
  /// `target`, `session` and `listener` are valid until `Stop`.
  RunWriter(std::shared_ptr<PaneContext> pane, const TargetContext& target, TranslationSession& session,
            WriteBack writeBack, Layout layout, WriteListener& listener, Patience patience);

  /// Takes a batch and writes as far as the host lets.
  void Add(TranslatedBatch batch);
  /// No more batches will come.
  void Finish();
  /// Nothing more is written or told.
  void Stop();

 private:
  enum class Slice { kAllTaken, kTimeIsUp, kHostBusy };

  void Drain();
  /// Does what comes after a slice.
  void GoOn(Slice slice);
  void Break();
  [[nodiscard]] Slice WriteSlice();
  [[nodiscard]] Slice WriteWaiting();
  [[nodiscard]] bool WriteOne(const TranslatedUnit& unit);
  /// Puts the translation into the session. False when there is none to write.
  [[nodiscard]] bool KeepTranslation(const TranslatedUnit& unit);
  void ContinueSoon();
  void RetryLater();
  [[nodiscard]] bool RestFor(UINT delayMs);
  [[nodiscard]] std::function<void()> Continuation();
  void Continue();
  void GiveUpBatch();

  const TargetContext& target_;
  TranslationSession& session_;
  WriteBack writeBack_;
  Layout layout_;
  WriteListener& listener_;
  Patience patience_;
  UiSlices slices_;
  std::deque<TranslatedBatch> waiting_;
  /// Position within the first waiting batch.
  std::size_t nextUnit_ = 0;
  /// In a row.
  int busyAnswers_ = 0;
  bool finishing_ = false;
  bool draining_ = false;
  /// A task or the timer brings the next slice.
  bool resting_ = false;
  bool stopped_ = false;
};

}  // namespace qv
