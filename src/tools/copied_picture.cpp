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

/// Whether what is on the clipboard may come from the host, in whose process this runs. A window that is gone
/// owns nothing any more.
bool IsOfThisProcess(HWND clipboardOwner) {
  DWORD process = 0;
  return GetWindowThreadProcessId(clipboardOwner, &process) == 0 || process == GetCurrentProcessId();
}

/// `before` is the clipboard's sequence number ahead of the host's copying: a host may report success and
/// have copied nothing, and then what lies there is somebody else's.
CopiedPicture TakeBitmap(HWND owner, DWORD before) {
  const OpenedClipboard clipboard(owner, kClipboardPatience);
  if (!clipboard) return {{}, L"OpenClipboard failed"};
  const bool isCopied = GetClipboardSequenceNumber() != before && IsOfThisProcess(GetClipboardOwner());
  const HANDLE shared = isCopied ? GetClipboardData(CF_BITMAP) : nullptr;
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
  const DWORD before = GetClipboardSequenceNumber();
  if (FAILED(InvokeByName(object, L"CopyPicture", look, nullptr))) return {{}, L"CopyPicture failed"};
  return TakeBitmap(backup.Owner(), before);
}

CopiedPicture CopyPictureOf(IDispatch* application, IDispatch* object) {
  const ClipboardBackup backup;
  return CopyPictureOf(application, object, backup);
}

}  // namespace qv
