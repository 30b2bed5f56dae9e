#include "translation/run_collection.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "foundation/variant.h"
#include "translation/chart_titles.h"
#include "workbook/automation.h"
#include "workbook/cell_access.h"

namespace qv {
namespace {

constexpr std::int32_t kSheetVisible = -1;

constexpr const wchar_t* kUsedRangeUnreadable = L"无法读取已用区域";

void Append(std::vector<CellUnit>& units, std::vector<CellUnit> more) {
  std::ranges::move(more, std::back_inserter(units));
}

/// Hosts tell it as a number (hidden sheets come in two kinds) or as a boolean.
bool IsVisible(IDispatch* sheet) {
  Variant visible;
  if (FAILED(GetProperty(sheet, L"Visible", visible))) return true;
  return visible.Type() == VT_BOOL ? visible.IsTrue() : IntegerOf(visible) == kSheetVisible;
}

std::size_t CountCharacters(const std::vector<CellUnit>& units) {
  std::size_t characters = 0;
  for (const CellUnit& unit : units)
    characters += unit.WorkText().size();
  return characters;
}

/// The units of all visible sheets so far.
class WorkbookWalk {
 public:
  WorkbookWalk(Collector& collector, std::uint64_t runId, CollectResult& all)
      : collector_(collector), runId_(runId), all_(all) {}

  bool Visit(IDispatch* sheet) {
    const std::wstring name = GetStringProperty(sheet, L"Name");
    // An empty name would mean the active sheet.
    if (name.empty()) return Fail();
    CollectResult part;
    if (!collector_.CollectUsedRangeCells(name, runId_, part)) {
      all_.error = part.error;
      return false;
    }
    std::vector<CellUnit> charts = CollectChartTitles(sheet, name);
    all_.cells += part.cells;
    std::ranges::move(part.warnings, std::back_inserter(all_.warnings));
    if (part.units.empty() && charts.empty()) {
      PaneLog(Concat(L"Excel allSheets skip empty sheet=", name, L"\r\n"));
      return true;
    }
    characters_ += CountCharacters(part.units) + CountCharacters(charts);
    PaneLog(Concat(L"Excel allSheets sheet=", name, L" cells=", part.units.size(), L" charts=", charts.size(),
                   L" workbookChars=", characters_, L"\r\n"));
    Append(all_.units, std::move(part.units));
    Append(all_.units, std::move(charts));
    return true;
  }

  bool Fail() {
    all_.error = kUsedRangeUnreadable;
    return false;
  }

 private:
  Collector& collector_;
  std::uint64_t runId_;
  CollectResult& all_;
  std::size_t characters_ = 0;
};

bool CollectAllSheets(Collector& collector, std::uint64_t runId, const TargetContext& target,
                      CollectResult& result) {
  result = {};
  result.sheetName = target.GetActiveSheetName();
  const ComPtr<IDispatch> sheets = target.GetActiveWorkbookWorksheets();
  const std::int32_t count = GetIntProperty(sheets.Get(), L"Count");
  WorkbookWalk walk(collector, runId, result);
  // A workbook has a sheet; none means that the host does not answer now.
  if (count < 1) return walk.Fail();
  for (std::int32_t i = 1; i <= count; ++i) {
    const ComPtr<IDispatch> sheet = GetCollectionItem(sheets.Get(), Variant(i));
    if (sheet == nullptr) return walk.Fail();
    if (IsVisible(sheet.Get()) && !walk.Visit(sheet.Get())) return false;
  }
  return true;
}

bool CollectOneSheet(Collector& collector, std::uint64_t runId, const TargetContext& target,
                     CollectResult& result) {
  if (!collector.CollectUsedRangeCells(L"", runId, result)) return false;
  if (result.sheetName.empty()) {
    result.error = kUsedRangeUnreadable;
    return false;
  }
  const ComPtr<IDispatch> sheet = ResolveSheet(target, result.sheetName);
  std::vector<CellUnit> charts = CollectChartTitles(sheet.Get(), result.sheetName);
  PaneLog(Concat(L"Excel whole-sheet chart titles=", charts.size(), L"\r\n"));
  Append(result.units, std::move(charts));
  return true;
}

}  // namespace

bool CollectForRun(const StartRequest& start, std::uint64_t runId, const TargetContext& target,
                   PanelOutput& output, PaneContext& pane, const std::function<bool()>& stillWanted,
                   CollectResult& result) {
  Collector collector(target, output, pane, stillWanted);
  if (start.selection) return collector.CollectSelectionCells(runId, result);
  if (start.allSheets) return CollectAllSheets(collector, runId, target, result);
  return CollectOneSheet(collector, runId, target, result);
}

}  // namespace qv
