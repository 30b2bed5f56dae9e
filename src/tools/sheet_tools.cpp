#include "tools/sheet_tools.h"

#include <array>
#include <new>

#include "foundation/json_text.h"
#include "foundation/text.h"
#include "tools/sheet_name.h"
#include "tools/tool_arguments.h"
#include "tools/tool_result.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

std::wstring Failure(const HostAnswer& answer, std::wstring_view message) {
  return ErrorResult(answer.IsBusy() ? kHostBusyText : message);
}

/// The sheet that "name", else "index" means; null when there is none. `answer` as of `GetDispProperty`.
ComPtr<IDispatch> FindSheet(IDispatch* worksheets, const ToolArguments& arguments, HostAnswer& answer) {
  const std::wstring name = arguments.Text(L"name");
  if (!name.empty()) return GetCollectionItem(worksheets, name, &answer);
  const std::int32_t index = arguments.Integer(L"index");
  return index >= 1 ? GetCollectionItem(worksheets, Variant(index), &answer) : nullptr;
}

/// The same in the pane's workbook.
ComPtr<IDispatch> FindOwnSheet(const ToolContext& context, const ToolArguments& arguments,
                               HostAnswer& answer) {
  const ComPtr<IDispatch> worksheets = context.target.GetActiveWorkbookWorksheets(&answer);
  return worksheets != nullptr ? FindSheet(worksheets.Get(), arguments, answer) : nullptr;
}

/// Where a new sheet goes: the arguments Before and After of "Add".
struct NewSheetPlace {
  Variant before = Variant::Missing();
  Variant after = Variant::Missing();
  /// The result text when there is no such place.
  std::wstring error;
};

NewSheetPlace FindPlace(IDispatch* worksheets, const ToolArguments& arguments) {
  NewSheetPlace place;
  Variant* argument = &place.after;
  Variant sheet(GetIntProperty(worksheets, L"Count"));
  std::wstring_view missing;
  if (const std::wstring before = arguments.Text(L"before"); !before.empty()) {
    argument = &place.before;
    sheet = Variant(before);
    missing = L"找不到 before 工作表";
  } else if (const std::wstring after = arguments.Text(L"after"); !after.empty()) {
    sheet = Variant(after);
    missing = L"找不到 after 工作表";
  }
  HostAnswer answer;
  const ComPtr<IDispatch> found = GetCollectionItem(worksheets, sheet, &answer);
  if (found != nullptr) {
    *argument = Variant(found.Get());
  } else if (!missing.empty() || answer.IsBusy()) {
    place.error = Failure(answer, missing);
  }
  return place;
}

/// Gives the sheet the name, else the name with the first number that the host accepts. A sheet whose names
/// are all refused keeps the one that it has.
void NameSheet(IDispatch* sheet, const std::wstring& name) {
  Variant wanted(name);
  for (int number = 2; number <= kLastNameNumber; ++number) {
    HostAnswer answer;
    answer.hr = PutDispProperty(sheet, L"Name", &wanted, &answer.exceptionCode);
    if (answer.Ok() || answer.IsBusy()) return;
    wanted = Variant(NumberedSheetName(name, number));
  }
  static_cast<void>(PutDispProperty(sheet, L"Name", &wanted));
}

}  // namespace

std::wstring SetActiveSheet(const ToolContext& context, const std::wstring& json) {
  const ToolArguments arguments(json);
  const std::wstring name = arguments.Text(L"name");
  if (name.empty() && arguments.Value(L"index").empty()) return ErrorResult(L"需提供 name 或 index");
  HostAnswer answer;
  const ComPtr<IDispatch> workbook =
      GetDispProperty(context.target.Application(), L"ActiveWorkbook", &answer);
  if (workbook == nullptr) return Failure(answer, kNoWorkbookText);
  const ComPtr<IDispatch> worksheets = GetDispProperty(workbook.Get(), L"Worksheets", &answer);
  if (worksheets == nullptr) return Failure(answer, kNoWorksheetsText);
  const std::int32_t index = arguments.Integer(L"index");
  if (name.empty() && (index < 1 || index > GetIntProperty(worksheets.Get(), L"Count"))) {
    return ErrorResult(L"索引越界");
  }
  const ComPtr<IDispatch> sheet = FindSheet(worksheets.Get(), arguments, answer);
  if (sheet == nullptr) {
    return Failure(answer, name.empty() ? std::wstring(L"索引越界") : Concat(L"找不到工作表：", name));
  }
  const bool activated = SUCCEEDED(InvokeByName(sheet.Get(), L"Activate", {}, nullptr));
  return activated ? OkResult() : ErrorResult(L"激活失败");
}

std::wstring AddSheet(const ToolContext& context, const std::wstring& json) {
  const ToolArguments arguments(json);
  const std::wstring asked = arguments.Text(L"name");
  HostAnswer answer;
  const ComPtr<IDispatch> worksheets = context.target.GetActiveWorkbookWorksheets(&answer);
  if (worksheets == nullptr) return Failure(answer, kNoWorksheetsText);
  const DisplayAlertsGuard alertsOff(context.target.Application());
  const NewSheetPlace place = FindPlace(worksheets.Get(), arguments);
  if (!place.error.empty()) return place.error;
  std::array<Variant, 2> call;
  try {
    call = {place.before, place.after};
  } catch (const std::bad_alloc&) {
    return ErrorResult(L"参数复制失败");
  }
  Variant added;
  const HRESULT hr = InvokeByName(worksheets.Get(), L"Add", call, &added);
  if (hr == DISP_E_UNKNOWNNAME) return ErrorResult(L"无法获取 Add DISPID");
  const ComPtr<IDispatch> sheet = SUCCEEDED(hr) ? added.Object() : nullptr;
  if (sheet == nullptr) return ErrorResult(L"创建工作表失败");
  if (!asked.empty()) NameSheet(sheet.Get(), CleanSheetName(asked));
  return Concat(L"{\"ok\":true,\"name\":", JsonQuote(GetStringProperty(sheet.Get(), L"Name")), L",\"index\":",
                GetIntProperty(sheet.Get(), L"Index"), L'}');
}

std::wstring DeleteSheet(const ToolContext& context, const std::wstring& json) {
  const ToolArguments arguments(json);
  HostAnswer found;
  const ComPtr<IDispatch> sheet = FindOwnSheet(context, arguments, found);
  if (sheet == nullptr) return Failure(found, kUnknownSheetText);
  const DisplayAlertsGuard alertsOff(context.target.Application());
  Variant answer;
  const HRESULT hr = InvokeByName(sheet.Get(), L"Delete", {}, &answer);
  // A host that asks its user after all answers no for him.
  const bool refused = FAILED(hr) || (answer.Type() == VT_BOOL && !answer.IsTrue());
  return refused ? ErrorResult(L"删除失败") : OkResult();
}

std::wstring RenameSheet(const ToolContext& context, const std::wstring& json) {
  const ToolArguments arguments(json);
  const std::wstring wanted = arguments.Text(L"new_name");
  if (wanted.empty()) return ErrorResult(L"new_name 必填");
  HostAnswer found;
  const ComPtr<IDispatch> sheet = FindOwnSheet(context, arguments, found);
  if (sheet == nullptr) return Failure(found, kUnknownSheetText);
  const DisplayAlertsGuard alertsOff(context.target.Application());
  const Variant name(CleanSheetName(wanted));
  return SUCCEEDED(PutDispProperty(sheet.Get(), L"Name", &name)) ? OkResult() : ErrorResult(L"重命名失败");
}

}  // namespace qv
