#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "workbook/cell_unit.h"

namespace qv {

/// The units of one pane's current session with all that later steps need of them: shared by runs,
/// write-back, restore and previews, so that nobody keeps a second array. Host UI thread.
struct TranslationSession {
  std::vector<CellUnit> units;
  std::vector<std::wstring> warnings;
  /// Heights in points of rows that write-back has changed, by sheet and 1-based row, as they were before.
  std::map<std::pair<std::wstring, std::int32_t>, double> previousRowHeights;

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
