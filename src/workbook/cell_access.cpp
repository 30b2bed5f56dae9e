#include "workbook/cell_access.h"

#include <algorithm>
#include <array>
#include <optional>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"
#include "workbook/value_put.h"

namespace qv {
namespace {

constexpr const wchar_t* kNumberFormat = L"NumberFormat";

HRESULT ReadCell(IDispatch* sheet, std::int32_t row, std::int32_t col, Variant& value,
                 SCODE* exceptionCode = nullptr) {
  const std::array<Variant, 2> position = {Variant(row), Variant(col)};
  return GetIndexedProperty(sheet, L"Cells", position, value, exceptionCode);
}

/// The end of a log line about a call that gave no object.
std::wstring FailedCellText(std::int32_t row, std::int32_t col, HRESULT hr, const Variant& value) {
  return Concat(L" failed row=", row, L" col=", col, L" hr=0x", Hex8(hr), L" vt=", value.Type(), L"\r\n");
}

CellWriteResult PutText(IDispatch* cell, std::wstring_view text) {
  return PutValue(cell, Variant(text));
}

/// The host drops one leading apostrophe and takes the rest as text.
std::wstring AsLiteral(std::wstring_view text) {
  return Concat(L'\'', text);
}

/// Whether a host may take the text for a number, a date, a boolean or an error ("#N/A"). In some languages
/// full-width digits count; a text of several lines stays one.
bool MayBecomeValue(std::wstring_view text) {
  if (text.empty() || text.find(L'\n') != std::wstring_view::npos) return false;
  const auto isDigit = [](wchar_t unit) {
    return (unit >= L'0' && unit <= L'9') || (unit >= 0xFF10 && unit <= 0xFF19);
  };
  return text.front() == L'#' || EqualsIgnoreAsciiCase(text, L"TRUE") ||
         EqualsIgnoreAsciiCase(text, L"FALSE") || std::ranges::any_of(text, isDigit);
}

/// "- item" is refused as a bad formula, "-item" silently becomes one.
bool MayBecomeFormula(std::wstring_view text) {
  return !text.empty() && std::wstring_view(L"+-@").find(text.front()) != std::wstring_view::npos;
}

/// Whether the host made something else of a text that it took. `answer` receives a busy answer; a property
/// that cannot be read for another reason says nothing against the text.
bool BecameOther(IDispatch* cell, std::wstring_view text, CellWriteResult& answer) {
  Variant value;
  const auto read = [&](const wchar_t* name) {
    answer.hr = GetProperty(cell, name, value, &answer.exceptionCode);
    return answer.Ok();
  };
  if (MayBecomeFormula(text)) {
    if (read(L"HasFormula") && value.IsTrue()) return true;
    if (answer.IsBusy()) return false;
  }
  return MayBecomeValue(text) && read(L"Value2") && !value.IsText();
}

/// Puts a text that the host misread once more, as a literal. With a text such as "1/2" the host has also
/// changed how the cell shows numbers.
CellWriteResult PutAgainAsLiteral(IDispatch* cell, std::wstring_view text, const Variant& formerFormat) {
  if (formerFormat.IsText()) {
    CellWriteResult result;
    result.hr = PutDispProperty(cell, kNumberFormat, &formerFormat, &result.exceptionCode);
    if (result.IsBusy()) return result;
  }
  return PutText(cell, AsLiteral(text));
}

/// `touched` becomes true once the host took the text, whatever it made of it.
CellWriteResult PutLiteralText(IDispatch* cell, std::wstring_view text, bool& touched) {
  const bool special = !text.empty() && (text.front() == L'=' || text.front() == L'\'');
  Variant formerFormat;
  CellWriteResult result;
  if (special || MayBecomeValue(text)) {
    result.hr = GetProperty(cell, kNumberFormat, formerFormat, &result.exceptionCode);
    if (result.IsBusy()) return result;
  }
  // A cell formatted as text keeps whatever is put, an apostrophe included.
  if (special) return PutText(cell, formerFormat.Text() == L"@" ? std::wstring(text) : AsLiteral(text));
  result = PutText(cell, text);
  if (result.IsBusy()) return result;
  if (!result.Ok()) return MayBecomeFormula(text) ? PutText(cell, AsLiteral(text)) : result;

  touched = true;
  CellWriteResult answer;
  if (BecameOther(cell, text, answer)) return PutAgainAsLiteral(cell, text, formerFormat);
  return answer.IsBusy() ? answer : result;
}

/// The cell of a sheet, or null with the failure in `status`.
ComPtr<IDispatch> FindCellToWrite(IDispatch* sheet, std::int32_t row, std::int32_t col,
                                  CellWriteResult& status) {
  Variant value;
  status.hr = ReadCell(sheet, row, col, value, &status.exceptionCode);
  ComPtr<IDispatch> cell = status.Ok() ? value.Object() : nullptr;
  if (cell != nullptr) return cell;
  if (status.hr == DISP_E_UNKNOWNNAME) {
    PaneLog(L"PutCellValueDispatch: Cells get failed\r\n");
  } else {
    PaneLog(Concat(L"PutCellValueDispatch: cell get", FailedCellText(row, col, status.hr, value)));
  }
  if (status.Ok()) status.hr = E_FAIL;
  return nullptr;
}

void LogSheetLookupFailure(const TargetContext& target, std::wstring_view sheetName) {
  if (sheetName.empty()) {
    PaneLog(L"PutCellValueDispatch: active sheet lookup failed\r\n");
  } else {
    PaneLog(Concat(L"PutCellValueDispatch: sheet lookup failed sheet=", sheetName, L" pinnedBook=",
                   target.Pinned().workbookName, L"\r\n"));
  }
}

/// "Formula" takes the language-neutral spelling whatever the user's language; "Value2" does not.
CellWriteResult PutFormula(IDispatch* cell, std::wstring_view formula) {
  const Variant value(formula);
  CellWriteResult result;
  result.hr = PutDispProperty(cell, L"Formula", &value, &result.exceptionCode);
  return result;
}

CellWriteResult PutContent(IDispatch* cell, const CellContent& content, bool& touched) {
  switch (content.kind) {
    case CellContentKind::kFormula:
      return PutFormula(cell, content.text);
    case CellContentKind::kNumber:
    case CellContentKind::kFlag:
      return PutValue(cell, ValueOf(content));
    case CellContentKind::kTyped:
      return PutText(cell, content.text);
    default:
      return PutLiteralText(cell, content.text, touched);
  }
}

CellWriteResult PutFound(const CellTarget& target, std::wstring_view sheetName, std::int32_t row,
                         std::int32_t col, const CellContent& content, bool& touched) {
  touched = false;
  if (target.cell == nullptr) return target.status;
  const CellWriteResult result = PutContent(target.cell.Get(), content, touched);
  if (result.Ok()) touched = true;
  const std::wstring where = Concat(sheetName, L" row=", row, L" col=", col);
  if (result.Ok()) {
    PaneLog(Concat(L"Excel PutCellValueDispatch ok sheet=", where, L"\r\n"));
  } else {
    PaneLog(Concat(L"Excel PutCellValueDispatch failed sheet=", where, L" hr=0x", Hex8(result.hr), L"\r\n"));
  }
  return result;
}

}  // namespace

ComPtr<IDispatch> GetCellDispatch(IDispatch* sheet, std::int32_t row, std::int32_t col, HostAnswer* answer) {
  Variant value;
  HostAnswer own;
  own.hr = ReadCell(sheet, row, col, value, &own.exceptionCode);
  ComPtr<IDispatch> cell = own.Ok() ? value.Object() : nullptr;
  if (cell == nullptr) {
    PaneLog(Concat(L"GetCellDispatch", FailedCellText(row, col, own.hr, value)));
    if (own.Ok()) own.hr = E_FAIL;
  }
  if (answer != nullptr) *answer = own;
  return cell;
}

ComPtr<IDispatch> TryGetWorksheetItemDispatch(IDispatch* sheets, const Variant& key, HostAnswer* answer) {
  Variant value;
  HostAnswer own;
  own.hr = GetItem(sheets, {&key, 1}, value, &own.exceptionCode);
  ComPtr<IDispatch> sheet = own.Ok() ? value.Object() : nullptr;
  if (sheet == nullptr) {
    PaneLog(
        Concat(L"TryGetWorksheetItemDispatch failed hr=0x", Hex8(own.hr), L" key.vt=", key.Type(), L"\r\n"));
    if (own.Ok()) own.hr = E_FAIL;
  }
  if (answer != nullptr) *answer = own;
  return sheet;
}

ComPtr<IDispatch> ResolveSheet(const TargetContext& target, std::wstring_view sheetName) {
  CellWriteResult ignored;
  return ResolveSheet(target, sheetName, ignored);
}

ComPtr<IDispatch> ResolveSheet(const TargetContext& target, std::wstring_view sheetName,
                               CellWriteResult& status) {
  if (sheetName.empty()) return target.GetActiveSheetDispatch(&status);
  const ComPtr<IDispatch> sheets = target.GetActiveWorkbookSheets(&status);
  CellWriteResult item;
  ComPtr<IDispatch> sheet = TryGetWorksheetItemDispatch(sheets.Get(), Variant(sheetName), &item);
  // Without the collection its own refusal says more than that of a null object.
  if (sheets != nullptr) status = item;
  return sheet;
}

CellTarget FindCell(const TargetContext& target, std::wstring_view sheetName, std::int32_t row,
                    std::int32_t col) {
  CellTarget found;
  found.sheet = ResolveSheet(target, sheetName, found.status);
  if (found.sheet != nullptr) {
    found.cell = FindCellToWrite(found.sheet.Get(), row, col, found.status);
  } else {
    LogSheetLookupFailure(target, sheetName);
  }
  return found;
}

void LogCellPut(std::wstring_view sheetName, std::int32_t row, std::int32_t col, std::wstring_view text) {
  PaneLog(Concat(L"PutCellValueDispatch enter sheet=", sheetName, L" row=", row, L" col=", col, L" textLen=",
                 text.size(), L"\r\n"));
}

HostAnswer ReadFormula(IDispatch* cell, std::wstring& formula) {
  HostAnswer answer;
  Variant value;
  answer.hr = GetProperty(cell, L"HasFormula", value, &answer.exceptionCode);
  if (!answer.Ok() || !value.IsTrue()) return answer;
  answer.hr = GetProperty(cell, L"Formula", value, &answer.exceptionCode);
  if (answer.Ok()) formula = value.Text();
  return answer;
}

CellWriteResult PutCellText(const CellTarget& target, std::wstring_view sheetName, std::int32_t row,
                            std::int32_t col, std::wstring_view text) {
  bool ignored = false;
  return PutFound(target, sheetName, row, col, {std::wstring(text), CellContentKind::kText}, ignored);
}

CellWriteResult PutCellContent(const CellTarget& target, std::wstring_view sheetName, std::int32_t row,
                               std::int32_t col, const CellContent& content, bool* touched) {
  LogCellPut(sheetName, row, col, content.text);
  bool ignored = false;
  return PutFound(target, sheetName, row, col, content, touched != nullptr ? *touched : ignored);
}

CellWriteResult RestoreCellContent(const CellTarget& target, std::wstring_view sheetName, std::int32_t row,
                                   std::int32_t col, const CellContent& content) {
  bool ignored = false;
  const CellWriteResult result =
      target.cell == nullptr ? target.status : PutContent(target.cell.Get(), content, ignored);
  if (!result.Ok()) {
    PaneLog(Concat(L"Excel put_Value2 failed sheet=", sheetName, L" row=", row, L" col=", col, L" hr=0x",
                   Hex8(result.hr), L"\r\n"));
  }
  return result;
}

CellWriteResult PutCellValueDispatch(const TargetContext& target, std::wstring_view sheetName,
                                     std::int32_t row, std::int32_t col, std::wstring_view text) {
  LogCellPut(sheetName, row, col, text);
  const DisplayAlertsGuard alertsOff(target.Application());
  return PutCellText(FindCell(target, sheetName, row, col), sheetName, row, col, text);
}

bool IsSheetProtected(IDispatch* sheet, HostAnswer* answer) {
  Variant flag;
  HostAnswer own;
  for (const wchar_t* name : {L"ProtectContents", L"Protected"}) {
    own.hr = GetProperty(sheet, name, flag, &own.exceptionCode);
    if (own.IsBusy() || (own.Ok() && flag.Type() == VT_BOOL)) break;
  }
  if (answer != nullptr) *answer = own;
  return own.Ok() && flag.IsTrue();
}

bool IsWorkbookReadOnly(IDispatch* application) {
  const ComPtr<IDispatch> workbook = GetDispProperty(application, L"ActiveWorkbook");
  return GetFlagProperty(workbook.Get(), L"ReadOnly").value_or(false);
}

bool IsCellLocked(IDispatch* sheet, std::int32_t row, std::int32_t col) {
  const std::wstring sheetName = GetStringProperty(sheet, L"Name");
  const ComPtr<IDispatch> cell = GetCellDispatch(sheet, row, col);
  if (cell == nullptr) {
    PaneLog(Concat(L"IsCellLocked GetCellDispatch failed sheet=", sheetName, L"\r\n"));
    return false;
  }
  return IsCellLocked(cell.Get(), sheetName, row, col);
}

bool IsCellLocked(IDispatch* cell, std::wstring_view sheetName, std::int32_t row, std::int32_t col) {
  const std::optional<bool> locked = GetFlagProperty(cell, L"Locked");
  if (!locked) {
    PaneLog(L"IsCellLocked: get Locked failed\r\n");
    return false;
  }
  PaneLog(
      Concat(L"IsCellLocked sheet=", sheetName, L" row=", row, L" col=", col, L" locked=", *locked, L"\r\n"));
  return *locked;
}

}  // namespace qv
