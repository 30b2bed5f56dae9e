#pragma once

#include <oaidl.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/variant.h"
#include "translation/translation_session.h"
#include "workbook/cell_unit.h"
#include "workbook/target_context.h"

namespace qv {

/// Keeps rows tall enough for bilingual cells, one run; a row is fitted once, after its last cell. Rows never
/// shrink, frozen and hidden rows keep their height, and former heights go into the session. Host UI thread.
class RowFitter {
 public:
  /// Both outlive the fitter.
  RowFitter(const TargetContext& target, TranslationSession& session) : target_(target), session_(session) {}

  /// Reads how many rows of the target window's active sheet are frozen. A window tells it of no other sheet;
  /// for these the session keeps what was read when they were shown.
  void NoteFrozenRows();

  /// Before a cell of the row is written: notes the row's height, and fits the row written before.
  void BeginCell(const CellUnit& unit, IDispatch* cell);
  /// The cell shows `text` now.
  void EndCell(IDispatch* cell, std::wstring_view text);
  /// Fits the row whose cells were written last. Nothing when there is none.
  void FinishRow();

 private:
  /// The row that is being written.
  struct OpenRow {
    std::wstring sheetName;
    std::int32_t row = 0;
    ComPtr<IDispatch> range;
    /// Points, before the first of its cells was written.
    double previous = 0.0;
    /// What was written; needed where the host cannot fit the row itself.
    std::vector<std::pair<ComPtr<IDispatch>, std::wstring>> cells;
  };

  [[nodiscard]] bool IsFrozen(const OpenRow& row) const;
  void KeepHeight(const OpenRow& row);
  void Fit(const OpenRow& row);
  void FitByEstimate(const OpenRow& row);
  [[nodiscard]] bool Grow(const OpenRow& row, double height);

  const TargetContext& target_;
  TranslationSession& session_;
  std::wstring workbookKey_;
  std::optional<OpenRow> open_;
};

}  // namespace qv
