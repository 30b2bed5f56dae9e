#include "workbook/area_scan.h"

#include <optional>
#include <string_view>
#include <utility>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "workbook/automation.h"
#include "workbook/cell_access.h"
#include "workbook/value_block.h"

namespace qv {

const BulkLogTexts kLateBoundBulk = {
    L"Excel CollectCellsFromDispatchValue2\r\n",
    L"Excel Value2 dispatch batch",
    L"Excel Value2 dispatch cells=",
};
const BulkLogTexts kTypedBulk = {
    L"Excel CollectCellsFromRangeValue2\r\n",
    L"Excel Value2 batch",
    L"Excel Value2 batch cells=",
};

namespace {

constexpr const wchar_t* kNoBulkValues = L"无法批量读取单元格内容";
constexpr const wchar_t* kNoBulkData = L"无法解析批量单元格数据";
constexpr const wchar_t* kRangeUnreadable = L"无法读取区域";

/// The text of a cell value: strings, and booleans as words. Numbers need no translation; dates, errors and
/// other kinds have no text.
std::wstring_view TextOf(const VARIANT& value) {
  if (value.vt == VT_BSTR) return {value.bstrVal ? value.bstrVal : L"", SysStringLen(value.bstrVal)};
  if (value.vt == VT_BOOL) return value.boolVal != VARIANT_FALSE ? L"TRUE" : L"FALSE";
  return {};
}

/// A property of the whole range that may be a single value, an array, or missing.
class RangeFlags {
 public:
  RangeFlags(const RangeReader& range, const RangeMember& member) {
    if (FAILED(range.Get(member, answer_))) answer_ = Variant();
    if (std::optional<ValueBlock> block = ValueBlock::Of(answer_)) block_.emplace(std::move(*block));
  }
  RangeFlags(const RangeFlags&) = delete;
  RangeFlags& operator=(const RangeFlags&) = delete;

  [[nodiscard]] bool ElementIsTrue(std::int32_t row, std::int32_t col) const {
    return block_ && block_->IsTrueAt(row, col);
  }
  /// The element, or the single value.
  [[nodiscard]] bool IsTrue(std::int32_t row, std::int32_t col) const {
    return answer_.IsTrue() || ElementIsTrue(row, col);
  }

 private:
  Variant answer_;
  std::optional<ValueBlock> block_;
};

/// The answers of the three bulk reads while they are turned into units.
class BulkScan {
 public:
  BulkScan(const AreaScan& scan, const Variant& values, UnitList& units)
      : scan_(scan),
        values_(values),
        hasFormula_(scan.range, kRangeHasFormula),
        mergeCells_(scan.range, kRangeMergeCells),
        units_(units) {}

  [[nodiscard]] ScanOutcome AddArray(const ValueBlock& block) {
    units_.Reserve(block.CountTexts());
    Variant held;
    for (std::int32_t row = 1; row <= scan_.geometry.rows; ++row) {
      if (!scan_.progress.BeginRow(row)) return ScanOutcome::kStopped;
      for (std::int32_t col = 1; col <= scan_.geometry.cols; ++col) {
        const VARIANT* const element = block.Read(row, col, held);
        if (element == nullptr) return ScanOutcome::kFailed;
        // The type decides most cells, so the dearer tests come after it. A single answer for the whole range
        // says nothing about one cell of it.
        const std::wstring_view text = TextOf(*element);
        if (!text.empty() && !hasFormula_.ElementIsTrue(row, col)) AddUnlessCovered(row, col, text);
      }
    }
    return ScanOutcome::kDone;
  }

  void AddSingle() {
    const std::wstring_view text = TextOf(values_.Get());
    if (!text.empty() && !hasFormula_.IsTrue(1, 1)) AddUnlessCovered(1, 1, text);
  }

 private:
  void AddUnlessCovered(std::int32_t row, std::int32_t col, std::wstring_view text) {
    const std::int32_t sheetRow = scan_.geometry.firstRow + row - 1;
    const std::int32_t sheetCol = scan_.geometry.firstCol + col - 1;
    if (mergeCells_.IsTrue(row, col)) {
      const RangeReader cell = scan_.range.For(GetCellDispatch(scan_.sheet, sheetRow, sheetCol).Get());
      if (IsCoveredByMerge(cell, sheetRow, sheetCol)) return;
    }
    units_.AddText(sheetRow, sheetCol, text);
  }

