#include "workbook/cell_access.h"

#include <array>
#include <optional>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

HRESULT ReadCell(IDispatch* sheet, std::int32_t row, std::int32_t col, Variant& value,
                 SCODE* exceptionCode = nullptr) {
  const std::array<Variant, 2> position = {Variant(row), Variant(col)};
  return GetIndexedProperty(sheet, L"Cells", position, value, exceptionCode);
}

/// The end of a log line about a call that gave no object.
std::wstring FailedCellText(std::int32_t row, std::int32_t col, HRESULT hr, const Variant& value) {
  return Concat(L" failed row=", row, L" col=", col, L" hr=0x", Hex8(hr), L" vt=", value.Type(), L"\r\n");
}

/// Why a lookup came back empty: the busy answer of a host that refuses the same workbook's sheets right now,
/// else a plain failure.
CellWriteResult FailedLookup(const TargetContext& target) {
  IDispatch* const workbook = target.Pinned().workbook.Get();
  Variant ignored;
  CellWriteResult result;
  result.hr = workbook != nullptr
                  ? GetProperty(workbook, L"Worksheets", ignored, &result.exceptionCode)
                  : GetProperty(target.Application(), L"ActiveWorkbook", ignored, &result.exceptionCode);
  return result.IsBusy() ? result : CellWriteResult{E_FAIL, 0};
}

/// One try to write a value: "Value2", then "Value". A busy host is not asked a second time.
CellWriteResult PutText(IDispatch* cell, std::wstring_view text) {
  const Variant value(text);
  CellWriteResult result;
  for (const wchar_t* name : {L"Value2", L"Value"}) {
    result.hr = PutDispProperty(cell, name, &value, &result.exceptionCode);
    if (result.Ok() || result.IsBusy()) break;
  }
  return result;
}

/// The value of a boolean property; absent when it cannot be read or is no boolean.
std::optional<bool> ReadFlag(IDispatch* object, std::wstring_view name) {
  Variant value;
  if (FAILED(GetProperty(object, name, value)) || value.Type() != VT_BOOL) return std::nullopt;
  return value.IsTrue();
}

/// The host drops one leading apostrophe and takes the rest as text.
std::wstring AsLiteral(std::wstring_view text) {
  return Concat(L'\'', text);
}

/// A cell formatted as text keeps whatever is put, an apostrophe included.
bool KeepsEverything(IDispatch* cell) {
  return GetStringProperty(cell, L"NumberFormat") == L"@";
}

CellWriteResult PutLiteralText(IDispatch* cell, std::wstring_view text) {
  constexpr std::wstring_view kAlwaysSpecial = L"='";
  constexpr std::wstring_view kSometimesFormula = L"+-@";
  const wchar_t first = text.empty() ? L'\0' : text.front();
  const bool special = first != L'\0' && kAlwaysSpecial.find(first) != std::wstring_view::npos;
  if (special) return PutText(cell, KeepsEverything(cell) ? std::wstring(text) : AsLiteral(text));
  const CellWriteResult result = PutText(cell, text);
  if (result.IsBusy() || first == L'\0' || kSometimesFormula.find(first) == std::wstring_view::npos)
    return result;
  // "- item" is refused as a bad formula, "-item" silently becomes one.
  const bool taken = result.Ok() && !ReadFlag(cell, L"HasFormula").value_or(false);
  return taken ? result : PutText(cell, AsLiteral(text));
}

ComPtr<IDispatch> FindSheetToWrite(const TargetContext& target, std::wstring_view sheetName) {
  ComPtr<IDispatch> sheet = ResolveSheet(target, sheetName);
  if (sheet != nullptr) return sheet;
  if (sheetName.empty()) {
    PaneLog(L"PutCellValueDispatch: active sheet lookup failed\r\n");
  } else {
    PaneLog(Concat(L"PutCellValueDispatch: sheet lookup failed sheet=", sheetName, L" pinnedBook=",
                   target.Pinned().workbookName, L"\r\n"));
  }
  return nullptr;
}

/// The cell to write, or null with the failure in `result`.
ComPtr<IDispatch> FindCellToWrite(IDispatch* sheet, std::int32_t row, std::int32_t col,
                                  CellWriteResult& result) {
  Variant value;
  result.hr = ReadCell(sheet, row, col, value, &result.exceptionCode);
  ComPtr<IDispatch> cell = result.Ok() ? value.Object() : nullptr;
  if (cell != nullptr) return cell;
  if (result.hr == DISP_E_UNKNOWNNAME) {
    PaneLog(L"PutCellValueDispatch: Cells get failed\r\n");
  } else {
    PaneLog(Concat(L"PutCellValueDispatch: cell get", FailedCellText(row, col, result.hr, value)));
  }
  if (result.Ok()) result.hr = E_FAIL;
  return nullptr;
}

}  // namespace

