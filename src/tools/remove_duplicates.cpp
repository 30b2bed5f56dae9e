#include "tools/remove_duplicates.h"

#include <algorithm>
#include <array>
#include <new>
#include <optional>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/duplicate_args.h"
#include "tools/duplicate_rows.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

// XlYesNoGuess
constexpr int kHasHeader = 1;
constexpr int kNoHeader = 2;

/// A SAFEARRAY of VARIANTs from 0 on, which is what the host takes.
Variant ColumnArray(const std::vector<std::int32_t>& columns) {
  Variant result;
  SAFEARRAY* const array = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(columns.size()));
  if (array == nullptr) throw std::bad_alloc();
  VARIANT* const out = result.Put();
  out->vt = VT_ARRAY | VT_VARIANT;
  out->parray = array;
  for (LONG i = 0; i < static_cast<LONG>(columns.size()); ++i) {
    Variant column(columns[static_cast<std::size_t>(i)]);
    if (FAILED(SafeArrayPutElement(array, &i, &column.Get()))) throw std::bad_alloc();
  }
  return result;
}

/// Asks the host; one column also as a mere number, which is the host's other form.
HRESULT Remove(IDispatch* range, const std::vector<std::int32_t>& columns, bool hasHeader) {
  const int header = hasHeader ? kHasHeader : kNoHeader;
  std::vector<Variant> forms{ColumnArray(columns)};
  if (columns.size() == 1) forms.emplace_back(columns.front());
  HostAnswer answer;
  for (const Variant& form : forms) {
    const std::array call{form, Variant(header)};
    answer.hr = InvokeByName(range, L"RemoveDuplicates", call, nullptr, &answer.exceptionCode);
    PaneLog(Concat(L"ExcelRemoveDuplicates try header=", header, L" params=", columns.size(), L" hr=0x",
                   Hex8(answer.hr), L"\r\n"));
    if (answer.Ok() || answer.IsBusy()) break;
  }
  return answer.hr;
}

std::wstring Failure(HRESULT hr) {
  PaneLog(Concat(L"ExcelRemoveDuplicates failed hr=0x", Hex8(hr), L"\r\n"));
  return ErrorResult(Concat(L"去重失败（hr=0x", Hex8(hr),
                            L"）。请确认已安装最新 Quorvantis Excel 插件，或使用 Microsoft Excel 重试"));
}

std::int32_t CountOf(IDispatch* range, const wchar_t* lines) {
  return GetIntProperty(GetDispProperty(range, lines).Get(), L"Count");
}

std::wstring RemoveFrom(IDispatch* sheet, const RangeArgs& range, const ToolArguments& arguments) {
  const ComPtr<IDispatch> cells = FindRange(sheet, range);
  const ComPtr<IDispatch> columnLines = GetDispProperty(cells.Get(), L"Columns");
  if (columnLines == nullptr || CountOf(cells.Get(), L"Rows") < 1) return ErrorResult(L"无法读取范围大小");
  const std::int32_t columnCount = GetIntProperty(columnLines.Get(), L"Count");
  if (columnCount < 1) return ErrorResult(L"范围无有效列");
  const CompareColumns compared = ParseCompareColumns(arguments, columnCount);
  if (!compared.error.empty()) return ErrorResult(compared.error);

  const DataRows rows(sheet, range, HasHeader(arguments));
  const std::optional<std::int64_t> before = rows.CountFilled();
  if (!before) return ErrorResult(kUnreadableText);
  if (FlagOfValue(arguments.Value(L"match_case")).value_or(false) &&
      rows.CaseMatters(compared.columns).value_or(true)) {
    return Failure(E_NOTIMPL);
  }
  const HRESULT hr = Remove(cells.Get(), compared.columns, HasHeader(arguments));
  if (FAILED(hr)) return Failure(hr);
  std::optional<std::int64_t> after = rows.CountFilled();
  if (!after) after = rows.CountFilled();
  if (!after) {
    PaneLog(L"ExcelRemoveDuplicates removed, count unreadable\r\n");
    return ErrorResult(kUnreadableText);
  }
  PaneLog(Concat(L"ExcelRemoveDuplicates done removed=", *before - *after, L"\r\n"));
  return Concat(L"{\"ok\":true,\"removed\":", *before - *after, L",\"rowsBefore\":", *before,
                L",\"rowsAfter\":", *after, L'}');
}

}  // namespace

std::wstring RemoveDuplicates(const ToolContext& context, const std::wstring& json) {
  PaneLog(Concat(L"ExcelRemoveDuplicates enter json=", json, L"\r\n"));
  const ToolArguments arguments(json);
  if (!FlagOfValue(arguments.Value(L"confirm")).value_or(false)) return ErrorResult(L"confirm 必须为 true");
  const std::optional<RangeArgs> range = ParseRangeArgs(arguments);
  if (!range) return ErrorResult(arguments.Text(L"range").empty() ? L"range 必填" : kInvalidRangeText);
  const ToolSheet sheet = FindToolSheet(context, arguments);
  if (sheet.sheet == nullptr) return sheet.error;
  const DisplayAlertsGuard alertsOff(context.target.Application());
  return RemoveFrom(sheet.sheet.Get(), *range, arguments);
}

}  // namespace qv
