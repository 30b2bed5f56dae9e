#pragma once

#include <cstddef>
#include <memory>
#include <optional>
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
};

/// The snapshots of the pictures that one pane replaced. Platform-free.
class ImageUndo {
 public:
  /// `maxBytes` is what all snapshots together may hold; beyond it the oldest pictures are given up.
  explicit ImageUndo(std::size_t maxBytes = std::size_t{512} << 20) : maxBytes_(maxBytes) {}

  /// Outside of batches a picture has two snapshots at most: the first one, which is the picture that it
  /// began with, and the newest.
  void Keep(ImageSnapshot snapshot);

  /// Takes the newest snapshot of a picture; nothing when there is none with a picture in it.
  [[nodiscard]] std::optional<ImageSnapshot> TakeNewest(const ImageAnchor& anchor, const UndoBook& book);

  /// Takes all snapshots of the batch run, newest first.
  [[nodiscard]] std::vector<ImageSnapshot> TakeBatch();
  void ClearBatch();

  /// Puts back what was taken and could not be restored, behind the others.
  void PutBack(ImageSnapshot snapshot) { snapshots_.push_back(std::move(snapshot)); }

  /// A picture has become another shape: its snapshots follow it.
  void Follow(const ImageAnchor& from, const ImageAnchor& to, const UndoBook& book);

 private:
  [[nodiscard]] static bool IsOf(const ImageSnapshot& snapshot, const ImageAnchor& anchor,
                                 const UndoBook& book);
  void DropSecondOf(const ImageSnapshot& snapshot);
  void GiveUpOldest();

  std::size_t maxBytes_;
  /// Oldest first.
  std::vector<ImageSnapshot> snapshots_;
};

}  // namespace qv
