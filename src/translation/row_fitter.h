#pragma once

#include <oaidl.h>

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/variant.h"
#include "translation/translation_session.h"
#include "workbook/automation.h"
#include "workbook/cell_unit.h"
#include "workbook/target_context.h"

namespace qv {

/// Keeps rows tall enough for bilingual cells, one run; a row is fitted once, after its last cell. Rows never
/// shrink, frozen and hidden rows keep their height, and former heights go into the session. A row that the
/// host was too busy to fit stays due. Host UI thread.
class RowFitter {
 public:
  /// Both outlive the fitter.
  RowFitter(const TargetContext& target, TranslationSession& session) : target_(target), session_(session) {}

  /// Reads how many rows of the target window's active sheet are frozen. A window tells it of no other sheet;
  /// for these the session keeps what was read when they were shown.
  void NoteFrozenRows();

  /// Before a cell of the row is written: notes the row's height, and fits the row written before. Anything
  /// but good means that the host is busy, and that the cell must not be written now.
  [[nodiscard]] HostAnswer BeginCell(const CellUnit& unit, IDispatch* cell);
  /// The unit's cell shows `text` now.
  void EndCell(const CellUnit& unit, std::wstring_view text);
  /// Fits the row whose cells were written last and those that are due, as far as the host lets. Holds
  /// nothing of the host afterwards.
  void FinishRows();

  [[nodiscard]] bool HasDueRows() const { return !due_.empty(); }
  /// What is due stays as it is.
  void GiveUpDueRows() { due_.clear(); }

 private:
  /// A row that is being written, or due.
  struct Row {
    std::wstring sheetName;
    std::int32_t number = 0;
    /// Points, before the first of its cells was written.
    double previous = 0.0;
    /// Columns and what was written there; needed where the host cannot fit the row itself.
    std::vector<std::pair<std::int32_t, std::wstring>> cells;
    /// The host's object, not kept while the row is due.
    ComPtr<IDispatch> range;

    [[nodiscard]] bool IsOf(const CellUnit& unit) const {
      return number == unit.row && sheetName == unit.SheetName();
    }
  };

  /// The row of the unit that was due, else a new one with its height; nothing when the host is busy.
  [[nodiscard]] std::optional<Row> OpenRow(const CellUnit& unit, IDispatch* cell, HostAnswer& answer);
  /// Fits the open row, or makes it due.
  void CloseRow();
  /// All that follow give how the host refused; only a busy answer leaves something to do.
  [[nodiscard]] HostAnswer Settle(const Row& row);
  [[nodiscard]] HostAnswer FindRange(Row& row) const;
  [[nodiscard]] bool IsFrozen(const Row& row) const;
  [[nodiscard]] HostAnswer KeepHeight(const Row& row);
  [[nodiscard]] HostAnswer Fit(const Row& row);
  [[nodiscard]] HostAnswer FitByEstimate(const Row& row);
  /// The height that the written texts need, in points.
  [[nodiscard]] double EstimatedHeight(const Row& row, HostAnswer& answer) const;
  [[nodiscard]] HostAnswer Grow(const Row& row, double height);

  const TargetContext& target_;
  TranslationSession& session_;
  std::wstring workbookKey_;
  std::optional<Row> open_;
  /// In the order in which they were written.
  std::deque<Row> due_;
};

}  // namespace qv
