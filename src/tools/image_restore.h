#pragma once

#include <oaidl.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/image_job.h"
#include "tools/image_results.h"
#include "tools/image_undo.h"
#include "workbook/target_context.h"

namespace qv {

/// Puts the snapshots of a batch back, newest first, on whichever sheets of the workbook they belong to. They
/// leave the list one by one as they are restored; those without a picture leave it as well. The list may
/// change between two slices: what was cleared or restored meanwhile is passed over, what came is not meant.
class ImageBatchRestore final : public ImageJob {
 public:
  /// Both outlive the job.
  ImageBatchRestore(const TargetContext& target, ImageUndo& undo) : target_(target), undo_(undo) {}

  [[nodiscard]] bool RunSlice() override;
  /// Logs the counts too.
  [[nodiscard]] std::wstring Result() const override;

 private:
  void Restore(const ImageSnapshot& snapshot);
  /// The reason why it failed; empty when it is restored, and the snapshot gone.
  [[nodiscard]] std::wstring_view TryRestore(const ImageSnapshot& snapshot);
  void NoteFailure(const ImageSnapshot& snapshot, std::wstring_view reason);

  const TargetContext& target_;
  ImageUndo& undo_;
  /// Snapshots from this serial on have had their turn. It begins at the newest there is at the first slice.
  std::uint64_t done_ = ImageUndo::kAll;
  std::size_t restored_ = 0;
  std::vector<std::wstring> failedReasons_;
};

}  // namespace qv
