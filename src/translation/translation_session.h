#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "translation/layout.h"
#include "translation/start_request.h"
#include "workbook/cell_unit.h"

namespace qv {

/// A sheet's name and a 1-based row.
using SheetRow = std::pair<std::wstring, std::int32_t>;

/// The units of one pane's current session with all that later steps need of them: shared by runs,
/// write-back, restore and previews, so that nobody keeps a second array. Host UI thread.
struct TranslationSession {
  std::vector<CellUnit> units;
  std::vector<std::wstring> warnings;
  /// Heights in points of rows that write-back has changed, as they were before.
  std::map<SheetRow, double> previousRowHeights;
  /// The last frozen row (1-based) of each sheet known to have one, by workbook key and sheet name. Outlives
  /// the contents: a host tells it of the sheet that is shown, no other.
  std::map<std::pair<std::wstring, std::wstring>, std::int32_t> lastFrozenRows;
  /// How the cells were written last, and what translations in bilingual cells look like.
  Layout layout = Layout::kTarget;
  TargetFont font;
  /// The workbook that the units lie in: its key, and the pane's pin at that time. A workbook saved under
  /// another name has another key; a pane without a pin of its own gets a new one at each request.
  std::wstring workbookKey;
  std::uint64_t pinSerial = 0;

  /// Cells are being written in this very moment. A host may run messages inside a call, and with them a new
  /// start of the page, which waits for it: contents are never replaced under a write.
  bool isBeingWritten = false;

  /// Starts that the page has asked for. What was read of the sheet before one of them may be outdated.
  std::uint64_t starts = 0;

  /// Begins a session with what a run has collected; not while cells are being written.
  void Replace(std::vector<CellUnit> newUnits, std::vector<std::wstring> newWarnings) {
    units = std::move(newUnits);
    warnings = std::move(newWarnings);
    previousRowHeights.clear();
  }
};

}  // namespace qv
