#include "foundation/json_text.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/sheet_tools.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "workbook/automation.h"

namespace qv {
namespace {

/// A value that the host gave, or why it did not.
struct Reading {
  Variant value;
  HostAnswer answer;

  [[nodiscard]] std::wstring LogText() const {
    return Concat(L" hr=0x", Hex8(answer.hr), L" vt=", value.Type());
  }
  [[nodiscard]] ComPtr<IDispatch> Object() const { return answer.Ok() ? value.Object() : nullptr; }
};

Reading Read(IDispatch* object, const wchar_t* name) {
  Reading reading;
  reading.answer.hr = GetProperty(object, name, reading.value, &reading.answer.exceptionCode);
  return reading;
}

/// The object of a property; what the host answered goes to the log.
ComPtr<IDispatch> ReadObject(IDispatch* object, const wchar_t* name, Reading& reading) {
  reading = Read(object, name);
  PaneLog(Concat(L"ExcelListSheets: ", name, reading.LogText(), L"\r\n"));
  return reading.Object();
}

/// The name of one sheet; nothing (logged) when it cannot be read.
std::optional<std::wstring> ReadName(IDispatch* worksheets, std::int32_t index) {
  PaneLog(Concat(L"ExcelListSheets: Item(", index, L") begin\r\n"));
  HostAnswer found;
  const ComPtr<IDispatch> sheet = GetCollectionItem(worksheets, Variant(index), &found);
  if (sheet == nullptr) {
    PaneLog(Concat(L"ExcelListSheets: Item(", index, L") failed hr=0x", Hex8(found.hr), L"\r\n"));
    return std::nullopt;
  }
  const Reading name = Read(sheet.Get(), L"Name");
  if (name.answer.Ok() && name.value.IsText()) return name.value.Text();
  PaneLog(Concat(L"ExcelListSheets: sheet(", index, L") Name failed", name.LogText(), L"\r\n"));
  return std::nullopt;
}

std::wstring Failure(const HostAnswer& answer, std::wstring_view message) {
  return ErrorResult(answer.IsBusy() ? kHostBusyText : message);
}

}  // namespace

std::wstring ListSheets(const ToolContext& context, const std::wstring&) {
  PaneLog(L"ExcelListSheets: enter\r\n");
  IDispatch* const application = context.target.Application();
  if (application == nullptr) {
    PaneLog(L"ExcelListSheets: m_appDisp null\r\n");
    return ErrorResult(kNotConnectedText);
  }
  Reading reading;
  const ComPtr<IDispatch> workbook = ReadObject(application, L"ActiveWorkbook", reading);
  if (workbook == nullptr) return Failure(reading.answer, kNoWorkbookText);
  const ComPtr<IDispatch> worksheets = ReadObject(workbook.Get(), L"Worksheets", reading);
  if (worksheets == nullptr) return Failure(reading.answer, kNoWorksheetsText);
  const Reading counted = Read(worksheets.Get(), L"Count");
  const std::int32_t count = counted.answer.Ok() ? IntegerOf(counted.value) : 0;
  PaneLog(Concat(L"ExcelListSheets: Count", counted.LogText(), L" val=", count, L"\r\n"));
  // A workbook of chart sheets only has no worksheets.
  const bool isCount = count > 0 || counted.value.Type() == VT_I4;
  if (!isCount) return Failure(counted.answer, kNoCountText);

  const std::wstring active = GetStringProperty(context.target.GetActiveSheetDispatch().Get(), L"Name");
  PaneLog(L"ExcelListSheets: enumerate begin\r\n");
  std::wstring sheets;
  for (std::int32_t index = 1; index <= count; ++index) {
    const std::optional<std::wstring> name = ReadName(worksheets.Get(), index);
    if (!name) continue;
    if (!sheets.empty()) sheets += L',';
    sheets += Concat(L"{\"index\":", index, L",\"name\":", JsonQuote(*name), L",\"active\":",
                     BoolWord(*name == active), L'}');
  }
  PaneLog(Concat(L"ExcelListSheets: enumerate end count=", count, L"\r\n"));
  return Concat(L"{\"sheets\":[", sheets, L"]}");
}

}  // namespace qv
