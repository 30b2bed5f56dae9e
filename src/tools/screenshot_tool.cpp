#include "tools/screenshot_tool.h"

#include <array>
#include <optional>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "foundation/unique_gdi.h"
#include "tools/clipboard_backup.h"
#include "tools/png_picture.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

// XlPictureAppearance xlScreen and XlCopyPictureFormat xlBitmap. WPS has other defaults than Excel.
constexpr int kAsOnScreen = 1;
constexpr int kAsBitmap = 2;

/// What a step brought: a bitmap, or the error's text.
struct Picture {
  UniqueBitmap bitmap;
  std::wstring_view error;
};

Picture TakeBitmap(HWND owner) {
  const OpenedClipboard clipboard(owner, kClipboardPatience);
  if (!clipboard) return {{}, L"OpenClipboard failed"};
  const HANDLE shared = GetClipboardData(CF_BITMAP);
  if (shared == nullptr) return {{}, L"no bitmap in clipboard"};
  UniqueBitmap copy(static_cast<HBITMAP>(CopyImage(shared, IMAGE_BITMAP, 0, 0, 0)));
  if (!copy) return {{}, L"CopyImage failed"};
  return {std::move(copy), {}};
}

Picture CopyRange(IDispatch* application, IDispatch* range) {
  const ClipboardBackup backup;
  // A clipboard that could not be put back is not overwritten.
  if (!backup.IsTaken()) return {{}, L"OpenClipboard failed"};
  const DisplayAlertsGuard alertsOff(application);
  const std::array look{Variant(kAsOnScreen), Variant(kAsBitmap)};
  if (FAILED(InvokeByName(range, L"CopyPicture", look, nullptr))) return {{}, L"CopyPicture failed"};
  return TakeBitmap(backup.Owner());
}

std::wstring Encode(HBITMAP bitmap) {
  BITMAP facts{};
  const PngPicture png = EncodePng(bitmap);
  if (!png.error.empty()) return ErrorResult(png.error);
  const std::wstring data = Base64Of(png.bytes);
  if (data.empty() || GetObjectW(bitmap, sizeof(facts), &facts) == 0)
    return ErrorResult(L"Bitmap.Save failed");
  return Concat(L"{\"ok\":true,\"mediaType\":\"image/png\",\"width\":", facts.bmWidth, L",\"height\":",
                facts.bmHeight, L",\"data\":\"", data, L"\"}");
}

}  // namespace

std::wstring ScreenshotRange(const ToolContext& context, const std::wstring& json) {
  const ToolArguments arguments(json);
  const std::wstring address = arguments.Text(L"range");
  const std::optional<RangeArgs> range = ParseRangeArgs(arguments);
  if (!range && address.empty()) return ErrorResult(L"range required");
  PaneLog(Concat(L"ExcelScreenshotRange: rangeStr=", address, L" len=", address.size(), L"\r\n"));
  if (!range) return ErrorResult(kInvalidRangeText);
  const ToolSheet sheet = FindToolSheet(context, arguments);
  if (sheet.sheet == nullptr) return sheet.error;
  const ComPtr<IDispatch> cells = FindRange(sheet.sheet.Get(), *range);
  if (cells == nullptr) return ErrorResult(kInvalidRangeText);
  const Picture picture = CopyRange(context.target.Application(), cells.Get());
  return picture.error.empty() ? Encode(picture.bitmap.Get()) : ErrorResult(picture.error);
}

}  // namespace qv
