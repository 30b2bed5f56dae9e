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
  /// How the cells were written last, and what translations in bilingual cells look like.
  Layout layout = Layout::kTarget;
  TargetFont font;
  /// The workbook that the units lie in: its key, and the pane's pin at that time. A workbook saved under
  /// another name has another key; a pane without a pin of its own gets a new one at each request.
  std::wstring workbookKey;
  std::uint64_t pinSerial = 0;

  /// Counts the contents: a write that was under way while they were replaced must not touch the new ones.
  std::uint64_t generation = 0;

  /// Begins a session with what a run has collected.
  void Replace(std::vector<CellUnit> newUnits, std::vector<std::wstring> newWarnings) {
    ++generation;
    units = std::move(newUnits);
    warnings = std::move(newWarnings);
    previousRowHeights.clear();
  }
};

}  // namespace qv
