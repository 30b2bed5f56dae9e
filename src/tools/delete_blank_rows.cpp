#include "tools/delete_blank_rows.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include "foundation/guard.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "workbook/automation.h"
#include "workbook/cell_content.h"
#include "workbook/host_state.h"
#include "workbook/range_reader.h"
#include "workbook/target_context.h"
#include "workbook/value_block.h"
#include "workbook/workbook_busy_table.h"

namespace qv {
namespace {

constexpr const wchar_t* kNotReadyText = L"Excel Application 未就绪，请重启 Excel 后重试。";
constexpr const wchar_t* kUnreadableSheetText = L"无法解析表格内容。";
constexpr const wchar_t* kTranslatingText = L"正在翻译，请稍候再试";
/// Whole rows have one way to close the gap, whatever the host is told.
constexpr std::int32_t kShift = -4159;

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
    const auto holds = [this](std::int32_t row, std::int32_t col) {
      return array_->Read(row, col, held_) != nullptr;
    };
    return holds(size.rows, size.cols) && !holds(size.rows + 1, 1) && !holds(1, size.cols + 1);
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

/// Whether the object has no such member, as what may be selected in place of cells.
bool IsUnsupported(const HostAnswer& answer) {
  /// Automation's "object doesn't support this property or method".
  constexpr SCODE kNoSuchMember = static_cast<SCODE>(0x800A01B6);
  return answer.hr == DISP_E_UNKNOWNNAME || answer.hr == DISP_E_MEMBERNOTFOUND || answer.hr == E_NOTIMPL ||
         answer.hr == kNoSuchMember || answer.exceptionCode == kNoSuchMember;
}

bool IsText(const VARIANT& value) {
  return value.vt == VT_BSTR;
}

/// A formula is content even where it gives an empty text.
bool IsFilled(const VARIANT& value, const VARIANT& formula) {
  const bool isEmpty = value.vt == VT_EMPTY || (IsText(value) && SysStringLen(value.bstrVal) == 0);
  return !isEmpty || (IsText(formula) && IsFormulaText({formula.bstrVal, SysStringLen(formula.bstrVal)}));
}

/// What a window shows: its own answer, or where windows have no such member the Application's.
HostAnswer AskShown(IDispatch* application, IDispatch* window, const wchar_t* property,
                    ComPtr<IDispatch>& object) {
  HostAnswer answer;
  Variant value;
  answer.hr = GetProperty(window != nullptr ? window : application, property, value, &answer.exceptionCode);
  if (window != nullptr && IsUnsupported(answer)) return AskShown(application, nullptr, property, object);
  object = answer.Ok() ? value.Object() : nullptr;
  return answer;
}

/// What is selected and its rows: none where something else than cells is.
struct Selected {
  ComPtr<IDispatch> object;
  RowSpan rows;
};

/// Nothing where a host that has the member does not tell.
std::optional<RowSpan> SelectedRows(IDispatch* selection) {
  HostAnswer answer;
  const ComPtr<IDispatch> rows = GetDispProperty(selection, L"Rows", &answer);
  if (rows == nullptr) return IsUnsupported(answer) ? std::optional(RowSpan{}) : std::nullopt;
  Variant number;
  if (FAILED(GetProperty(rows.Get(), L"Count", number))) return std::nullopt;
  const std::int32_t count = IntegerOf(number);
  // One row and one cell choose nothing.
  if (count <= 1) return RowSpan{};
  const std::int32_t first = GetIntProperty(selection, L"Row");
  return first >= 1 ? std::optional(RowSpan{first, first + (count - 1)}) : std::nullopt;
}

bool ReadSelection(IDispatch* application, IDispatch* window, Selected& selected) {
  const HostAnswer answer = AskShown(application, window, L"Selection", selected.object);
  if (!answer.Ok()) return IsUnsupported(answer);
  if (selected.object == nullptr) return true;
  const std::optional<RowSpan> rows = SelectedRows(selected.object.Get());
  if (rows) selected.rows = *rows;
  return rows.has_value();
}

/// A sheet as it was read once.
struct SheetScan {
  RangeGeometry used;
  RowSpan scope;
  std::vector<std::int32_t> blank;
};

/// Nothing when the cells cannot be read.
std::optional<SheetScan> ScanCells(IDispatch* range, const RangeGeometry& used, const RowSpan& selected) {
  CellValues values;
  CellValues formulas;
  if (!values.Read(range, L"Value2", used) || !formulas.Read(range, L"Formula", used)) return std::nullopt;
  const RowSpan scope = BlankRowScope(used, selected);
  return SheetScan{used, scope, FindBlankRows(used, scope, [&](std::int32_t row, std::int32_t col) {
                     return IsFilled(values.At(row, col), formulas.At(row, col));
                   })};
}

/// Nothing when the sheet cannot be read. What is selected is asked for after the used range.
template <typename ReadSelected>
std::optional<SheetScan> ScanSheet(IDispatch* sheet, const ReadSelected& readSelected) {
  const ComPtr<IDispatch> range = GetDispProperty(sheet, L"UsedRange");
  const std::optional<RangeGeometry> used = ReadGeometry(RangeReader::LateBound(range));
  if (!used) return std::nullopt;
  const std::optional<RowSpan> selected = readSelected();
  return selected ? ScanCells(range.Get(), *used, *selected) : std::nullopt;
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

bool IsSamePlace(const RangeGeometry& left, const RangeGeometry& right) {
  const auto numbers = [](const RangeGeometry& place) {
    return std::tie(place.rows, place.cols, place.firstRow, place.firstCol);
  };
  return numbers(left) == numbers(right);
}

/// The rows that are blank in both scans: an agent or a translation may have written during the question.
/// Nothing when the sheet cannot be read, or its lines may have moved.
std::optional<std::vector<std::int32_t>> StillBlank(IDispatch* sheet, const SheetScan& before,
                                                    const RowSpan& selected) {
  const std::optional<SheetScan> now = ScanSheet(sheet, [&] { return std::optional(selected); });
  if (!now || !IsSamePlace(before.used, now->used)) return std::nullopt;
  std::vector<std::int32_t> both;
  std::ranges::set_intersection(before.blank, now->blank, std::back_inserter(both));
  return both;
}

/// A run writes to cells by their numbers, and its next texts would land in other rows.
bool IsTranslating(const ExcelWindow& window) {
  TargetContext target;
  target.Pin(window);
  return WorkbookBusyTable::IsClaimed(target.WorkbookKey());
}

/// The preview is put back whatever ends the question.
class PreviewScope {
 public:
  explicit PreviewScope(RowPreview& preview) : preview_(preview) {}
  PreviewScope(const PreviewScope&) = delete;
  PreviewScope& operator=(const PreviewScope&) = delete;
  ~PreviewScope() {
    if (!ended_) Guard(L"PreviewScope", [this] { static_cast<void>(End()); });
  }

  [[nodiscard]] bool End() {
    ended_ = true;
    return preview_.Restore();
  }

 private:
  RowPreview& preview_;
  bool ended_ = false;
};

BlankRowResult Failure(std::wstring_view text) {
  BlankRowResult result;
  result.error = text;
  return result;
}

}  // namespace

BlankRowResult DeleteBlankRows(IDispatch* application, const ExcelWindow& window, RowPreview& preview,
                               const ConfirmBlankRows& confirm) {
  if (application == nullptr) return Failure(kNotReadyText);
  const DisplayAlertsGuard alertsOff(application);
  if (IsTranslating(window)) return Failure(kTranslatingText);
  ComPtr<IDispatch> sheet;
  static_cast<void>(AskShown(application, window.window.Get(), L"ActiveSheet", sheet));
  Selected selected;
  const std::optional<SheetScan> scan = ScanSheet(sheet.Get(), [&]() -> std::optional<RowSpan> {
    return ReadSelection(application, window.window.Get(), selected) ? std::optional(selected.rows)
                                                                     : std::nullopt;
  });
  if (!scan) return Failure(kUnreadableSheetText);
  LogScan(*scan);
  BlankRowResult result;
  result.found = static_cast<std::int32_t>(scan->blank.size());
  if (result.found == 0) return result;
  PreviewScope shown(preview);
  preview.Show(application, sheet.Get(), scan->used, scan->blank, selected.object, window.window.Get());
  const bool agreed = confirm(result.found);
  const bool isRestored = shown.End();
  if (!agreed) {
    PaneLog(L"Excel BlankRowCleaner preview cancelled by user\r\n");
    result.silent = true;
    return result;
  }
  if (!isRestored) {
    // Rows that moved would leave their paint, or another row's fill, behind.
    result.failed = result.found;
    return result;
  }
  if (IsTranslating(window)) return Failure(kTranslatingText);
  const std::optional<std::vector<std::int32_t>> blank = StillBlank(sheet.Get(), *scan, selected.rows);
  if (!blank) return Failure(kUnreadableSheetText);
  result.found = static_cast<std::int32_t>(blank->size());
  DeleteRows(application, sheet.Get(), *blank, result);
  PaneLog(Concat(L"Excel BlankRowCleaner done deleted=", result.deleted, L" failed=", result.failed,
                 L" sheet=", GetStringProperty(sheet.Get(), L"Name"), L"\r\n"));
  return result;
}

}  // namespace qv
