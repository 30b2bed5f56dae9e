#pragma once

#include <oaidl.h>

#include <cstddef>
#include <string>

#include "foundation/panel_output.h"
#include "foundation/variant.h"
#include "translation/bilingual_text.h"
#include "translation/cell_finder.h"
#include "translation/layout.h"
#include "translation/protection_notice.h"
#include "translation/row_fitter.h"
#include "translation/start_request.h"
#include "translation/translation_session.h"
#include "workbook/cell_access.h"
#include "workbook/target_context.h"

namespace qv {

enum class WriteOutcome {
  kWritten,
  /// Nothing to write: no such unit, or no translation.
  kNothing,
  /// Refused; logged, and told once.
  kFailed,
  /// The host is busy; the same call may succeed later.
  kBusy,
};

/// Puts the session's translations into the workbook. One run or one request of the page; host UI thread.
class WriteBack {
 public:
  /// All outlive the object.
  WriteBack(const TargetContext& target, PanelOutput& output, TranslationSession& session, TargetFont font)
      : target_(target),
        session_(session),
        font_(std::move(font)),
        notice_(target, output),
        rows_(target, session),
        finder_(target) {}

  /// Reads what must not change about the active sheet before the first unit is written in `layout`.
  void PrepareLayout(Layout layout);

  /// Writes one unit of the session (0-based) and remembers what was there before its first write. Within a
  /// `HostSlice` of the caller.
  [[nodiscard]] WriteOutcome WriteUnit(std::size_t index, Layout layout);

  /// Counts a unit as failed that the host was too busy to take, without telling the user of protection.
  void GiveUp(std::size_t index, Layout layout);

  /// Adjusts the height of the row written last and of those still due; rows are fitted once, when all their
  /// cells are written.
  void FinishRows() { rows_.FinishRows(); }
  /// The host was too busy to fit some rows; `FinishRows` tries again.
  [[nodiscard]] bool HasDueRows() const { return rows_.HasDueRows(); }
  void GiveUpRows() { rows_.GiveUpDueRows(); }

  /// Lets go of the host's objects that are kept between units.
  void ReleaseReferences() { finder_.ReleaseReferences(); }

 private:
  [[nodiscard]] CellWriteResult WriteCell(CellUnit& unit, Layout layout);
  /// Keeps how the cell looks before its first write. Anything but good means that the host is busy: nothing
  /// is kept then, and nothing may be written.
  [[nodiscard]] HostAnswer CaptureBaseline(CellUnit& unit, IDispatch* cell);
  /// The same before the first bilingual write, the only one that changes the wrapping.
  [[nodiscard]] HostAnswer CaptureWrap(CellUnit& unit, IDispatch* cell);
  [[nodiscard]] CellWriteResult BilingualWrite(CellUnit& unit, const CellTarget& place,
                                               const BilingualValue& value);

  const TargetContext& target_;
  TranslationSession& session_;
  TargetFont font_;
  ProtectionNotice notice_;
  RowFitter rows_;
  CellFinder finder_;
  CellWriteResult lastBusy_;
};

}  // namespace qv
