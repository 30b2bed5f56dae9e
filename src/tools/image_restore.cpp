#include "tools/image_restore.h"

#include "foundation/logging.h"
#include "foundation/text.h"
#include "foundation/ui_slices.h"
#include "tools/image_replace.h"
#include "tools/undo_tools.h"
#include "workbook/cell_access.h"

namespace qv {

bool ImageBatchRestore::RunSlice() {
  const ULONGLONG begin = GetTickCount64();
  do {
    const ImageSnapshot* const snapshot = undo_.FindInBatch(done_);
    if (snapshot == nullptr) return false;
    const std::uint64_t serial = snapshot->serial;
    Restore(*snapshot);
    done_ = serial;
  } while (GetTickCount64() - begin < kUiSliceMs);
  return undo_.FindInBatch(done_) != nullptr;
}

void ImageBatchRestore::Restore(const ImageSnapshot& snapshot) {
  const std::wstring_view reason = TryRestore(snapshot);
  if (reason.empty()) {
    ++restored_;
  } else {
    NoteFailure(snapshot, reason);
  }
}

void ImageBatchRestore::NoteFailure(const ImageSnapshot& snapshot, std::wstring_view reason) {
  PaneLog(Concat(L"ExcelImageTranslate batch undo failed anchor=", AnchorJson(snapshot.anchor), L" err=",
                 reason, L"\r\n"));
  failedReasons_.emplace_back(reason);
  if (snapshot.png.empty()) undo_.Drop(snapshot.serial);
}

std::wstring_view ImageBatchRestore::TryRestore(const ImageSnapshot& snapshot) {
  if (snapshot.png.empty()) return image_error::kMissingUndoSnapshot;
  const ComPtr<IDispatch> sheet = ResolveSheet(target_, snapshot.anchor.sheetName);
  HostAnswer answer;
  if (sheet == nullptr) return image_error::kRestoreFailed;
  const UndoBook book = BookOfSheet(target_, sheet.Get(), answer);
  if (!snapshot.book.IsSame(book)) return image_error::kRestoreFailed;
  const ResolvedAnchor found = ResolveAnchor(sheet.Get(), snapshot.anchor);
  if (!found.picture) {
    return found.answer.IsBusy() ? image_error::kRestoreFailed : image_error::kAnchorStale;
  }
  const ImageReplacement replaced =
      ReplacePicture(target_.Application(), sheet.Get(), *found.picture, snapshot.png);
  if (!replaced.done) return image_error::kRestoreFailed;
  undo_.Drop(snapshot.serial);
  undo_.Follow(found.picture->anchor, replaced.anchor, book);
  return {};
}

std::wstring ImageBatchRestore::Result() const {
  PaneLog(Concat(L"ExcelImageTranslate batch undo restored=", restored_, L" failed=", failedReasons_.size(),
                 L"\r\n"));
  return BatchUndoResult(restored_, failedReasons_);
}

}  // namespace qv
