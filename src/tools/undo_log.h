#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "workbook/cell_content.h"

namespace qv {

/// The workbook in which a tool wrote: the pane's pin at that time, and the workbook's name. One that was
/// saved under another name since is still the same by its pin; a pane that has no pin knows it by its name.
struct UndoBook {
  std::uint64_t pinSerial = 0;
  std::wstring name;

  /// Whether this is the workbook that is meant now.
  [[nodiscard]] bool IsSame(const UndoBook& now) const {
    return (pinSerial != 0 && pinSerial == now.pinSerial) || name == now.name;
  }
};

/// One cell as it was before a tool wrote it.
struct UndoRecord {
  /// 1-based; a row of 0 marks a record that is skipped.
  std::int32_t row = 0;
  std::int32_t col = 0;
  std::wstring sheetName;
  CellContent previous;
  UndoBook book;
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
