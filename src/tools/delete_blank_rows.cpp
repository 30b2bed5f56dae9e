#include "tools/delete_blank_rows.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/kept_view.h"
#include "workbook/automation.h"
#include "workbook/cell_content.h"
#include "workbook/host_state.h"
#include "workbook/range_reader.h"
#include "workbook/value_block.h"

namespace qv {
namespace {

constexpr const wchar_t* kNotReadyText = L"Excel Application 未就绪，请重启 Excel 后重试。";
constexpr const wchar_t* kUnreadableSheetText = L"无法解析表格内容。";
/// Whole rows have one way to close the gap, whatever the host is told.
constexpr std::int32_t kShift = -4159;
/// Selecting more areas than that takes hosts longer than the preview is worth; the first ones are selected.
constexpr std::size_t kMaxSelectedAreas = 1000;

/// A property of the used range's cells.
class CellValues {
 public:
  /// False when the host gives neither an array nor, for one cell, its value.
  [[nodiscard]] bool Read(IDispatch* used, const wchar_t* property, const RangeGeometry& size) {
    if (FAILED(GetProperty(used, property, answer_))) return false;
    std::optional<ValueBlock> array = ValueBlock::Of(answer_);
    if (!array) return size.Cells() == 1 && !answer_.IsArray();
    array_.emplace(*std::move(array));
    // An answer of another size is not about these cells.
    return array_->Read(size.rows, size.cols, held_) != nullptr;
  }

  /// The value at a 1-based position in the range.
  [[nodiscard]] const VARIANT& At(std::int32_t row, std::int32_t col) const {
    const VARIANT* const value = array_ ? array_->Read(row, col, held_) : nullptr;
    return value != nullptr ? *value : answer_.Get();
  }

