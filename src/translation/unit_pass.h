#pragma once

#include <oaidl.h>

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

#include "translation/display_mode.h"
#include "translation/translation_session.h"
#include "translation/write_back.h"

namespace qv {

/// One walk over some units of the session that changes each in the workbook. Host UI thread.
class UnitPass {
 public:
  enum class Step {
    kMore,
    kDone,
    /// The host is busy; the same step may succeed later.
    kBusy,
  };

  UnitPass(const UnitPass&) = delete;
  UnitPass& operator=(const UnitPass&) = delete;
  virtual ~UnitPass() = default;

  /// Changes the next unit; after the last one a step of what else is to do.
  [[nodiscard]] Step Next();
  /// Counts the units that are left as failed, and goes on behind them. False when none was left: what is to
  /// do after them cannot be done either.
  [[nodiscard]] bool GiveUp();
  /// All units fail, and nothing is touched.
  void Refuse();
  /// Before the host is left alone for a while: nothing of it is held, nothing is half done.
  virtual void EndSlice() = 0;

  [[nodiscard]] const DisplayTally& Tally() const { return tally_; }
  /// Steps that the host took.
  [[nodiscard]] std::size_t Progress() const { return progress_; }

 protected:
  /// `units` in the order in which they are changed; the session outlives the pass.
  UnitPass(TranslationSession& session, std::vector<std::size_t> units)
      : session_(session), units_(std::move(units)) {}

  [[nodiscard]] virtual WriteOutcome Change(std::size_t index) = 0;
  /// What is left to do after the last unit, a step a call.
  [[nodiscard]] virtual Step Finish() { return Step::kDone; }

  [[nodiscard]] TranslationSession& Session() { return session_; }

 private:
  [[nodiscard]] Step ChangeNext();
  void Count(WriteOutcome outcome);

  TranslationSession& session_;
  std::vector<std::size_t> units_;
  /// Units that were dealt with.
  std::size_t position_ = 0;
  std::size_t progress_ = 0;
  bool refused_ = false;
  DisplayTally tally_;
};

/// Goes on with the pass until it is done, the host is busy, nobody wants it any more (then kMore too) or the
/// time of a slice is up.
[[nodiscard]] UnitPass::Step RunSlice(UnitPass& pass, IDispatch* application, TranslationSession& session,
                                      const std::function<bool()>& stillWanted);

}  // namespace qv
