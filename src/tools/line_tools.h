#pragma once

#include <oaidl.h>

#include <string>

#include "tools/line_args.h"
#include "tools/tool_context.h"
#include "tools/tool_targets.h"

namespace qv {

// The tools that delete and insert whole rows and columns. Host UI thread.

/// "excelDeleteRowsCols"
[[nodiscard]] std::wstring DeleteRowsCols(const ToolContext& context, const std::wstring& json);
/// "excelInsertRowsCols": what is inserted is brought into view.
[[nodiscard]] std::wstring InsertRowsCols(const ToolContext& context, const std::wstring& json);

// What the two share:

inline constexpr std::wstring_view kBadModeText = L"mode 必须是 columns 或 rows";
inline constexpr std::wstring_view kNoLinesText = L"无法获取整列/整行";
inline constexpr std::wstring_view kNoRangeOrIndicesText = L"range 或 indices 必填";
inline constexpr std::wstring_view kTooManyIndicesText = L"indices 过多（>5000），请分批";
static_assert(kMaxLineIndices == 5000, "the text tells the limit");

/// The sheet that "sheetName" names, without one the active sheet.
[[nodiscard]] ToolSheet FindLineSheet(const ToolContext& context, const ToolArguments& arguments);

/// The member that widens a range to whole rows or columns.
[[nodiscard]] constexpr const wchar_t* EntireMember(LineMode mode) {
  return mode == LineMode::kRows ? L"EntireRow" : L"EntireColumn";
}

}  // namespace qv
