#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "workbook/cell_content.h"

namespace qv {

/// The workbook in which a tool wrote: its name, and the pane's pin at that time where it is the pinned one.
/// One that was saved under another name since is still the same by its pin; any other is known by its name.
struct UndoBook {
  /// 0 for a workbook that is not the pinned one.
  std::uint64_t pinSerial = 0;
  /// Empty when it could not be read; then nothing tells whether another one is the same.
  std::wstring name;

  /// Whether this is the workbook that is meant now.
  [[nodiscard]] bool IsSame(const UndoBook& now) const {
    return (pinSerial != 0 && pinSerial == now.pinSerial) || (!name.empty() && name == now.name);
  }
};

/// What a write did to the way in which a cell shows numbers ("5%" makes a percentage of it).
struct UndoFormat {
  std::wstring former;
  std::wstring written;
};

/// One cell as it was before a tool wrote it.
struct UndoRecord {
  /// 1-based; a row of 0 marks a record that is skipped.
  std::int32_t row = 0;
  std::int32_t col = 0;
  std::wstring sheetName;
  CellContent previous;
  UndoBook book;
  /// Nothing when the write left the format alone.
  std::optional<UndoFormat> format;
};

/// What the tools of one pane wrote, in order, with a marker ahead of each chat message's edits.
class UndoLog {
 public:
  void Append(UndoRecord record) { records_.push_back(std::move(record)); }

  [[nodiscard]] bool IsEmpty() const { return records_.empty(); }
  /// The newest records, which there must be, oldest first. Only until the log changes.
  [[nodiscard]] std::span<UndoRecord> Newest(std::size_t count) { return std::span(records_).last(count); }
  /// Takes the newest records off again, whatever marker they stand behind.
  void DropNewest(std::size_t count) {
    records_.erase(records_.end() - static_cast<std::ptrdiff_t>(count), records_.end());
  }

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

/// The cells that the last "autofillApply" changed: their records behind one marker, which is there while
/// there is something to undo.
using AutofillUndo = UndoLog;

}  // namespace qv
