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
  const Variant value(points);
  return SUCCEEDED(PutDispProperty(row, kRowHeight, &value));
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
std::wstring Place(const CellUnit& unit) {
  return Concat(L"sheet=", unit.sheetName, L" row=", unit.row);
}

}  // namespace

void RowFitter::NoteFrozenRows() {
  const ComPtr<IDispatch> window = target_.GetTargetWindowDrv();
  const ComPtr<IDispatch> sheet = target_.GetActiveSheetDispatch();
  Variant frozen;
  if (FAILED(GetProperty(window.Get(), L"FreezePanes", frozen)) || !frozen.IsTrue()) return;
  const std::int32_t lastFrozenRow = GetIntProperty(window.Get(), L"SplitRow");
  const std::wstring sheetName = GetStringProperty(sheet.Get(), L"Name");
  lastFrozenRows_.insert_or_assign(sheetName, lastFrozenRow);
  if (IsWorkbookReadOnly(target_.Application()) || IsSheetProtected(sheet.Get())) {
    PaneLog(Concat(L"Excel bilingual preserve freeze read-only sheet=", sheetName, L" lastFrozenRow=",
                   lastFrozenRow, L"\r\n"));
  }
}

bool RowFitter::IsFrozen(const CellUnit& unit) const {
  const auto entry = lastFrozenRows_.find(unit.sheetName);
  return entry != lastFrozenRows_.end() && unit.row <= entry->second;
}

void RowFitter::Fit(const CellUnit& unit, IDispatch* cell, std::wstring_view text) {
  if (IsFrozen(unit)) {
    PaneLog(Concat(L"Excel bilingual keep frozen row height ", Place(unit), L"\r\n"));
    return;
  }
  const ComPtr<IDispatch> row = GetDispProperty(cell, L"EntireRow");
  if (row == nullptr) {
    PaneLog(L"Excel bilingual EntireRow missing\r\n");
    return;
  }
  const double previous = GetNumberProperty(row.Get(), kRowHeight).value_or(kDefaultRowHeight);
  if (FAILED(InvokeByName(row.Get(), L"AutoFit", {}, nullptr))) {
    PaneLog(L"Excel bilingual AutoFit failed, using estimate\r\n");
    FitByEstimate(unit, cell, row.Get(), previous, text);
    return;
  }
  const double fitted = GetNumberProperty(row.Get(), kRowHeight).value_or(previous);
  if (const std::optional<double> height = GrownRowHeight(previous, fitted)) {
    Grow(unit, row.Get(), previous, *height);
    PaneLog(Concat(L"Excel bilingual rowHeight autofit ", Place(unit), L" orig=", Fixed{previous, 1},
                   L" fitted=", Fixed{fitted, 1}, L"\r\n"));
  } else if (fitted != previous && !PutRowHeight(row.Get(), previous)) {
    PaneLog(L"Excel bilingual RowHeight set failed\r\n");
  }
}

void RowFitter::FitByEstimate(const CellUnit& unit, IDispatch* cell, IDispatch* row, double previous,
                              std::wstring_view text) {
  const double current = GetNumberProperty(row, kRowHeight).value_or(previous);
  const double needed = EstimateRowHeight(text, MetricsOf(cell));
  const std::optional<double> height = GrownRowHeight(previous, std::max(current, needed));
  if (!height) return;
  Grow(unit, row, previous, *height);
  PaneLog(Concat(L"Excel bilingual rowHeight ", Place(unit), L" orig=", Fixed{previous, 1}, L" cur=",
                 Fixed{current, 1}, L" need=", Fixed{needed, 1}, L" set=", Fixed{*height, 1}, L"\r\n"));
}

void RowFitter::Grow(const CellUnit& unit, IDispatch* row, double previous, double height) {
  if (!PutRowHeight(row, height)) {
    PaneLog(L"Excel bilingual RowHeight set failed\r\n");
    return;
  }
  // The first height is the user's own.
  session_.previousRowHeights.try_emplace({unit.sheetName, unit.row}, previous);
}

}  // namespace qv