 private:
  Variant answer_;
  /// Nothing for one cell that answered its value.
  std::optional<ValueBlock> array_;
  mutable Variant held_;
};

bool IsText(const VARIANT& value) {
  return value.vt == VT_BSTR;
}

/// A formula is content even where it gives an empty text.
bool IsFilled(const VARIANT& value, const VARIANT& formula) {
  const bool isEmpty = value.vt == VT_EMPTY || (IsText(value) && SysStringLen(value.bstrVal) == 0);
  return !isEmpty || (IsText(formula) && IsFormulaText({formula.bstrVal, SysStringLen(formula.bstrVal)}));
}

/// A sheet as it was read once.
struct SheetScan {
  RangeGeometry used;
  RowSpan scope;
  std::vector<std::int32_t> blank;
};

RowSpan SelectedRows(IDispatch* selection) {
  const std::int32_t first = GetIntProperty(selection, L"Row");
  const std::int32_t count = GetIntProperty(GetDispProperty(selection, L"Rows").Get(), L"Count");
  return {first, first + (count - 1)};
}

/// Nothing when the sheet cannot be read.
std::optional<SheetScan> ScanSheet(IDispatch* sheet, const RowSpan& selected) {
  const ComPtr<IDispatch> range = GetDispProperty(sheet, L"UsedRange");
  const std::optional<RangeGeometry> used = ReadGeometry(RangeReader::LateBound(range));
  CellValues values;
  CellValues formulas;
  if (!used || !values.Read(range.Get(), L"Value2", *used) ||
      !formulas.Read(range.Get(), L"Formula", *used)) {
    return std::nullopt;
  }
  const RowSpan scope = BlankRowScope(*used, selected);
  return SheetScan{*used, scope, FindBlankRows(*used, scope, [&](std::int32_t row, std::int32_t col) {
                     return IsFilled(values.At(row, col), formulas.At(row, col));
                   })};
}

void LogScan(const SheetScan& scan) {
  PaneLog(Concat(L"Excel BlankRowCleaner used=", scan.used.rows, L'x', scan.used.cols, L" r0=",
                 scan.used.firstRow, L" scope=[", scan.scope.first, L',', scan.scope.last, L"] blank=",
                 scan.blank.size(), L"\r\n"));
}

/// Null where the sheet has no such range.
ComPtr<IDispatch> RangeAt(IDispatch* sheet, std::wstring_view address) {
  const Variant argument(address);
  Variant range;
  return SUCCEEDED(GetIndexedProperty(sheet, L"Range", {&argument, 1}, range)) ? range.Object() : nullptr;
}

/// A host without unions gets the first rows selected.
void SelectRows(IDispatch* application, IDispatch* sheet, std::span<const RowSpan> rows) {
  ComPtr<IDispatch> all;
  for (const std::wstring& address : JoinAddresses(rows.first(std::min(rows.size(), kMaxSelectedAreas)))) {
    const ComPtr<IDispatch> more = RangeAt(sheet, address);
    if (all == nullptr) {
      all = more;
      continue;
    }
    const Variant both[] = {Variant(all.Get()), Variant(more.Get())};
    Variant joined;
    if (FAILED(InvokeByName(application, L"Union", both, &joined)) || joined.Object() == nullptr) break;
    all = joined.Object();
  }
  // A sheet whose protection lets nothing be selected still has its fills and its numbers.
  if (all != nullptr) static_cast<void>(InvokeByName(all.Get(), L"Select", {}, nullptr));
}

ComPtr<IDispatch> FindRow(IDispatch* sheet, IDispatch* rows, std::int32_t row) {
  const ComPtr<IDispatch> line = GetCollectionItem(rows, Variant(row));
  return line != nullptr ? line : RangeAt(sheet, Concat(L'A', row));
}

bool DeleteRow(IDispatch* sheet, IDispatch* rows, std::int32_t row) {
  const ComPtr<IDispatch> line = GetDispProperty(FindRow(sheet, rows, row).Get(), L"EntireRow");
  if (line == nullptr) {
    PaneLog(Concat(L"Excel BlankRowCleaner row=", row, L" EntireRow missing\r\n"));
    return false;
  }
  const Variant shift(kShift);
  return SUCCEEDED(InvokeByName(line.Get(), L"Delete", {&shift, 1}, nullptr));
}

/// From the last to the first, so that the numbers of the rest stay true.
void DeleteRows(IDispatch* application, IDispatch* sheet, std::span<const std::int32_t> blank,
                BlankRowResult& result) {
  const ScreenUpdatingGuard screenOff(application);
  const ComPtr<IDispatch> rows = GetDispProperty(sheet, L"Rows");
  for (auto row = blank.rbegin(); row != blank.rend(); ++row)
    ++(DeleteRow(sheet, rows.Get(), *row) ? result.deleted : result.failed);
}

/// The rows that are blank in both scans: an agent or a translation may have written during the question.
std::vector<std::int32_t> StillBlank(const SheetScan& before, const SheetScan& now) {
  std::vector<std::int32_t> both;
  std::ranges::set_intersection(before.blank, now.blank, std::back_inserter(both));
  return both;
}

}  // namespace

BlankRowResult DeleteBlankRows(IDispatch* application, const ExcelWindow& window, RowHighlight& preview,
                               const ConfirmBlankRows& confirm) {
  BlankRowResult result;
  if (application == nullptr) {
    result.error = kNotReadyText;
    return result;
  }
  const DisplayAlertsGuard alertsOff(application);
  IDispatch* const shown = window.IsValid() ? window.window.Get() : application;
  const ComPtr<IDispatch> sheet = GetDispProperty(shown, L"ActiveSheet");
  const ComPtr<IDispatch> selection = GetDispProperty(shown, L"Selection");
  const RowSpan selected = SelectedRows(selection.Get());
  const std::optional<SheetScan> scan = ScanSheet(sheet.Get(), selected);
  if (!scan) {
    result.error = kUnreadableSheetText;
    return result;
  }
  LogScan(*scan);
  result.found = static_cast<std::int32_t>(scan->blank.size());
  if (result.found == 0) return result;
  bool agreed = false;
  {
    KeptView view(selection, window.window.Get());
    const std::vector<RowSpan> runs = JoinRows(scan->blank);
    preview.Paint(sheet.Get(), scan->used, runs);
    SelectRows(application, sheet.Get(), runs);
    agreed = confirm(result.found);
    static_cast<void>(preview.Restore());
  }
  if (!agreed) {
    PaneLog(L"Excel BlankRowCleaner preview cancelled by user\r\n");
    result.silent = true;
    return result;
  }
  const std::optional<SheetScan> now = ScanSheet(sheet.Get(), selected);
  if (!now) {
    result.error = kUnreadableSheetText;
    return result;
  }
  DeleteRows(application, sheet.Get(), StillBlank(*scan, *now), result);
  // What is still painted may be rows that have gone or moved.
  if (result.deleted > 0) preview.Forget();
  PaneLog(Concat(L"Excel BlankRowCleaner done deleted=", result.deleted, L" failed=", result.failed,
                 L" sheet=", GetStringProperty(sheet.Get(), L"Name"), L"\r\n"));
  return result;
}

}  // namespace qv
