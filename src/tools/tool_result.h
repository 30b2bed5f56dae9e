#pragma once

#include <string>
#include <string_view>

namespace qv {

// Result texts that workbook tools share. A result is one JSON object; one with the single key "error" tells
// of a failure.

inline constexpr std::wstring_view kNotConnectedText = L"未连接到 Excel";
inline constexpr std::wstring_view kNoSheetText = L"未连接到工作表";
inline constexpr std::wstring_view kUnknownSheetText = L"找不到工作表";
inline constexpr std::wstring_view kUnknownActionText = L"未知操作";
inline constexpr std::wstring_view kHostBusyText = L"Excel 正忙，请稍后重试";
inline constexpr std::wstring_view kUnreadableText = L"无法读取区域";
inline constexpr std::wstring_view kInvalidRangeText = L"invalid range";
inline constexpr std::wstring_view kNoWorkbookText = L"无活动工作簿";
inline constexpr std::wstring_view kNoWorksheetsText = L"无 Worksheets";
inline constexpr std::wstring_view kNoCountText = L"无法读取 Count";
inline constexpr std::wstring_view kBadRangeText = L"range 参数缺失或无效";

/// {"error":"…"}
[[nodiscard]] std::wstring ErrorResult(std::wstring_view message);

/// {"ok":true}
[[nodiscard]] std::wstring OkResult();

/// {"ok":true,"applied":n}
[[nodiscard]] std::wstring AppliedResult(int applied);

/// What the page is told of a result: false only for the answer to an action that no tool has. A tool's own
/// error is data.
[[nodiscard]] bool IsUnderstood(std::wstring_view result);

}  // namespace qv
