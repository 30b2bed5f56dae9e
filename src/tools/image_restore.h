#pragma once

#include <oaidl.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "tools/image_job.h"
#include "tools/image_results.h"
#include "tools/image_undo.h"
#include "workbook/target_context.h"

namespace qv {

/// Puts the snapshots of a batch back, newest first, on whichever sheets of the workbook they belong to.
/// Those that could not be restored stay in the undo list, but for those without a picture.
class ImageBatchRestore final : public ImageJob {
 public:
  /// Both outlive the job. Takes the batch off the list.
  ImageBatchRestore(const TargetContext& target, ImageUndo& undo)
      : target_(target), undo_(undo), waiting_(undo.TakeBatch()) {}
  ~ImageBatchRestore() override;

  [[nodiscard]] bool RunSlice() override;
  /// Logs the counts too.
  [[nodiscard]] std::wstring Result() const override;

 private:
  void Restore(ImageSnapshot& snapshot);
  /// The reason why it failed; empty when it is restored.
  [[nodiscard]] std::wstring_view TryRestore(const ImageSnapshot& snapshot);

  const TargetContext& target_;
  ImageUndo& undo_;
  /// Newest first; the next one is at `next_`.
  std::vector<ImageSnapshot> waiting_;
  std::size_t next_ = 0;
  std::vector<ImageSnapshot> failed_;
  std::size_t restored_ = 0;
  std::vector<std::wstring> failedReasons_;
};

}  // namespace qv
