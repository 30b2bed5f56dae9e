#include "tools/image_undo.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace qv {

bool ImageUndo::IsOf(const ImageSnapshot& snapshot, const ImageAnchor& anchor, const UndoBook& book) {
  return snapshot.book.IsSame(book) && IsSamePicture(snapshot.anchor, anchor);
}

void ImageUndo::Keep(ImageSnapshot snapshot) {
  if (!snapshot.inBatch) DropSecondOf(snapshot);
  snapshots_.push_back(std::move(snapshot));
  GiveUpOldest();
}

void ImageUndo::DropSecondOf(const ImageSnapshot& snapshot) {
  bool isFirst = true;
  std::erase_if(snapshots_, [&](const ImageSnapshot& older) {
    const bool isOther = older.inBatch || !IsOf(older, snapshot.anchor, snapshot.book);
    return !isOther && !std::exchange(isFirst, false);
  });
}

void ImageUndo::GiveUpOldest() {
  std::size_t bytes = 0;
  for (auto snapshot = snapshots_.rbegin(); snapshot != snapshots_.rend(); ++snapshot) {
    bytes += snapshot->png.size();
    if (bytes > maxBytes_) snapshot->png = {};
  }
}

std::optional<ImageSnapshot> ImageUndo::TakeNewest(const ImageAnchor& anchor, const UndoBook& book) {
  const auto found = std::find_if(snapshots_.rbegin(), snapshots_.rend(), [&](const ImageSnapshot& snapshot) {
    return !snapshot.png.empty() && IsOf(snapshot, anchor, book);
  });
  if (found == snapshots_.rend()) return std::nullopt;
  ImageSnapshot taken = std::move(*found);
  snapshots_.erase(std::next(found).base());
  return taken;
}

std::vector<ImageSnapshot> ImageUndo::TakeBatch() {
  const auto batch = std::stable_partition(snapshots_.begin(), snapshots_.end(),
                                           [](const ImageSnapshot& snapshot) { return !snapshot.inBatch; });
  std::vector<ImageSnapshot> taken(std::make_move_iterator(batch), std::make_move_iterator(snapshots_.end()));
  snapshots_.erase(batch, snapshots_.end());
  std::ranges::reverse(taken);
  return taken;
}

void ImageUndo::ClearBatch() {
  std::erase_if(snapshots_, [](const ImageSnapshot& snapshot) { return snapshot.inBatch; });
}

void ImageUndo::Follow(const ImageAnchor& from, const ImageAnchor& to, const UndoBook& book) {
  for (ImageSnapshot& snapshot : snapshots_) {
    if (IsOf(snapshot, from, book)) snapshot.anchor = to;
  }
}

}  // namespace qv
