#include "tools/copied_picture.h"

#include <array>
#include <utility>

#include "foundation/variant.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

// XlPictureAppearance xlScreen and XlCopyPictureFormat xlBitmap. WPS has other defaults than Excel.
constexpr int kAsOnScreen = 1;
constexpr int kAsBitmap = 2;

CopiedPicture TakeBitmap(HWND owner) {
  const OpenedClipboard clipboard(owner, kClipboardPatience);
  if (!clipboard) return {{}, L"OpenClipboard failed"};
  const HANDLE shared = GetClipboardData(CF_BITMAP);
  if (shared == nullptr) return {{}, L"no bitmap in clipboard"};
  UniqueBitmap copy(static_cast<HBITMAP>(CopyImage(shared, IMAGE_BITMAP, 0, 0, 0)));
  if (!copy) return {{}, L"CopyImage failed"};
  return {std::move(copy), {}};
}

}  // namespace

CopiedPicture CopyPictureOf(IDispatch* application, IDispatch* object, const ClipboardBackup& backup) {
  if (!backup.IsTaken()) return {{}, L"OpenClipboard failed"};
  const DisplayAlertsGuard alertsOff(application);
  const std::array look{Variant(kAsOnScreen), Variant(kAsBitmap)};
  if (FAILED(InvokeByName(object, L"CopyPicture", look, nullptr))) return {{}, L"CopyPicture failed"};
  return TakeBitmap(backup.Owner());
}

CopiedPicture CopyPictureOf(IDispatch* application, IDispatch* object) {
  const ClipboardBackup backup;
  return CopyPictureOf(application, object, backup);
}

}  // namespace qv
