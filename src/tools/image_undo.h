#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tools/image_anchor.h"
#include "tools/undo_log.h"

namespace qv {

/// A picture as it was before it was replaced.
struct ImageSnapshot {
  /// Of the picture that is in its place now.
  ImageAnchor anchor;
  UndoBook book;
  /// A PNG file; empty when the picture could not be exported.
  std::vector<std::byte> png;
  /// Belongs to the batch run, which is undone as one.
  bool inBatch = false;
  /// Its number in the list, greater than those of all older ones; 0 while it is in none.
  std::uint64_t serial = 0;
};

/// The snapshots of the pictures that one pane replaced. A snapshot is in the list before its picture is
/// touched and until it is back on the sheet, so that nothing that goes wrong in between loses it.
/// Platform-free.
class ImageUndo {
 public:
  /// `maxBytes` is what all snapshots together may hold; beyond it the oldest pictures are given up.
  explicit ImageUndo(std::size_t maxBytes = std::size_t{512} << 20) : maxBytes_(maxBytes) {}

  /// Keeps one more snapshot, which costs no older one its place yet; its serial.
  [[nodiscard]] std::uint64_t Keep(ImageSnapshot snapshot);
  /// The newest snapshot's picture has been replaced. Outside of batches a picture has two snapshots at most:
  /// the first one, which is the picture that it began with, and the newest.
  void Settle() noexcept;
  /// Gives up one snapshot; nothing happens when it is gone already.
  void Drop(std::uint64_t serial) noexcept;

  /// The newest snapshot of a picture; null when there is none with a picture in it. Like every pointer into
  /// the list good until the list changes; so is the next one's.
  [[nodiscard]] const ImageSnapshot* FindNewest(const ImageAnchor& anchor, const UndoBook& book) const;

  static constexpr std::uint64_t kAll = UINT64_MAX;
  /// The newest snapshot of the batch run that is older than `before`; null at the end.
  [[nodiscard]] const ImageSnapshot* FindInBatch(std::uint64_t before = kAll) const;
  void ClearBatch() noexcept;

  /// A picture has become another shape: its snapshots follow it, all of them or, when memory runs out, none.
  void Follow(const ImageAnchor& from, const ImageAnchor& to, const UndoBook& book);

 private:
  [[nodiscard]] static bool IsOf(const ImageSnapshot& snapshot, const ImageAnchor& anchor,
                                 const UndoBook& book);
  void DropBetweenFirstAndNewest() noexcept;
  void GiveUpOldest() noexcept;

  std::size_t maxBytes_;
  std::uint64_t lastSerial_ = 0;
  /// Oldest first.
  std::vector<ImageSnapshot> snapshots_;
};

}  // namespace qv
