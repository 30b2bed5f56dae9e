#include "translation/chart_titles.h"

#include <cstdint>
#include <optional>

#include "foundation/text.h"
#include "foundation/variant.h"
#include "translation/restore_rules.h"
#include "workbook/automation.h"
#include "workbook/cell_text.h"
#include "workbook/chart_collection.h"
#include "workbook/host_state.h"
#include "workbook/platform_letters.h"

namespace qv {
namespace {

/// The title object, or null for a chart without one, which some hosts answer with an error and others with
/// an empty object.
ComPtr<IDispatch> TitleOf(IDispatch* charts, std::int32_t index) {
  const ComPtr<IDispatch> object = GetCollectionItem(charts, Variant(index));
  const ComPtr<IDispatch> chart = GetDispProperty(object.Get(), L"Chart");
  if (!GetFlagProperty(chart.Get(), L"HasTitle").value_or(false)) return nullptr;
  return GetDispProperty(chart.Get(), L"ChartTitle");
}

std::optional<CellUnit> UnitOf(IDispatch* title, std::int32_t index, std::wstring_view sheetName) {
  const std::wstring raw = GetStringProperty(title, L"Text");
  const std::wstring_view text = TrimRight(raw);
  if (text.size() > kMaxCellTextLength || IsUntranslatable(text, &IsPlatformLetter)) return std::nullopt;
  CellUnit unit;
  unit.chart = index;
  unit.kind = UnitKind::kChartTitle;
  unit.sheet = std::make_shared<SheetTexts>(sheetName);
  unit.sourceText = unit.sheet->Keep(text);
  return unit;
}

/// The title that the unit came from, or null with how the host refused.
ComPtr<IDispatch> FindTitle(const TargetContext& target, const CellUnit& unit, CellWriteResult& status) {
  const ComPtr<IDispatch> sheet = ResolveSheet(target, unit.SheetName());
  const ComPtr<IDispatch> charts = ChartObjectsOf(sheet.Get());
  ComPtr<IDispatch> title = TitleOf(charts.Get(), unit.chart);
  if (title != nullptr) return title;
  // A busy host answers nothing at all; a chart that is gone leaves everything else in place.
  status = AskHost(target.Application());
  if (!status.IsBusy()) status = {E_FAIL, 0};
  return nullptr;
}

}  // namespace

std::vector<CellUnit> CollectChartTitles(IDispatch* sheet, std::wstring_view sheetName) {
  std::vector<CellUnit> units;
  const ComPtr<IDispatch> charts = ChartObjectsOf(sheet);
  const std::int32_t count = GetIntProperty(charts.Get(), L"Count");
  for (std::int32_t index = 1; index <= count; ++index) {
    const ComPtr<IDispatch> title = TitleOf(charts.Get(), index);
    if (title == nullptr) continue;
    if (std::optional<CellUnit> unit = UnitOf(title.Get(), index, sheetName)) units.push_back(*unit);
  }
  return units;
}

CellWriteResult WriteChartTitle(const TargetContext& target, const CellUnit& unit, std::wstring_view text) {
  CellWriteResult result;
  const ComPtr<IDispatch> title = FindTitle(target, unit, result);
  if (title == nullptr) return result;
  Variant shown;
  result.hr = GetProperty(title.Get(), L"Text", shown, &result.exceptionCode);
  if (!result.Ok()) return result;
  if (!IsOurText(unit, shown.Text())) return {E_FAIL, 0};
  return PutProperty(title.Get(), L"Text", Variant(text));
}

}  // namespace qv
