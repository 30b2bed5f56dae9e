#include "tools/image_scan.h"

#include "foundation/gdi_plus_session.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "foundation/ui_slices.h"
#include "tools/image_export.h"
#include "tools/png_picture.h"

namespace qv {
namespace {

/// How many milliseconds somebody else may keep the clipboard before pictures go without their thumbnails.
constexpr ULONGLONG kClipboardWaitMs = 2000;

ImageThumbnail ThumbnailOf(IDispatch* application, IDispatch* shape, const ClipboardBackup& backup) {
  const EncodedImage image = ExportThumbnail(application, shape, backup).thumbnail;
  const std::wstring base64 = image.Ok() ? Base64Of(image.png) : std::wstring();
  if (base64.empty()) {
    PaneLog(Concat(L"ExcelImageTranslate probe export failed: ", image.Ok() ? kBase64Error : image.error,
                   L"\r\n"));
  }
  return {base64, image.size};
}

}  // namespace

bool ImageScan::MayGoOn(bool hasClipboard) {
  if (hasClipboard) {
    blockedSince_.reset();
    return true;
  }
  if (!blockedSince_) blockedSince_ = GetTickCount64();
  return GetTickCount64() - *blockedSince_ >= kClipboardWaitMs;
}

bool ImageScan::RunSlice() {
  if (anchors_.size() == found_.pictures.size()) return false;
  // Once for all pictures of the slice, not for each. Not held any longer: between two slices the user may
  // paste.
  const ClipboardBackup backup;
  if (!MayGoOn(backup.IsTaken())) return true;
  const GdiplusSession gdiPlus;
  const ULONGLONG begin = GetTickCount64();
  while (anchors_.size() < found_.pictures.size() && GetTickCount64() - begin < kUiSliceMs) {
    SheetPicture& picture = found_.pictures[anchors_.size()];
    const ComPtr<IDispatch> shape = std::exchange(picture.shape, nullptr);
    anchors_.push_back(
        AnchorWithThumbnail(picture.anchor, ThumbnailOf(application_.Get(), shape.Get(), backup)));
  }
  return anchors_.size() < found_.pictures.size();
}

}  // namespace qv
