#pragma once

#include <string>

#include "tools/undo_log.h"
#include "workbook/cell_access.h"
#include "workbook/cell_content.h"

namespace qv {

/// Puts content into a cell already found and keeps `record`, which says where it is and what it held. The
/// record comes first: what may have been written can be taken back, whatever happens meanwhile; it goes away
/// again when the cell stayed as it was for sure. `formerFormat` is the cell's number format where the
/// content may change it, else empty. Host UI thread, the host's alerts off.
[[nodiscard]] bool PutUndoably(UndoLog& undo, const CellTarget& place, UndoRecord record,
                               const CellContent& content, const std::wstring& formerFormat);

}  // namespace qv
