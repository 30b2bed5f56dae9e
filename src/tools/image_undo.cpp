#include "tools/image_undo.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace qv {

bool ImageUndo::IsOf(const ImageSnapshot& snapshot, const ImageAnchor& anchor, const UndoBook& book) {
  return snapshot.book.IsSame(book) && IsSamePicture(snapshot.anchor, anchor);
}

std::uint64_t ImageUndo::Keep(ImageSnapshot snapshot) {
  snapshot.serial = lastSerial_ + 1;
  snapshots_.push_back(std::move(snapshot));
  return ++lastSerial_;
}

void ImageUndo::Settle() noexcept {
  if (snapshots_.empty()) return;
  if (!snapshots_.back().inBatch) DropBetweenFirstAndNewest();
  GiveUpOldest();
}

void ImageUndo::DropBetweenFirstAndNewest() noexcept {
  const std::uint64_t newest = snapshots_.back().serial;
  const auto isAlike = [&](const ImageSnapshot& older) {
    return !older.inBatch && older.serial != newest &&
           IsOf(older, snapshots_.back().anchor, snapshots_.back().book);
  };
  // The newest one stays where it is while those ahead of it are looked at.
  const auto end = std::prev(snapshots_.end());
  const auto first = std::find_if(snapshots_.begin(), end, isAlike);
  if (first == end) return;
  snapshots_.erase(std::remove_if(std::next(first), end, isAlike), end);
}

void ImageUndo::GiveUpOldest() noexcept {
  std::size_t bytes = 0;
  for (auto snapshot = snapshots_.rbegin(); snapshot != snapshots_.rend(); ++snapshot) {
    bytes += snapshot->png.size();
    if (bytes > maxBytes_) snapshot->png = {};
  }
  // A batch counts what it cannot restore; alone an empty snapshot is good for nothing.
  std::erase_if(snapshots_,
                [](const ImageSnapshot& snapshot) { return !snapshot.inBatch && snapshot.png.empty(); });
}

void ImageUndo::Drop(std::uint64_t serial) noexcept {
  std::erase_if(snapshots_, [&](const ImageSnapshot& snapshot) { return snapshot.serial == serial; });
}

const ImageSnapshot* ImageUndo::FindNewest(const ImageAnchor& anchor, const UndoBook& book) const {
  const auto found = std::find_if(snapshots_.rbegin(), snapshots_.rend(), [&](const ImageSnapshot& snapshot) {
    return !snapshot.png.empty() && IsOf(snapshot, anchor, book);
  });
  return found == snapshots_.rend() ? nullptr : &*found;
}

const ImageSnapshot* ImageUndo::FindInBatch(std::uint64_t before) const {
  const auto found = std::find_if(snapshots_.rbegin(), snapshots_.rend(), [&](const ImageSnapshot& snapshot) {
    return snapshot.inBatch && snapshot.serial < before;
  });
  return found == snapshots_.rend() ? nullptr : &*found;
}

void ImageUndo::ClearBatch() noexcept {
  std::erase_if(snapshots_, [](const ImageSnapshot& snapshot) { return snapshot.inBatch; });
}

void ImageUndo::Follow(const ImageAnchor& from, const ImageAnchor& to, const UndoBook& book) {
  const auto isMeant = [&](const ImageSnapshot& snapshot) { return IsOf(snapshot, from, book); };
  std::vector<ImageAnchor> anchors(static_cast<std::size_t>(std::ranges::count_if(snapshots_, isMeant)), to);
  for (ImageSnapshot& snapshot : snapshots_) {
    if (!isMeant(snapshot)) continue;
    snapshot.anchor = std::move(anchors.back());
    anchors.pop_back();
  }
}

}  // namespace qv
