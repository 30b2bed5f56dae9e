#include "tools/screenshot_tool.h"

#include <optional>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/copied_picture.h"
#include "tools/png_picture.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"

namespace qv {
namespace {

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
  const CopiedPicture picture = CopyPictureOf(context.target.Application(), cells.Get());
  return picture.error.empty() ? Encode(picture.bitmap.Get()) : ErrorResult(picture.error);
}

}  // namespace qv
