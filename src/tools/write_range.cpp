#include <algorithm>
#include <optional>
#include <vector>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/block_writer.h"
#include "tools/range_tools.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "tools/undo_tools.h"
#include "tools/undoable_put.h"
#include "tools/values_matrix.h"
#include "workbook/automation.h"
#include "workbook/cell_access.h"
#include "workbook/cell_block.h"
#include "workbook/host_state.h"
#include "workbook/scroll_into_view.h"
#include "workbook/value_put.h"

namespace qv {
namespace {

constexpr std::wstring_view kNoWholeText = L"暂不支持整行/列写入";
constexpr std::wstring_view kTooLargeText = L"写入范围过大（>5000 单元格），请缩小";
constexpr std::wstring_view kTooManyValuesText = L"values 过大（>100000 项），请缩小";
constexpr std::wstring_view kBadValuesText = L"values 参数缺失或格式无效";

// What becomes of one item.
constexpr const wchar_t* kApplied = L"applied";
constexpr const wchar_t* kSkipped = L"skipped";
constexpr const wchar_t* kFailed = L"failed";

/// Empty when it cannot be read or the cells differ.
std::wstring NumberFormatOf(IDispatch* cells) {
  return GetStringProperty(cells, L"NumberFormat");
}

/// One call of the tool. Rows that the host takes in one go are written so, all others cell by cell.
class RangeWriter {
 public:
  RangeWriter(const ToolContext& context, const ToolSheet& sheet, const RangeArgs& range,
              const ValuesMatrix& values, const UndoBook& book)
      : context_(context),
        sheet_(sheet),
        range_(range),
        values_(values),
        book_(book),
        isProtected_(IsSheetProtected(sheet.sheet.Get())) {}

  /// The result text.
  [[nodiscard]] std::wstring Write() {
    ReadFormer();
    const std::size_t rows = std::min(values_.size(), static_cast<std::size_t>(Geometry().rows));
    for (std::size_t i = 0; i < rows;) {
      const std::size_t end = EndOfAlike(i, rows);
      const bool isWritten = WriteRows(i, end);
      for (; i < end; ++i) {
        for (std::size_t j = 0; j < values_[i].size(); ++j)
          WriteItem(i, j, isWritten);
      }
    }
    if (applied_ > 0) ScrollIntoView(context_.target, sheet_.name, Geometry());
    return Concat(L"{\"results\":[", results_, L"],\"applied\":", applied_, L'}');
  }

 private:
  [[nodiscard]] RangeGeometry Geometry() const { return GeometryOf(range_); }

  /// What the cells hold that are going to be written, in one go.
  void ReadFormer() {
    std::size_t longest = 0;
    for (const auto& row : values_)
      longest = std::max(longest, row.size());
    former_ = Geometry();
    former_.rows =
        static_cast<std::int32_t>(std::min<std::size_t>(values_.size(), std::size_t(former_.rows)));
    former_.cols = static_cast<std::int32_t>(std::min<std::size_t>(longest, std::size_t(former_.cols)));
    if (former_.Cells() == 0) return;
    if (!ReadCells(sheet_.sheet.Get(), former_, formerCells_).Ok()) formerCells_.clear();
    if (!formerCells_.empty())
      formerFormat_ = NumberFormatOf(GetBlockRange(sheet_.sheet.Get(), former_).Get());
  }

  /// How many items of a row go into the range.
  [[nodiscard]] std::size_t WidthOf(std::size_t i) const {
    return std::min(values_[i].size(), static_cast<std::size_t>(former_.cols));
  }

  /// Whether the row can be part of a rectangle that is written in one go.
  [[nodiscard]] bool FitsIntoBlock(std::size_t i) const {
    if (isProtected_) return false;
    for (std::size_t j = 0; j < WidthOf(i); ++j) {
      const CellReading* const former =
          FormerCell(range_.row1 + static_cast<std::int32_t>(i), range_.col1 + static_cast<std::int32_t>(j));
      if (former == nullptr || !former->isReadable || !FitsIntoArray(values_[i][j])) return false;
    }
    return true;
  }

  /// The row behind those from `begin` on that make a rectangle, or behind those that do not.
  [[nodiscard]] std::size_t EndOfAlike(std::size_t begin, std::size_t rows) const {
    const bool fits = FitsIntoBlock(begin);
    std::size_t end = begin + 1;
    while (end < rows && FitsIntoBlock(end) == fits && (!fits || WidthOf(end) == WidthOf(begin)))
      ++end;
    return end;
  }

