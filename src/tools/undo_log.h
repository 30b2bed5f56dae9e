#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "workbook/cell_content.h"

namespace qv {

/// One cell as it was before a tool wrote it.
struct UndoRecord {
  /// 1-based; a row of 0 marks a record that is skipped.
  std::int32_t row = 0;
  std::int32_t col = 0;
  std::wstring sheetName;
  CellContent previous;
};

/// What the tools of one pane wrote, in order, with a marker ahead of each chat message's edits.
class UndoLog {
 public:
  void Append(UndoRecord record) { records_.push_back(std::move(record)); }

  void PushMarker() { markers_.push_back(records_.size()); }
  /// Number of markers.
  [[nodiscard]] std::size_t Depth() const { return markers_.size(); }

  /// Takes the newest record behind the last marker off the log; nothing when there is none, or no marker.
  [[nodiscard]] std::optional<UndoRecord> TakeNewest();
  /// Gives the last marker up, if there is one; the records behind it then belong to the one before.
  void PopMarker();

 private:
  std::vector<UndoRecord> records_;
  std::vector<std::size_t> markers_;
};

}  // namespace qv
