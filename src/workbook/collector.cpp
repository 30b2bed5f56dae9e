#include "workbook/collector.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "workbook/area_scan.h"
#include "workbook/automation.h"
#include "workbook/cell_access.h"
#include "workbook/platform_letters.h"
#include "workbook/range_reader.h"
#include "workbook/selection_areas.h"

namespace qv {
namespace {

constexpr const wchar_t* kNotConnected = L"未连接到 Excel";
constexpr const wchar_t* kNotCells = L"请先选择单元格";
constexpr const wchar_t* kSelectionTooLarge = L"选区过大，请缩小选择范围";
constexpr const wchar_t* kSelectionUnreadable = L"无法读取选区";
constexpr const wchar_t* kUsedRangeUnreadable = L"无法读取已用区域";

constexpr std::int64_t kMaxSelectionCells = 200000;
/// From this size on, reading cell by cell is worth a warning.
constexpr std::int64_t kLargeUsedRange = 64;

/// What differs between the used range and a selection when the late-bound bulk read failed.
struct FallbackRules {
  /// Below this number of cells the typed interface is asked cell by cell.
  std::int64_t typedCellsBelow;
  /// A larger range is refused; 0 for no limit.
  std::int64_t maxCells;
  /// Empty for none.
  const wchar_t* bulkFailedLine;
  const wchar_t* noTypedLine;
  bool warnsWhenLarge;
  /// The error when nothing of the range can be read.
  const wchar_t* unreadable;
};

constexpr FallbackRules kUsedRangeRules = {
    .typedCellsBelow = 64,
    .maxCells = 0,
    .bulkFailedLine = L"Excel Value2 dispatch batch failed, trying IRange path\r\n",
    .noTypedLine = L"Excel UsedRange QI IRange failed — slow per-cell dispatch fallback\r\n",
    .warnsWhenLarge = true,
    .unreadable = kUsedRangeUnreadable,
};
constexpr FallbackRules kSelectionRules = {
    .typedCellsBelow = 48,
    .maxCells = kMaxSelectionCells,
    .bulkFailedLine = L"",
    .noTypedLine = L"Excel Selection QI IRange failed — slow dispatch fallback\r\n",
    .warnsWhenLarge = false,
    .unreadable = kSelectionUnreadable,
};

/// What all areas of one collection share.
struct Job {
  IDispatch* sheet;
  const FallbackRules& rules;
  ScanProgress progress;
};

ScanOutcome ScanByTypedRange(const RangeReader& typed, const RangeGeometry& geometry, Job& job,
                             UnitList& units, std::wstring& error) {
  if (job.rules.maxCells != 0 && geometry.Cells() > job.rules.maxCells) {
    error = kSelectionTooLarge;
    return ScanOutcome::kStopped;
  }
  const AreaScan scan{typed, geometry, job.sheet, job.progress};
  if (geometry.Cells() >= job.rules.typedCellsBelow) return ScanBulk(scan, kTypedBulk, units, error);
  PaneLog(L"Excel CollectCellsFromRangeArea (IRange per-cell)\r\n");
  return ScanCells(scan, units, error);
}

ScanOutcome ScanLateBoundCells(const SelectionArea& area, Job& job, UnitList& units, std::wstring& error) {
  const RangeGeometry& geometry = area.geometry;
  PaneLog(L"Excel CollectCellsFromUsedRangeDispatch\r\n");
  PaneLog(Concat(L"Excel range collect rows=", geometry.rows, L" cols=", geometry.cols, L" r0=",
                 geometry.firstRow, L" c0=", geometry.firstCol, L"\r\n"));
  const ScanOutcome outcome =
      ScanCells({RangeReader::LateBound(area.range), geometry, job.sheet, job.progress}, units, error);
  PaneLog(Concat(L"Excel dispatch collect cells=", units.Size(), L"\r\n"));
  return outcome;
}

/// Each way starts with an empty list, so that a way that failed midway leaves nothing behind.
ScanOutcome ScanArea(const SelectionArea& area, Job& job, const UnitList& empty, UnitList& units,
                     std::wstring& error) {
  units = empty;
  const AreaScan bulk{RangeReader::LateBound(area.range), area.geometry, job.sheet, job.progress};
  ScanOutcome outcome = ScanBulk(bulk, kLateBoundBulk, units, error);
  if (outcome != ScanOutcome::kFailed) return outcome;

  if (*job.rules.bulkFailedLine != L'\0') PaneLog(job.rules.bulkFailedLine);
  units = empty;
  const std::optional<RangeReader> typed = RangeReader::Typed(area.range.Get());
  const std::optional<RangeGeometry> typedGeometry = typed ? ReadGeometry(*typed) : std::nullopt;
  if (typedGeometry) {
    outcome = ScanByTypedRange(*typed, *typedGeometry, job, units, error);
    if (outcome != ScanOutcome::kFailed) return outcome;
    units = empty;
  } else {
    PaneLog(job.rules.noTypedLine);
    if (job.rules.warnsWhenLarge && area.geometry.Cells() >= kLargeUsedRange)
      PaneLog(L"Excel WARN: large UsedRange without Value2 batch; expect slow collect\r\n");
  }
  return ScanLateBoundCells(area, job, units, error);
}

bool Fail(CollectResult& result, const wchar_t* error) {
  result.error = error;
  return false;
}

bool GiveUp(CollectResult& result) {
  result.error.clear();
  return false;
}

bool ScanAreas(std::span<const SelectionArea> areas, Job& job, CollectResult& result) {
  const UnitList empty(result.sheetName, &IsPlatformLetter);
  UnitList all = empty;
  std::int64_t rowsBefore = 0;
  for (const SelectionArea& area : areas) {
    if (!job.progress.IsWanted()) return GiveUp(result);
    job.progress.SetRowsBefore(rowsBefore);
    UnitList units = empty;
    const ScanOutcome outcome = ScanArea(area, job, empty, units, result.error);
    if (outcome == ScanOutcome::kFailed) return Fail(result, job.rules.unreadable);
    if (outcome == ScanOutcome::kStopped) return job.progress.IsWanted() ? false : GiveUp(result);
    all.Append(std::move(units));
    rowsBefore += area.geometry.rows;
  }
  result.error.clear();
  result.units = all.TakeUnits();
  result.warnings = all.TakeWarnings();
  // A cell in several areas is warned about once. Few cells are too long, so looking back costs little.
  for (auto warning = result.warnings.begin(); warning != result.warnings.end();) {
    const bool repeated = std::find(result.warnings.begin(), warning, *warning) != warning;
    warning = repeated ? result.warnings.erase(warning) : warning + 1;
  }
  return true;
}

/// The error text of a selection that could not be taken, or null.
const wchar_t* ErrorOf(SelectionRead read) {
  if (read == SelectionRead::kTooLarge) return kSelectionTooLarge;
  return read == SelectionRead::kUnreadable ? kSelectionUnreadable : nullptr;
}

ComPtr<IDispatch> SheetOf(IDispatch* range, const TargetContext& target) {
  ComPtr<IDispatch> sheet = GetDispProperty(range, L"Worksheet");
  if (sheet == nullptr) sheet = GetDispProperty(range, L"Parent");
  return sheet != nullptr ? sheet : target.GetTargetActiveSheetDrv();
}

}  // namespace

bool Collector::CollectUsedRangeCells(std::wstring_view sheetName, std::uint64_t runId,
                                      CollectResult& result) {
  PaneLog(sheetName.empty() ? std::wstring(L"Excel CollectUsedRangeCells (ActiveSheet.UsedRange)\r\n")
                            : Concat(L"Excel CollectUsedRangeCells sheet=", sheetName, L"\r\n"));
  result = {};
  if (target_.Application() == nullptr) return Fail(result, kNotConnected);
  const ComPtr<IDispatch> sheet = ResolveSheet(target_, sheetName);
  SelectionArea area{GetDispProperty(sheet.Get(), L"UsedRange"), {}};
  const std::optional<RangeGeometry> geometry = ReadGeometry(RangeReader::LateBound(area.range));
  if (!geometry) return Fail(result, kUsedRangeUnreadable);
  area.geometry = *geometry;

  result.sheetName = GetStringProperty(sheet.Get(), L"Name");
  if (result.sheetName.empty()) return Fail(result, kUsedRangeUnreadable);
  result.cells = geometry->Cells();
  Job job{sheet.Get(), kUsedRangeRules, ScanProgress(output_, pane_, runId, geometry->rows, stillWanted_)};
  return ScanAreas({&area, 1}, job, result);
}

bool Collector::CollectSelectionCells(std::uint64_t runId, CollectResult& result) {
  PaneLog(L"Excel CollectSelectionCells (Application.Selection)\r\n");
  result = {};
  if (target_.Application() == nullptr) return Fail(result, kNotConnected);
  const ComPtr<IDispatch> selection = target_.GetTargetSelectionDrv();
  if (!IsCellRange(selection.Get())) return Fail(result, kNotCells);
  std::vector<SelectionArea> areas;
  const SelectionRead read = ReadSelectionAreas(selection, kMaxSelectionCells, areas);
  if (const wchar_t* error = ErrorOf(read)) return Fail(result, error);

  const ComPtr<IDispatch> sheet = SheetOf(selection.Get(), target_);
  result.sheetName = GetStringProperty(sheet.Get(), L"Name");
  if (result.sheetName.empty()) return Fail(result, kSelectionUnreadable);
  std::int64_t rows = 0;
  for (const SelectionArea& area : areas) {
    result.cells += area.geometry.Cells();
    rows += area.geometry.rows;
    result.areas.push_back(area.geometry);
  }
  Job job{sheet.Get(), kSelectionRules, ScanProgress(output_, pane_, runId, rows, stillWanted_)};
  return ScanAreas(areas, job, result);
}

}  // namespace qv
