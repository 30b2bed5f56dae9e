#include "translation/row_fitter.h"

#include <algorithm>
#include <optional>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "foundation/variant.h"
#include "translation/cell_style.h"
#include "translation/row_height.h"
#include "workbook/automation.h"
#include "workbook/cell_access.h"

namespace qv {
namespace {

constexpr const wchar_t* kRowHeight = L"RowHeight";

bool PutRowHeight(IDispatch* row, double points) {
  return PutProperty(row, kRowHeight, Variant(points)).Ok();
}

CellMetrics MetricsOf(IDispatch* cell) {
  CellMetrics metrics;
  metrics.fontSize = GetNumberProperty(GetDispProperty(cell, L"Font").Get(), L"Size");
  if (const ComPtr<IDispatch> area = MergeAreaOf(cell)) {
    metrics.mergeWidth = GetNumberProperty(area.Get(), L"Width");
  }
  metrics.columnWidth = GetNumberProperty(cell, L"ColumnWidth");
  return metrics;
}

/// "sheet=Data row=3", as height lines begin.
std::wstring Place(std::wstring_view sheetName, std::int32_t row) {
  return Concat(L"sheet=", sheetName, L" row=", row);
}

}  // namespace

void RowFitter::NoteFrozenRows() {
  workbookKey_ = target_.WorkbookKey();
  const ComPtr<IDispatch> window = target_.GetTargetWindowDrv();
  const ComPtr<IDispatch> sheet = target_.GetActiveSheetDispatch();
  const std::wstring sheetName = GetStringProperty(sheet.Get(), L"Name");
  const std::optional<bool> frozen = GetFlagProperty(window.Get(), L"FreezePanes");
  const std::optional<double> split = GetNumberProperty(window.Get(), L"SplitRow");
  // What cannot be read now is as it was.
  if (sheetName.empty() || !frozen || !split) return;
  const auto lastFrozenRow = static_cast<std::int32_t>(*frozen ? *split : 0.0);
  session_.lastFrozenRows.insert_or_assign({workbookKey_, sheetName}, lastFrozenRow);
  if (!*frozen) return;
  if (IsWorkbookReadOnly(target_.Application()) || IsSheetProtected(sheet.Get())) {
    PaneLog(Concat(L"Excel bilingual preserve freeze read-only sheet=", sheetName, L" lastFrozenRow=",
                   lastFrozenRow, L"\r\n"));
  }
}

void RowFitter::BeginCell(const CellUnit& unit, IDispatch* cell) {
  if (open_ && open_->row == unit.row && open_->sheetName == unit.SheetName()) return;
  FinishRow();
  OpenRow row{unit.SheetName(), unit.row, GetDispProperty(cell, L"EntireRow"), kDefaultRowHeight, {}};
  if (row.range == nullptr) PaneLog(L"Excel bilingual EntireRow missing\r\n");
  row.previous = GetNumberProperty(row.range.Get(), kRowHeight).value_or(kDefaultRowHeight);
  open_ = std::move(row);
}

void RowFitter::EndCell(IDispatch* cell, std::wstring_view text) {
  if (open_) open_->cells.emplace_back(cell, text);
}

void RowFitter::FinishRow() {
  if (!open_) return;
  // The host may bring the next cell while it is being called.
  const OpenRow row = *std::exchange(open_, std::nullopt);
  // A hidden row has no height, and must not get one.
  if (row.range == nullptr || row.cells.empty() || row.previous == 0.0) return;
  if (IsFrozen(row)) {
    KeepHeight(row);
  } else {
    Fit(row);
  }
}

bool RowFitter::IsFrozen(const OpenRow& row) const {
  const auto entry = session_.lastFrozenRows.find({workbookKey_, row.sheetName});
  return entry != session_.lastFrozenRows.end() && row.row <= entry->second;
}

void RowFitter::KeepHeight(const OpenRow& row) {
  PaneLog(Concat(L"Excel bilingual keep frozen row height ", Place(row.sheetName, row.row), L"\r\n"));
  const std::optional<double> height = GetNumberProperty(row.range.Get(), kRowHeight);
  if (height && *height != row.previous && !PutRowHeight(row.range.Get(), row.previous)) {
    PaneLog(L"Excel bilingual RowHeight set failed\r\n");
  }
}

void RowFitter::Fit(const OpenRow& row) {
  if (FAILED(InvokeByName(row.range.Get(), L"AutoFit", {}, nullptr))) {
    PaneLog(L"Excel bilingual AutoFit failed, using estimate\r\n");
    FitByEstimate(row);
    return;
  }
  const std::optional<double> fitted = GetNumberProperty(row.range.Get(), kRowHeight);
  const std::optional<double> height = fitted ? GrownRowHeight(row.previous, *fitted) : std::nullopt;
  if (height) {
    if (!Grow(row, *height)) return;
    PaneLog(Concat(L"Excel bilingual rowHeight autofit ", Place(row.sheetName, row.row), L" orig=",
                   Fixed{row.previous, 1}, L" fitted=", Fixed{*fitted, 1}, L"\r\n"));
  } else if (fitted != row.previous && !PutRowHeight(row.range.Get(), row.previous)) {
    PaneLog(L"Excel bilingual RowHeight set failed\r\n");
  }
}

void RowFitter::FitByEstimate(const OpenRow& row) {
  const double current = GetNumberProperty(row.range.Get(), kRowHeight).value_or(row.previous);
  double needed = 0.0;
  for (const auto& [cell, text] : row.cells)
    needed = std::max(needed, EstimateRowHeight(text, MetricsOf(cell.Get())));
  const std::optional<double> height = GrownRowHeight(row.previous, std::max(current, needed));
  if (!height || !Grow(row, *height)) return;
  PaneLog(Concat(L"Excel bilingual rowHeight ", Place(row.sheetName, row.row), L" orig=",
                 Fixed{row.previous, 1}, L" cur=", Fixed{current, 1}, L" need=", Fixed{needed, 1}, L" set=",
                 Fixed{*height, 1}, L"\r\n"));
}

bool RowFitter::Grow(const OpenRow& row, double height) {
  // The first height is the user's own; kept also when the put fails, for the fitting may have changed the
  // row.
  session_.previousRowHeights.try_emplace({row.sheetName, row.row}, row.previous);
  if (PutRowHeight(row.range.Get(), height)) return true;
  PaneLog(L"Excel bilingual RowHeight set failed\r\n");
  return false;
}

}  // namespace qv
