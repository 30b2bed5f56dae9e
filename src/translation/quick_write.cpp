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

/// The selection's top-left cell as a unit without a text; at 0, 0 when no cells are selected.
CellUnit SelectedCell(const TargetContext& target) {
  const ComPtr<IDispatch> selection = target.GetTargetSelectionDrv();
  const ComPtr<IDispatch> sheet = GetDispProperty(selection.Get(), L"Worksheet");
  CellUnit cell;
  cell.row = GetIntProperty(selection.Get(), L"Row");
  cell.col = GetIntProperty(selection.Get(), L"Column");
  cell.sheet = std::make_shared<SheetTexts>(GetStringProperty(sheet.Get(), L"Name"));
  return cell;
}

/// What the cell shows; a number as its column is wide enough to show it. Nothing when the host does not say,
/// with the reason in `status`.
std::optional<std::wstring> ShownText(IDispatch* cell, CellWriteResult& status) {
  Variant value;
  const auto read = [&](const wchar_t* name) {
    status.hr = GetProperty(cell, name, value, &status.exceptionCode);
    return status.Ok();
  };
  if (!read(L"Value2")) return std::nullopt;
  if (value.IsText() || value.Type() == VT_EMPTY) return value.Text();
  if (!read(L"Text")) return std::nullopt;
  const std::wstring shown = value.Text();
  if (shown.find_first_not_of(L'#') != std::wstring::npos) return shown;
  // A column too narrow for a number shows a row of '#'.
  return read(L"Formula") ? std::optional(value.Text()) : std::nullopt;
}

CellWriteResult Write(const TargetContext& target, const CellUnit& unit, const QuickWriteRequest& request) {
  const CellTarget place = FindCell(target, unit.SheetName(), unit.row, unit.col);
  if (place.cell == nullptr) return place.status;
  const auto put = [&](std::wstring_view text) {
    return PutCellText(place, unit.SheetName(), unit.row, unit.col, text);
  };
  if (request.mode == QuickWriteMode::kReplace) return put(request.text);
  CellWriteResult read;
  const std::optional<std::wstring> former = ShownText(place.cell.Get(), read);
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
  const CellUnit cell = SelectedCell(target);
  const DisplayAlertsGuard alertsOff(target.Application());
  const CellWriteResult result = Write(target, cell, request);
  if (!result.Ok()) ProtectionNotice(target, output).OnWriteFailed(cell, result, false);
}

}  // namespace qv
