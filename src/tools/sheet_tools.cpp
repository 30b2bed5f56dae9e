#include "tools/sheet_tools.h"

#include <array>
#include <new>
#include <optional>

#include "foundation/json_text.h"
#include "foundation/text.h"
#include "tools/sheet_choice.h"
#include "tools/sheet_name.h"
#include "tools/tool_arguments.h"
#include "tools/tool_result.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

constexpr std::wstring_view kBadIndexText = L"索引越界";

std::wstring Failure(const HostAnswer& answer, std::wstring_view message) {
  return ErrorResult(answer.IsBusy() ? kHostBusyText : message);
}

/// The sheet that is meant; null when there is none. `answer` as of `GetDispProperty`.
ComPtr<IDispatch> FindSheet(IDispatch* worksheets, const SheetChoice& choice, HostAnswer& answer) {
  if (!choice.name.empty()) return GetCollectionItem(worksheets, choice.name, &answer);
  const std::int32_t index = choice.index.value_or(0);
  return index >= 1 ? GetCollectionItem(worksheets, Variant(index), &answer) : nullptr;
}

/// The same in the pane's workbook.
ComPtr<IDispatch> FindOwnSheet(const ToolContext& context, const ToolArguments& arguments,
                               HostAnswer& answer) {
  const ComPtr<IDispatch> worksheets = context.target.GetActiveWorkbookWorksheets(&answer);
  return worksheets != nullptr ? FindSheet(worksheets.Get(), ParseSheetChoice(arguments), answer) : nullptr;
}

/// How many sheets there are; nothing when the host does not say.
std::optional<std::int32_t> CountSheets(IDispatch* worksheets, HostAnswer& answer) {
  Variant count;
  answer = {};
  answer.hr = GetProperty(worksheets, L"Count", count, &answer.exceptionCode);
  return answer.Ok() ? std::optional(IntegerOf(count)) : std::nullopt;
}

/// Where a new sheet goes: the arguments Before and After of "Add".
struct NewSheetPlace {
  Variant before = Variant::Missing();
  Variant after = Variant::Missing();
  /// The result text when there is no such place.
  std::wstring error;
};

/// The place beside the sheet of that name.
NewSheetPlace PlaceBeside(IDispatch* worksheets, const std::wstring& name, Variant NewSheetPlace::*side,
                          std::wstring_view missing) {
  NewSheetPlace place;
  HostAnswer answer;
  const ComPtr<IDispatch> found = GetCollectionItem(worksheets, name, &answer);
  if (found != nullptr) {
    place.*side = Variant(found.Get());
  } else {
    place.error = Failure(answer, missing);
  }
  return place;
}

/// The place behind the last sheet; the host's own choice when it has no worksheet.
NewSheetPlace LastPlace(IDispatch* worksheets) {
  NewSheetPlace place;
  HostAnswer answer;
  const std::optional<std::int32_t> count = CountSheets(worksheets, answer);
  if (!count) {
    place.error = Failure(answer, kNoCountText);
    return place;
  }
  const ComPtr<IDispatch> last = GetCollectionItem(worksheets, Variant(*count), &answer);
  if (last != nullptr) {
    place.after = Variant(last.Get());
  } else if (answer.IsBusy()) {
    place.error = ErrorResult(kHostBusyText);
  }
  return place;
}

NewSheetPlace FindPlace(IDispatch* worksheets, const ToolArguments& arguments) {
  const struct {
    const wchar_t* argument;
    Variant NewSheetPlace::*side;
    std::wstring_view missing;
  } sides[] = {{L"before", &NewSheetPlace::before, L"找不到 before 工作表"},
               {L"after", &NewSheetPlace::after, L"找不到 after 工作表"}};
  for (const auto& [argument, side, missing] : sides) {
    const std::wstring name = arguments.Text(argument);
    if (!name.empty()) return PlaceBeside(worksheets, name, side, missing);
  }
  return LastPlace(worksheets);
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
  const SheetChoice choice = ParseSheetChoice(ToolArguments(json));
  if (!choice.IsGiven()) return ErrorResult(L"需提供 name 或 index");
  HostAnswer answer;
  const ComPtr<IDispatch> workbook =
      GetDispProperty(context.target.Application(), L"ActiveWorkbook", &answer);
  if (workbook == nullptr) return Failure(answer, kNoWorkbookText);
  const ComPtr<IDispatch> worksheets = GetDispProperty(workbook.Get(), L"Worksheets", &answer);
  if (worksheets == nullptr) return Failure(answer, kNoWorksheetsText);
  if (choice.name.empty()) {
    const std::optional<std::int32_t> count = CountSheets(worksheets.Get(), answer);
    if (!count) return Failure(answer, kNoCountText);
    if (*choice.index < 1 || *choice.index > *count) return ErrorResult(kBadIndexText);
  }
  const ComPtr<IDispatch> sheet = FindSheet(worksheets.Get(), choice, answer);
  if (sheet == nullptr) {
    return Failure(
        answer, choice.name.empty() ? std::wstring(kBadIndexText) : Concat(L"找不到工作表：", choice.name));
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