bool CellWriteResult::IsBusy() const {
  return !Ok() && IsHostBusy(hr, exceptionCode);
}

ComPtr<IDispatch> GetCellDispatch(IDispatch* sheet, std::int32_t row, std::int32_t col) {
  Variant value;
  const HRESULT hr = ReadCell(sheet, row, col, value);
  ComPtr<IDispatch> cell = SUCCEEDED(hr) ? value.Object() : nullptr;
  if (cell == nullptr) PaneLog(Concat(L"GetCellDispatch", FailedCellText(row, col, hr, value)));
  return cell;
}

ComPtr<IDispatch> TryGetWorksheetItemDispatch(IDispatch* sheets, const Variant& key) {
  Variant value;
  const HRESULT hr = GetItem(sheets, {&key, 1}, value);
  ComPtr<IDispatch> sheet = SUCCEEDED(hr) ? value.Object() : nullptr;
  if (sheet == nullptr) {
    PaneLog(Concat(L"TryGetWorksheetItemDispatch failed hr=0x", Hex8(hr), L" key.vt=", key.Type(), L"\r\n"));
  }
  return sheet;
}

ComPtr<IDispatch> ResolveSheet(const TargetContext& target, std::wstring_view sheetName) {
  if (sheetName.empty()) return target.GetActiveSheetDispatch();
  const ComPtr<IDispatch> sheets = target.GetActiveWorkbookSheets();
  return TryGetWorksheetItemDispatch(sheets.Get(), Variant(sheetName));
}

CellWriteResult PutCellValueDispatch(const TargetContext& target, std::wstring_view sheetName,
                                     std::int32_t row, std::int32_t col, std::wstring_view text) {
  PaneLog(Concat(L"PutCellValueDispatch enter sheet=", sheetName, L" row=", row, L" col=", col, L" textLen=",
                 text.size(), L"\r\n"));
  const DisplayAlertsGuard alertsOff(target.Application());
  const ComPtr<IDispatch> sheet = FindSheetToWrite(target, sheetName);
  if (sheet == nullptr) return FailedLookup(target);

  CellWriteResult result;
  const ComPtr<IDispatch> cell = FindCellToWrite(sheet.Get(), row, col, result);
  if (cell == nullptr) return result;
  result = PutLiteralText(cell.Get(), text);
  const std::wstring where = Concat(sheetName, L" row=", row, L" col=", col);
  if (result.Ok()) {
    PaneLog(Concat(L"Excel PutCellValueDispatch ok sheet=", where, L"\r\n"));
  } else {
    PaneLog(Concat(L"Excel PutCellValueDispatch failed sheet=", where, L" hr=0x", Hex8(result.hr), L"\r\n"));
  }
  return result;
}

bool IsSheetProtected(IDispatch* sheet) {
  const std::optional<bool> contents = ReadFlag(sheet, L"ProtectContents");
  return contents ? *contents : ReadFlag(sheet, L"Protected").value_or(false);
}

bool IsWorkbookReadOnly(IDispatch* application) {
  const ComPtr<IDispatch> workbook = GetDispProperty(application, L"ActiveWorkbook");
  return ReadFlag(workbook.Get(), L"ReadOnly").value_or(false);
}

bool IsCellLocked(IDispatch* sheet, std::int32_t row, std::int32_t col) {
  const std::wstring sheetName = GetStringProperty(sheet, L"Name");
  const ComPtr<IDispatch> cell = GetCellDispatch(sheet, row, col);
  if (cell == nullptr) {
    PaneLog(Concat(L"IsCellLocked GetCellDispatch failed sheet=", sheetName, L"\r\n"));
    return false;
  }
  const std::optional<bool> locked = ReadFlag(cell.Get(), L"Locked");
  if (!locked) {
    PaneLog(L"IsCellLocked: get Locked failed\r\n");
    return false;
  }
  PaneLog(
      Concat(L"IsCellLocked sheet=", sheetName, L" row=", row, L" col=", col, L" locked=", *locked, L"\r\n"));
  return *locked;
}

}  // namespace qv
