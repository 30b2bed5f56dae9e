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

/// Logs a refusal unless the same put comes again.
HostAnswer PutRowHeight(IDispatch* row, double points) {
  const HostAnswer answer = PutProperty(row, kRowHeight, Variant(points));
  if (!answer.Ok() && !answer.IsBusy()) PaneLog(L"Excel bilingual RowHeight set failed\r\n");
  return answer;
}

/// Points; nothing with how the host refused, or where the answer is no number.
std::optional<double> ReadRowHeight(IDispatch* row, HostAnswer& answer) {
  Variant value;
  answer.hr = GetProperty(row, kRowHeight, value, &answer.exceptionCode);
  if (!answer.Ok()) return std::nullopt;
  if (value.Type() == VT_R8) return value->dblVal;
  return value.Type() == VT_I4 || value.Type() == VT_I2 ? std::optional<double>(IntegerOf(value))
                                                        : std::nullopt;
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

HostAnswer RowFitter::BeginCell(const CellUnit& unit, IDispatch* cell) {
  if (open_ && open_->IsOf(unit)) return {};
  CloseRow();
  HostAnswer answer;
  std::optional<Row> row = OpenRow(unit, cell, answer);
  if (row) open_ = std::move(row);
  return answer.IsBusy() ? answer : HostAnswer();
}

std::optional<RowFitter::Row> RowFitter::OpenRow(const CellUnit& unit, IDispatch* cell, HostAnswer& answer) {
  ComPtr<IDispatch> range = GetDispProperty(cell, L"EntireRow", &answer);
  if (answer.IsBusy()) return std::nullopt;
  if (range == nullptr) PaneLog(L"Excel bilingual EntireRow missing\r\n");
  const auto due = std::ranges::find_if(due_, [&](const Row& row) { return row.IsOf(unit); });
  if (due != due_.end()) {
    Row row = std::move(*due);
    due_.erase(due);
    row.range = std::move(range);
    return row;
  }
  const std::optional<double> height = ReadRowHeight(range.Get(), answer);
  if (answer.IsBusy()) return std::nullopt;
  return Row{unit.SheetName(), unit.row, height.value_or(kDefaultRowHeight), {}, std::move(range)};
}

void RowFitter::EndCell(const CellUnit& unit, std::wstring_view text) {
  if (open_) open_->cells.emplace_back(unit.col, text);
}

void RowFitter::CloseRow() {
  if (!open_) return;
  // The host may bring the next cell while it is being called.
  Row row = *std::exchange(open_, std::nullopt);
  if (row.cells.empty() || !Settle(row).IsBusy()) return;
  row.range = nullptr;
  due_.push_back(std::move(row));
}

void RowFitter::FinishRows() {
  CloseRow();
  while (!due_.empty()) {
    Row row = std::move(due_.front());
    due_.pop_front();
    HostAnswer answer = FindRange(row);
    if (answer.Ok()) answer = Settle(row);
    if (!answer.IsBusy()) continue;
    row.range = nullptr;
    due_.push_front(std::move(row));
    return;
  }
}

HostAnswer RowFitter::FindRange(Row& row) const {
  const CellTarget place = FindCell(target_, row.sheetName, row.number, 1);
  HostAnswer answer = place.status;
  if (place.cell != nullptr) row.range = GetDispProperty(place.cell.Get(), L"EntireRow", &answer);
  return answer;
}

HostAnswer RowFitter::Settle(const Row& row) {
  // A hidden row has no height, and must not get one.
  if (row.range == nullptr || row.previous == 0.0) return {};
  return IsFrozen(row) ? KeepHeight(row) : Fit(row);
}

bool RowFitter::IsFrozen(const Row& row) const {
  const auto entry = session_.lastFrozenRows.find({workbookKey_, row.sheetName});
  return entry != session_.lastFrozenRows.end() && row.number <= entry->second;
}

HostAnswer RowFitter::KeepHeight(const Row& row) {
  HostAnswer answer;
  const std::optional<double> height = ReadRowHeight(row.range.Get(), answer);
  if (answer.IsBusy()) return answer;
  if (height && *height != row.previous) answer = PutRowHeight(row.range.Get(), row.previous);
  if (answer.IsBusy()) return answer;
  PaneLog(Concat(L"Excel bilingual keep frozen row height ", Place(row.sheetName, row.number), L"\r\n"));
  return answer;
}

HostAnswer RowFitter::Fit(const Row& row) {
  HostAnswer answer;
  answer.hr = InvokeByName(row.range.Get(), L"AutoFit", {}, nullptr, &answer.exceptionCode);
  if (answer.IsBusy()) return answer;
  if (!answer.Ok()) {
    PaneLog(L"Excel bilingual AutoFit failed, using estimate\r\n");
    return FitByEstimate(row);
  }
  const std::optional<double> fitted = ReadRowHeight(row.range.Get(), answer);
  if (answer.IsBusy()) return answer;
  const std::optional<double> height = fitted ? GrownRowHeight(row.previous, *fitted) : std::nullopt;
  if (!height) return fitted == row.previous ? answer : PutRowHeight(row.range.Get(), row.previous);
  answer = Grow(row, *height);
  if (!answer.Ok()) return answer;
  PaneLog(Concat(L"Excel bilingual rowHeight autofit ", Place(row.sheetName, row.number), L" orig=",
                 Fixed{row.previous, 1}, L" fitted=", Fixed{*fitted, 1}, L"\r\n"));
  return answer;
}

HostAnswer RowFitter::FitByEstimate(const Row& row) {
  HostAnswer answer;
  const double current = ReadRowHeight(row.range.Get(), answer).value_or(row.previous);
  if (answer.IsBusy()) return answer;
  const double needed = EstimatedHeight(row, answer);
  if (answer.IsBusy()) return answer;
  const std::optional<double> height = GrownRowHeight(row.previous, std::max(current, needed));
  if (!height) return {};
  answer = Grow(row, *height);
  if (!answer.Ok()) return answer;
  PaneLog(Concat(L"Excel bilingual rowHeight ", Place(row.sheetName, row.number), L" orig=",
                 Fixed{row.previous, 1}, L" cur=", Fixed{current, 1}, L" need=", Fixed{needed, 1}, L" set=",
                 Fixed{*height, 1}, L"\r\n"));
  return answer;
}

double RowFitter::EstimatedHeight(const Row& row, HostAnswer& answer) const {
  double needed = 0.0;
  for (const auto& [col, text] : row.cells) {
    const CellTarget place = FindCell(target_, row.sheetName, row.number, col);
    answer = place.status;
    if (answer.IsBusy()) break;
    needed = std::max(needed, EstimateRowHeight(text, MetricsOf(place.cell.Get())));
  }
  return needed;
}

HostAnswer RowFitter::Grow(const Row& row, double height) {
  // The first height is the user's own; kept also when the put fails, for the fitting may have changed the
  // row.
  session_.previousRowHeights.try_emplace({row.sheetName, row.number}, row.previous);
  return PutRowHeight(row.range.Get(), height);
}

}  // namespace qv
