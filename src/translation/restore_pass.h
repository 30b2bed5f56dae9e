#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "translation/restore_rules.h"
#include "translation/translation_session.h"
#include "translation/unit_pass.h"
#include "workbook/cell_finder.h"
#include "workbook/target_context.h"

namespace qv {

enum class RestoreRule {
  /// The user wants the source back, whatever the cell shows.
  kAsked,
  /// Nobody asked: a cell that shows something else than what was written is left alone and counts as failed.
  kOnlyOurs,
};

/// Puts written units back, last one first: source text or former formula, former font, and at the end the
/// heights of all rows in which no written unit is left. A unit that fails keeps its mark, a row its height
/// for the next restore. Host UI thread.
class RestorePass final : public UnitPass {
 public:
  /// `target` and `session` outlive the pass. `units` in the session's order; `wholeSession` is for the log.
  RestorePass(const TargetContext& target, TranslationSession& session, std::vector<std::size_t> units,
              RestoreRule rule, bool wholeSession);

  void EndSlice() override { finder_.ReleaseReferences(); }

 private:
  [[nodiscard]] WriteOutcome Change(std::size_t index) override;
  [[nodiscard]] Step Finish() override;

  [[nodiscard]] CellWriteResult Restore(std::size_t index, const CellUnit& unit);
  [[nodiscard]] CellWriteResult RestoreCell(std::size_t index, const CellUnit& unit);
  [[nodiscard]] CellWriteResult RestoreRow(const SheetRow& row);
  void LogRows() const;

  const TargetContext& target_;
  CellFinder finder_;
  RestoreRule rule_;
  bool wholeSession_;
  /// Rows whose height is still to be put back, last one first.
  std::vector<SheetRow> rows_;
  bool rowsKnown_ = false;
  bool changedAnything_ = false;
  std::size_t heightsBefore_ = 0;
  std::size_t heightsRestored_ = 0;
};

}  // namespace qv