  /// Whether rows that make a rectangle have been written in one go.
  [[nodiscard]] bool WriteRows(std::size_t begin, std::size_t end) {
    const std::size_t width = WidthOf(begin);
    if ((end - begin) * width < kMinBlockCells || !FitsIntoBlock(begin)) return false;
    BlockWrite write;
    write.block = {static_cast<std::int32_t>(end - begin), static_cast<std::int32_t>(width),
                   range_.row1 + static_cast<std::int32_t>(begin), range_.col1};
    write.formerFormat = formerFormat_;
    for (std::size_t i = begin; i < end; ++i) {
      for (std::size_t j = 0; j < width; ++j) {
        write.contents.push_back(&values_[i][j]);
        write.former.push_back(FormerCell(range_.row1 + static_cast<std::int32_t>(i),
                                          range_.col1 + static_cast<std::int32_t>(j)));
      }
    }
    return WriteBlock(context_, sheet_, book_, write);
  }

  /// Notes what becomes of an item, and writes it unless that is done.
  void WriteItem(std::size_t i, std::size_t j, bool isWritten) {
    const std::int32_t row = range_.row1 + static_cast<std::int32_t>(i);
    const std::int32_t col = ClampToInt32(std::int64_t{range_.col1} + static_cast<std::int64_t>(j));
    const wchar_t* const status = col > range_.col2 ? kSkipped
                                  : isWritten       ? kApplied
                                                    : WriteCell(row, col, values_[i][j]);
    if (status == kApplied) ++applied_;
    if (!results_.empty()) results_ += L',';
    results_ += Concat(L"{\"row\":", row, L",\"col\":", col, L",\"status\":\"", status, L"\"}");
  }

  /// The cell's status.
  const wchar_t* WriteCell(std::int32_t row, std::int32_t col, const CellContent& content) {
    const CellReading* const former = FormerCell(row, col);
    // What could not be put back is not overwritten.
    if (former == nullptr || !former->isReadable) return kFailed;
    CellTarget place;
    place.sheet = sheet_.sheet;
    place.cell = GetCellDispatch(sheet_.sheet.Get(), row, col, &place.status);
    if (place.cell == nullptr) return kFailed;
    if (isProtected_ && IsCellLocked(place.cell.Get(), sheet_.name, row, col)) return kSkipped;
    const bool isPut =
        PutUndoably(context_.undo, place, {row, col, sheet_.name, former->Content(), book_, std::nullopt},
                    content, FormatToWatch(place.cell.Get(), content));
    return isPut ? kApplied : kFailed;
  }

  /// The cell's number format where the content may change it, else empty.
  [[nodiscard]] std::wstring FormatToWatch(IDispatch* cell, const CellContent& content) const {
    if (!MayChangeFormat(content)) return {};
    return formerFormat_.empty() ? NumberFormatOf(cell) : formerFormat_;
  }

  [[nodiscard]] const CellReading* FormerCell(std::int32_t row, std::int32_t col) const {
    const auto index =
        static_cast<std::size_t>(row - former_.firstRow) * static_cast<std::size_t>(former_.cols) +
        static_cast<std::size_t>(col - former_.firstCol);
    return index < formerCells_.size() ? &formerCells_[index] : nullptr;
  }

  const ToolContext& context_;
  const ToolSheet& sheet_;
  const RangeArgs& range_;
  const ValuesMatrix& values_;
  const UndoBook& book_;
  bool isProtected_;
  RangeGeometry former_;
  std::vector<CellReading> formerCells_;
  /// The number format that all cells have; empty when they differ.
  std::wstring formerFormat_;
  std::wstring results_;
  int applied_ = 0;
};

}  // namespace

std::wstring WriteRange(const ToolContext& context, const std::wstring& json) {
  PaneLog(Concat(L"ExcelWriteRange enter json=", json, L"\r\n"));
  const ToolArguments arguments(json);
  const std::optional<RangeArgs> range = ParseRangeArgs(arguments);
  if (!range) return ErrorResult(kBadRangeText);
  if (!range->IsBlock()) return ErrorResult(kNoWholeText);
  if (range->Cells() > kMaxToolCells) return ErrorResult(kTooLargeText);
  const bool goesDown = range->col1 == range->col2 && range->row1 < range->row2;
  const std::optional<ValuesMatrix> values = ParseValuesMatrix(arguments.Value(L"values"), goesDown);
  if (!values) return ErrorResult(kBadValuesText);
  if (CountOf(*values) > kMaxValues) return ErrorResult(kTooManyValuesText);
  const ToolSheet sheet = FindToolSheet(context, arguments);
  if (sheet.sheet == nullptr) return sheet.error;
  HostAnswer answer;
  const UndoBook book = BookOfSheet(context, sheet.sheet.Get(), answer);
  if (answer.IsBusy()) return ErrorResult(kHostBusyText);
  const DisplayAlertsGuard alertsOff(context.target.Application());
  return RangeWriter(context, sheet, *range, *values, book).Write();
}

}  // namespace qv