  const AreaScan& scan_;
  const Variant& values_;
  RangeFlags hasFormula_;
  RangeFlags mergeCells_;
  UnitList& units_;
};

ScanOutcome Fail(std::wstring& error, const wchar_t* text) {
  error = text;
  return ScanOutcome::kFailed;
}

/// How the read of one cell of a cell-by-cell scan ended.
enum class CellRead { kFine, kUnreadable, kBusy };

CellRead FailedRead(const wchar_t* what, std::int32_t row, std::int32_t col, HRESULT hr, SCODE exceptionCode,
                    const Variant& value) {
  PaneLog(
      Concat(L"Excel ", what, L'(', row, L',', col, L") hr=0x", Hex8(hr), L" vt=", value.Type(), L"\r\n"));
  return IsHostBusy(hr, exceptionCode) ? CellRead::kBusy : CellRead::kUnreadable;
}

CellRead AddCell(const AreaScan& scan, std::int32_t row, std::int32_t col, UnitList& units) {
  Variant item;
  SCODE exceptionCode = 0;
  HRESULT hr = scan.range.Item(row, col, item, &exceptionCode);
  const ComPtr<IDispatch> object = SUCCEEDED(hr) ? item.Object() : nullptr;
  if (object == nullptr) return FailedRead(L"Item", row, col, hr, exceptionCode, item);

  const RangeReader cell = scan.range.For(object.Get());
  Variant value;
  hr = cell.Get(kRangeValue2, value, &exceptionCode);
  if (FAILED(hr)) return FailedRead(L"Item Value2", row, col, hr, exceptionCode, value);
  // Values without a text cost no further calls.
  const std::wstring_view text = TextOf(value.Get());
  if (text.empty()) return CellRead::kFine;

  HostAnswer answer;
  Variant hasFormula;
  answer.hr = cell.Get(kRangeHasFormula, hasFormula, &answer.exceptionCode);
  if (answer.IsBusy()) return CellRead::kBusy;
  if (answer.Ok() && hasFormula.IsTrue()) return CellRead::kFine;
  const std::int32_t sheetRow = scan.geometry.firstRow + row - 1;
  const std::int32_t sheetCol = scan.geometry.firstCol + col - 1;
  const bool covered = IsCoveredByMerge(cell, sheetRow, sheetCol, &answer);
  if (answer.IsBusy()) return CellRead::kBusy;
  if (!covered) units.AddText(sheetRow, sheetCol, text);
  return CellRead::kFine;
}

}  // namespace

ScanOutcome ScanBulk(const AreaScan& scan, const BulkLogTexts& texts, UnitList& units, std::wstring& error) {
  const RangeGeometry& geometry = scan.geometry;
  if (scan.range.IsNull() || geometry.rows < 1 || geometry.cols < 1) return Fail(error, kRangeUnreadable);
  PaneLog(texts.start);
  PaneLog(Concat(texts.geometry, L" rows=", geometry.rows, L" cols=", geometry.cols, L" r0=",
                 geometry.firstRow, L" c0=", geometry.firstCol, L"\r\n"));
  Variant values;
  if (FAILED(scan.range.Get(kRangeValue2, values))) return Fail(error, kNoBulkValues);
  // Only a single cell has a single value; for more cells it would stand for cells that were not read.
  if (!values.IsArray() && geometry.Cells() != 1) return Fail(error, kNoBulkValues);

  BulkScan bulk(scan, values, units);
  if (values.IsArray()) {
    const std::optional<ValueBlock> block = ValueBlock::Of(values);
    if (!block) return Fail(error, kNoBulkData);
    const ScanOutcome outcome = bulk.AddArray(*block);
    if (outcome == ScanOutcome::kFailed) return Fail(error, kNoBulkData);
    if (outcome != ScanOutcome::kDone) return outcome;
  } else {
    bulk.AddSingle();
  }
  PaneLog(Concat(texts.end, units.Size(), L"\r\n"));
  return ScanOutcome::kDone;
}

ScanOutcome ScanCells(const AreaScan& scan, UnitList& units, std::wstring& error) {
  bool anyRead = false;
  for (std::int32_t row = 1; row <= scan.geometry.rows; ++row) {
    if (!scan.progress.BeginRow(row)) return ScanOutcome::kStopped;
    for (std::int32_t col = 1; col <= scan.geometry.cols; ++col) {
      const CellRead read = AddCell(scan, row, col, units);
      if (read == CellRead::kBusy) {
        error = kRangeUnreadable;
        return ScanOutcome::kStopped;
      }
      if (read == CellRead::kFine) anyRead = true;
    }
  }
  return anyRead ? ScanOutcome::kDone : Fail(error, kRangeUnreadable);
}

}  // namespace qv
