#include "translation/quick_write.h"

#include <memory>
#include <optional>
#include <string>

#include "translation/cell_style.h"
#include "translation/protection_notice.h"
#include "translation/quick_write_text.h"
#include "workbook/automation.h"
#include "workbook/cell_access.h"
#include "workbook/cell_unit.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

/// The selection's top-left cell as a unit without a text; at 0, 0 when no cells are selected. `answer`
/// receives how the host gave the selection.
CellUnit SelectedCell(const TargetContext& target, HostAnswer& answer) {
  const ComPtr<IDispatch> selection = target.GetTargetSelectionDrv(&answer);
  CellUnit cell;
  cell.sheet = std::make_shared<SheetTexts>(std::wstring());
  if (selection == nullptr) return cell;
  const ComPtr<IDispatch> sheet = GetDispProperty(selection.Get(), L"Worksheet");
  cell.row = GetIntProperty(selection.Get(), L"Row");
  cell.col = GetIntProperty(selection.Get(), L"Column");
  cell.sheet = std::make_shared<SheetTexts>(GetStringProperty(sheet.Get(), L"Name"));
  return cell;
}

/// A number in the user's notation, or a boolean; nothing for any other value.
std::optional<std::wstring> TextOfValue(Variant value) {
  if (value.Type() == VT_BOOL) return value.IsTrue() ? L"TRUE" : L"FALSE";
  if (value.Type() != VT_R8) return std::nullopt;
  const HRESULT hr = VariantChangeType(&value.Get(), &value.Get(), 0, VT_BSTR);
  return SUCCEEDED(hr) ? std::optional(value.Text()) : std::nullopt;
}

/// Reads what a cell says, however narrow its column is.
class CellTextReader {
 public:
  /// `status` receives why there is no text.
  CellTextReader(IDispatch* cell, CellWriteResult& status) : cell_(cell), status_(status) {}

  std::optional<std::wstring> Read() {
    Variant value;
    if (!Get(L"Value2", value)) return std::nullopt;
    if (value.IsText() || value.Type() == VT_EMPTY) return value.Text();
    // A narrow column rounds a number in the general format, and shows any other as a row of '#'.
    if (!IsGeneralNumber(value)) {
      Variant shown;
      if (!Get(L"Text", shown)) return std::nullopt;
      if (shown.Text().find_first_not_of(L'#') != std::wstring::npos) return shown.Text();
    }
    if (!status_.Ok()) return std::nullopt;
    const std::optional<std::wstring> text = TextOfValue(value);
    return text ? text : ConstantAsTyped();
  }

 private:
  bool Get(const wchar_t* name, Variant& value) {
    status_.hr = GetProperty(cell_, name, value, &status_.exceptionCode);
    return status_.Ok();
  }

  bool IsGeneralNumber(const Variant& value) {
    Variant format;
    return value.Type() == VT_R8 && Get(L"NumberFormat", format) && format.Text() == L"General";
  }

  /// A formula's source is not what its cell says.
  std::optional<std::wstring> ConstantAsTyped() {
    Variant answer;
    if (!Get(L"HasFormula", answer)) return std::nullopt;
    if (!answer.IsTrue()) return Get(L"Formula", answer) ? std::optional(answer.Text()) : std::nullopt;
    status_.hr = DISP_E_TYPEMISMATCH;
    return std::nullopt;
  }

  IDispatch* cell_;
  CellWriteResult& status_;
};

CellWriteResult Write(const TargetContext& target, const CellUnit& unit, const QuickWriteRequest& request) {
  const CellTarget place = FindCell(target, unit.SheetName(), unit.row, unit.col);
  if (place.cell == nullptr) return place.status;
  const auto put = [&](std::wstring_view text) {
    LogCellPut(unit.SheetName(), unit.row, unit.col, text);
    return PutCellText(place, unit.SheetName(), unit.row, unit.col, text);
  };
  if (request.mode == QuickWriteMode::kReplace) return put(request.text);
  CellWriteResult read;
  const std::optional<std::wstring> former = CellTextReader(place.cell.Get(), read).Read();
  // What the cell holds must not be lost because it could not be read.
  if (!former) return read;
  const std::wstring text = InsertedText(*former, request.text);
  const bool hasNewLine = text.size() > request.text.size();
  const CellWriteResult result = put(text);
  if (result.Ok() && hasNewLine) WrapCellText(place.cell.Get());
  return result;
}

}  // namespace

void WriteQuickTranslation(const TargetContext& target, PanelOutput& output, std::wstring_view message) {
  const QuickWriteRequest request = ParseQuickWrite(message);
  if (!request.WritesAnything()) return;
  CellWriteResult result;
  const CellUnit cell = SelectedCell(target, result);
  const DisplayAlertsGuard alertsOff(result.Ok() ? target.Application() : nullptr);
  if (result.Ok()) result = Write(target, cell, request);
  if (!result.Ok()) ProtectionNotice(target, output).OnWriteFailed(cell, result, false);
}

}  // namespace qv
