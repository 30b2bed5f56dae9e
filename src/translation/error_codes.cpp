#include "translation/error_codes.h"

#include <algorithm>
#include <array>

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

struct ErrorRow {
  std::wstring_view part;
  std::wstring_view code;
};

/// First match wins. The word-processor texts belong to the table that all hosts of the service share.
constexpr std::array kErrorRows = std::to_array<ErrorRow>({
    {L"工作表为空", L"sheet_empty"},
    {L"没有活动工作表", L"no_active_sheet"},
    {L"无活动工作表", L"no_active_sheet"},
    {L"Excel Application not connected", L"app_not_connected"},
    {L"未连接到 Excel", L"app_not_connected"},
    {L"无法读取已用区域", L"used_range_read_failed"},
    {L"无法读取选区", L"selection_read_failed"},
    {L"无法读取区域", L"range_read_failed"},
    {L"无法批量读取单元格", L"cells_batch_read_failed"},
    {L"无法解析批量单元格", L"cells_batch_parse_failed"},
    {L"无法解析单元格", L"cells_batch_parse_failed"},
    {L"已用区域过大", L"used_range_too_large"},
    {L"选区过大", L"selection_too_large"},
    {L"内容过长", L"content_too_long"},
    {L"Request too large", L"content_too_long"},
    {L"Too large", L"content_too_long"},
    {L"请先选择单元格", L"no_selection"},
    {L"Word Application not connected", L"app_not_connected"},
    {L"Cannot get Word Application interface", L"com_error"},
    {L"Cannot get paragraphs", L"com_error"},
    {L"No active document", L"no_active_document"},
    {L"请先选中要翻译的文字", L"no_selection"},
    {L"选区过长", L"content_too_long"},
    {L"选区内没有可翻译的文本", L"selection_empty"},
    {L"Document scan state is inconsistent", L"scan_inconsistent"},
    {L"batch size mismatch", L"batch_mismatch"},
    {L"Translation batch size mismatch", L"batch_mismatch"},
    {L"Translation count mismatch", L"batch_mismatch"},
    {L"COM", L"com_error"},
});

/// Its brackets and comma are, like the comma of the credits message, the Latin-1 readings of UTF-8 bytes.
constexpr std::wstring_view kTooLargeMessage =
    L"内容过长\u00EF\u00BC\u0088超过单次请求上限\u00EF\u00BC\u0089\u00EF\u00BC\u008C请拆分后重试";

bool IsAboutCredits(std::wstring_view message) {
  return Contains(message, kCodeInsufficientCredits) || Contains(message, kCreditsPhrase);
}

}  // namespace

std::wstring_view MapServerError(std::wstring_view message) {
  const auto row =
      std::ranges::find_if(kErrorRows, [&](const ErrorRow& r) { return Contains(message, r.part); });
  return row == kErrorRows.end() ? std::wstring_view() : row->code;
}

std::wstring PolishErrorMessage(std::wstring_view code, std::wstring_view context,
                                std::wstring_view message) {
  const bool bare =
      message == kCodeInsufficientCredits || (message.empty() && code == kCodeInsufficientCredits);
  if (bare) return std::wstring(kCreditsMessage);
  if (IsAboutCredits(message)) return std::wstring(message);
  const bool tooLarge = Contains(message, L"Request too large") || Contains(message, L"Too large");
  return Concat(context, tooLarge ? kTooLargeMessage : message);
}

std::wstring ShowRunError(std::wstring_view code, std::wstring_view message,
                          std::optional<std::uint64_t> runId) {
  if (code.empty()) code = MapServerError(message);
  const std::wstring codePart = code.empty() ? std::wstring() : Concat(L"code:\"", JsonEscape(code), L"\",");
  const std::wstring runPart = runId ? Concat(L",runId:", *runId) : std::wstring();
  return Concat(L"if(window.onError)onError({", codePart, L"message:\"",
                JsonEscape(PolishErrorMessage(code, L"", message)), L"\"", runPart, L"})");
}

}  // namespace qv
