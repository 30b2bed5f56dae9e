#include <optional>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/format_args.h"
#include "tools/format_tools.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

// The host's XlUnderlineStyle.
constexpr int kSingleLine = 2;
constexpr int kNoLine = -4142;

/// Puts a value that is wanted. What the host refuses stays as it is, and the rest goes on.
template <typename Value>
void Put(IDispatch* object, const wchar_t* name, const std::optional<Value>& wanted) {
  if (!wanted || object == nullptr) return;
  const Variant value(*wanted);
  static_cast<void>(PutDispProperty(object, name, &value));
}

void ApplyFont(IDispatch* range, const FontFormat& format) {
  if (format.IsEmpty()) return;
  const ComPtr<IDispatch> font = GetDispProperty(range, L"Font");
  Put(font.Get(), L"Bold", format.bold);
  Put(font.Get(), L"Italic", format.italic);
  if (format.underline) {
    Put(font.Get(), L"Underline", std::optional(*format.underline ? kSingleLine : kNoLine));
  }
  Put(font.Get(), L"Size", format.size);
  Put(font.Get(), L"Name", format.name);
  Put(font.Get(), L"Color", format.color);
}

void ApplyBorder(IDispatch* range, const BorderFormat& format) {
  if (format.edges.empty()) return;
  const ComPtr<IDispatch> borders = GetDispProperty(range, L"Borders");
  for (const std::int32_t edge : format.edges) {
    const ComPtr<IDispatch> border = GetCollectionItem(borders.Get(), Variant(edge));
    if (format.line) {
      Put(border.Get(), L"LineStyle", std::optional(format.line->style));
      Put(border.Get(), L"Weight", format.line->weight);
    }
    Put(border.Get(), L"Color", format.color);
  }
}

void Apply(IDispatch* range, const RangeFormat& format) {
  ApplyFont(range, format.font);
  if (format.fill) Put(GetDispProperty(range, L"Interior").Get(), L"Color", format.fill);
  Put(range, L"HorizontalAlignment", format.horizontal);
  Put(range, L"VerticalAlignment", format.vertical);
  Put(range, L"WrapText", format.wrapText);
  Put(range, L"NumberFormat", format.numberFormat);
  ApplyBorder(range, format.border);
}

}  // namespace

std::wstring FormatRange(const ToolContext& context, const std::wstring& json) {
  PaneLog(Concat(L"ExcelFormatRange enter json=", json, L"\r\n"));
  const ToolArguments arguments(json);
  const std::optional<RangeArgs> range = ParseRangeArgs(arguments);
  if (!range) return ErrorResult(kBadRangeText);
  const ToolSheet sheet = FindToolSheet(context, arguments);
  if (sheet.sheet == nullptr) return sheet.error;
  const DisplayAlertsGuard alertsOff(context.target.Application());
  HostAnswer answer;
  const ComPtr<IDispatch> cells = FindRange(sheet.sheet.Get(), *range, &answer);
  if (cells == nullptr) return ErrorResult(answer.IsBusy() ? kHostBusyText : kBadRangeText);
  Apply(cells.Get(), ParseRangeFormat(arguments));
  return AppliedResult(1);
}

}  // namespace qv
