#include "tools/image_restore.h"

#include <ranges>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "foundation/ui_slices.h"
#include "tools/image_replace.h"
#include "tools/undo_tools.h"
#include "workbook/cell_access.h"

namespace qv {

ImageBatchRestore::~ImageBatchRestore() {
  // Oldest first, as the list has them.
  for (ImageSnapshot& snapshot : std::views::reverse(failed_))
    undo_.PutBack(std::move(snapshot));
}

bool ImageBatchRestore::RunSlice() {
  const ULONGLONG begin = GetTickCount64();
  do {
    if (next_ == waiting_.size()) return false;
    Restore(waiting_[next_++]);
  } while (GetTickCount64() - begin < kUiSliceMs);
  return next_ < waiting_.size();
}

void ImageBatchRestore::Restore(ImageSnapshot& snapshot) {
  const std::wstring_view reason = TryRestore(snapshot);
  if (reason.empty()) {
    ++restored_;
    return;
  }
  PaneLog(Concat(L"ExcelImageTranslate batch undo failed anchor=", AnchorJson(snapshot.anchor), L" err=",
                 reason, L"\r\n"));
  failedReasons_.emplace_back(reason);
  if (!snapshot.png.empty()) failed_.push_back(std::move(snapshot));
}

std::wstring_view ImageBatchRestore::TryRestore(const ImageSnapshot& snapshot) {
  if (snapshot.png.empty()) return image_error::kMissingUndoSnapshot;
  const ComPtr<IDispatch> sheet = ResolveSheet(target_, snapshot.anchor.sheetName);
  HostAnswer answer;
  if (sheet == nullptr) return image_error::kRestoreFailed;
  if (!snapshot.book.IsSame(BookOfSheet(target_, sheet.Get(), answer))) return image_error::kRestoreFailed;
  const ResolvedAnchor found = ResolveAnchor(sheet.Get(), snapshot.anchor);
  if (!found.picture) {
    return found.answer.IsBusy() ? image_error::kRestoreFailed : image_error::kAnchorStale;
  }
  const ImageReplacement replaced =
      ReplacePicture(target_.Application(), sheet.Get(), *found.picture, snapshot.png);
  if (!replaced.done) return image_error::kRestoreFailed;
  for (ImageSnapshot& older : waiting_) {
    if (IsSamePicture(older.anchor, snapshot.anchor)) older.anchor = replaced.anchor;
  }
  undo_.Follow(snapshot.anchor, replaced.anchor, snapshot.book);
  return {};
}

std::wstring ImageBatchRestore::Result() const {
  PaneLog(Concat(L"ExcelImageTranslate batch undo restored=", restored_, L" failed=", failedReasons_.size(),
                 L"\r\n"));
  return BatchUndoResult(restored_, failedReasons_);
}

}  // namespace qv
