#pragma once

#include <string>

#include "tools/tool_context.h"

namespace qv {

/// "excelScreenshotRange": what a range looks like, as a PNG in base64. The picture comes by way of the
/// clipboard, which afterwards holds what it held before. Host UI thread.
[[nodiscard]] std::wstring ScreenshotRange(const ToolContext& context, const std::wstring& json);

}  // namespace qv
