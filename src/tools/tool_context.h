#pragma once

#include "foundation/pane_context.h"
#include "tools/undo_log.h"
#include "workbook/target_context.h"

namespace qv {

/// What a tool of one pane works with. Host UI thread.
struct ToolContext {
  /// Which window, workbook and sheet; its Application is there while a tool runs.
  const TargetContext& target;
  PaneContext& pane;
  /// Former contents of the cells that tools wrote.
  UndoLog& undo;
  /// Apart from these, what the last "autofillApply" wrote.
  AutofillUndo& autofill;
};

}  // namespace qv
