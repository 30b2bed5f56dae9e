#pragma once

#include <oaidl.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "translation/translation_session.h"
#include "workbook/cell_unit.h"
#include "workbook/target_context.h"

namespace qv {

/// Keeps rows tall enough for bilingual cells, one run. Rows never shrink, frozen rows keep their height, and
/// former heights go into the session. Host UI thread.
class RowFitter {
 public:
  /// Both outlive the fitter.
  RowFitter(const TargetContext& target, TranslationSession& session) : target_(target), session_(session) {}

  /// Reads how many rows of the target window's active sheet are frozen. A window tells it of no other sheet.
  void NoteFrozenRows();

  /// Adjusts the row of a cell that now shows `text`.
  void Fit(const CellUnit& unit, IDispatch* cell, std::wstring_view text);

 private:
  [[nodiscard]] bool IsFrozen(const CellUnit& unit) const;
  void Grow(const CellUnit& unit, IDispatch* row, double previous, double height);
  void FitByEstimate(const CellUnit& unit, IDispatch* cell, IDispatch* row, double previous,
                     std::wstring_view text);

  const TargetContext& target_;
  TranslationSession& session_;
  /// By sheet name; 1-based.
  std::map<std::wstring, std::int32_t, std::less<>> lastFrozenRows_;
};

}  // namespace qv
