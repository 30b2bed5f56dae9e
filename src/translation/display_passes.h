#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "translation/cell_finder.h"
#include "translation/unit_pass.h"
#include "translation/write_back.h"

namespace qv {

/// Writes the translations of units in one layout. Host UI thread.
class WritePass final : public UnitPass {
 public:
  /// Reads the frozen rows of the active sheet for the bilingual layout.
  WritePass(WriteBack writeBack, TranslationSession& session, std::vector<std::size_t> units, Layout layout);

  void EndSlice() override;

 private:
  [[nodiscard]] WriteOutcome Change(std::size_t index) override {
    return writeBack_.WriteUnit(index, layout_);
  }
  [[nodiscard]] Step Finish() override;

  WriteBack writeBack_;
  Layout layout_;
};

/// Gives the translations in bilingual cells the session's font. Cells that show the translation alone keep
/// their own and are skipped, as are cells whose text does not hold the translation any more. Host UI thread.
class RestylePass final : public UnitPass {
 public:
  RestylePass(const TargetContext& target, TranslationSession& session, std::vector<std::size_t> units)
      : UnitPass(session, std::move(units)), finder_(target) {}

  void EndSlice() override { finder_.ReleaseReferences(); }

 private:
  [[nodiscard]] WriteOutcome Change(std::size_t index) override;

  CellFinder finder_;
};

}  // namespace qv
