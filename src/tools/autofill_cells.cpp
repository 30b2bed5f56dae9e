#include "tools/autofill_cells.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "foundation/logging.h"
#include "tools/autofill_grid.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "workbook/automation.h"
#include "workbook/cell_access.h"
#include "workbook/cell_block.h"
#include "workbook/hidden_lines.h"
#include "workbook/merged_areas.h"
#include "workbook/platform_letters.h"
#include "workbook/uniform_property.h"
#include "workbook/value_block.h"

namespace qv {
namespace {

constexpr std::wstring_view kTooLargeText = L"已用区域过大，请缩小填写范围";
constexpr std::wstring_view kNoUsedRangeText = L"无法读取已用区域";

using Cell = AutofillGrid::Cell;

Cell CellOf(const VARIANT& value) {
  if (value.vt == VT_BSTR) return {{value.bstrVal ? value.bstrVal : L"", SysStringLen(value.bstrVal)}, false};
  return {{}, value.vt != VT_EMPTY && value.vt != VT_NULL};
}

/// The values of a range, as the host gave them in one answer or cell by cell.
class ScannedValues {
 public:
  explicit ScannedValues(const RangeGeometry& place) : place_(place) {}

  [[nodiscard]] HostAnswer Read(IDispatch* sheet, std::vector<Cell>& cells) {
    HostAnswer answer;
    const ComPtr<IDispatch> range = GetBlockRange(sheet, place_, &answer);
    if (range != nullptr) answer.hr = GetProperty(range.Get(), L"Value2", whole_, &answer.exceptionCode);
    if (answer.IsBusy()) return answer;
    if (answer.Ok() && TakeWhole(cells)) return answer;
    block_.reset();
    answer = ReadBlock(sheet, place_, L"Value2", single_);
    cells.clear();
    for (const Variant& value : single_)
      cells.push_back(CellOf(value.Get()));
    return answer;
  }

  /// 1-based position in the range.
  [[nodiscard]] std::wstring TextAt(std::int32_t row, std::int32_t col) const {
    if (!block_) return ReadingOf(single_[IndexOf(row, col)]).text;
    Variant held;
    const VARIANT* const element = block_->Read(row, col, held);
    return element != nullptr ? ReadingOf(Variant(*element)).text : std::wstring();
  }

 private:
  /// Borrows the texts from the host's array. False when it is none, too small, or not made of VARIANTs.
  [[nodiscard]] bool TakeWhole(std::vector<Cell>& cells) {
    if (std::optional<ValueBlock> block = ValueBlock::Of(whole_)) block_.emplace(std::move(*block));
    if (!block_) return false;
    Variant held;
    cells.resize(static_cast<std::size_t>(place_.Cells()));
    // A host's array stands column by column, the cells row by row: a few columns at a time stay in the
    // cache.
    constexpr std::int32_t kColumnsAtATime = 16;
    for (std::int32_t first = 1; first <= place_.cols; first += kColumnsAtATime) {
      const std::int32_t last = std::min(place_.cols, first + kColumnsAtATime - 1);
      for (std::int32_t row = 1; row <= place_.rows; ++row) {
        for (std::int32_t col = first; col <= last; ++col) {
          const VARIANT* const element = block_->Read(row, col, held);
          if (element == nullptr || element == &held.Get()) return false;
          cells[IndexOf(row, col)] = CellOf(*element);
        }
      }
    }
    return true;
  }

  [[nodiscard]] std::size_t IndexOf(std::int32_t row, std::int32_t col) const {
    return static_cast<std::size_t>(row - 1) * static_cast<std::size_t>(place_.cols) +
           static_cast<std::size_t>(col - 1);
  }

  RangeGeometry place_;
  Variant whole_;
  std::optional<ValueBlock> block_;
  std::vector<Variant> single_;
};

/// Takes the places away whose property is TRUE.
HostAnswer DropWhere(IDispatch* sheet, const wchar_t* property, std::vector<CellPlace>& places) {
  std::vector<Variant> values;
  const HostAnswer answer = ReadUniform(sheet, property, places, values);
  if (!answer.Ok()) return answer;
  auto value = values.cbegin();
  std::erase_if(places, [&](const CellPlace&) { return (value++)->IsTrue(); });
  return answer;
}

/// The places that wait for input, of those whose texts say so.
HostAnswer KeepWritable(IDispatch* sheet, std::vector<CellPlace>& places) {
  HostAnswer answer = DropWhere(sheet, L"HasFormula", places);
  if (!answer.Ok()) return answer;
  const bool isProtected = IsSheetProtected(sheet, &answer);
  if (answer.IsBusy()) return answer;
  // A host that does not tell has no protection.
  return isProtected ? DropWhere(sheet, L"Locked", places) : HostAnswer{};
}

/// What the user sees of the range.
HostAnswer ReadAppearance(IDispatch* sheet, const RangeGeometry& place, AutofillGrid& grid) {
  std::vector<RangeGeometry> areas;
  HostAnswer answer = ReadMergedAreas(sheet, place, areas);
  if (!answer.Ok()) return answer;
  grid.SetMergedAreas(areas);
  HiddenLines hidden;
  answer = ReadHiddenLines(sheet, place, hidden);
  if (answer.Ok()) grid.SetHiddenLines(std::move(hidden.rows), std::move(hidden.cols));
  return answer;
}

/// The reason why the sheet cannot be scanned, empty when it was.
std::wstring_view Scan(IDispatch* sheet, AutofillCells& found) {
  HostAnswer answer;
  const std::optional<RangeGeometry> used = ReadUsedRange(sheet, &answer);
  if (!used) return answer.IsBusy() ? kHostBusyText : kNoUsedRangeText;
  if (used->Cells() > kMaxAutofillCells) return kTooLargeText;
  found.usedRange = *used;
  ScannedValues values(*used);
  std::vector<Cell> cells;
  answer = values.Read(sheet, cells);
  if (!answer.Ok()) return answer.IsBusy() ? kHostBusyText : kUnreadableText;
  AutofillGrid grid(
      *used, std::move(cells), [&](std::int32_t row, std::int32_t col) { return values.TextAt(row, col); },
      &IsPlatformLetter);
  answer = ReadAppearance(sheet, *used, grid);
  if (!answer.Ok()) return kHostBusyText;
  found.holdsData = grid.HoldsData();
  std::vector<CellPlace> places = grid.Candidates();
  answer = KeepWritable(sheet, places);
  if (!answer.Ok()) return kHostBusyText;
  found.fields = grid.Fields(places);
  return {};
}

}  // namespace

AutofillCells CollectAutofillCells(IDispatch* sheet) {
  PaneLog(L"Excel CollectAutofillCells (UsedRange)\r\n");
  AutofillCells found;
  found.error = Scan(sheet, found);
  return found;
}

}  // namespace qv
