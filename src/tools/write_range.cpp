#include <algorithm>
#include <utility>
#include <vector>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/range_tools.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "tools/undo_tools.h"
#include "tools/values_matrix.h"
#include "workbook/cell_access.h"
#include "workbook/cell_block.h"
#include "workbook/host_state.h"
#include "workbook/scroll_into_view.h"

namespace qv {
namespace {

constexpr std::wstring_view kNoWholeText = L"暂不支持整行/列写入";
constexpr std::wstring_view kTooLargeText = L"写入范围过大（>5000 单元格），请缩小";
constexpr std::wstring_view kBadValuesText = L"values 参数缺失或格式无效";

/// One call of the tool while it goes from cell to cell.
class RangeWriter {
 public:
  RangeWriter(const ToolContext& context, const ToolSheet& sheet, const RangeArgs& range,
              const ValuesMatrix& values)
      : context_(context),
        sheet_(sheet),
        range_(range),
        values_(values),
        book_(BookOfSheet(context, sheet.sheet.Get())),
        isProtected_(IsSheetProtected(sheet.sheet.Get())) {}

  /// The result text.
  [[nodiscard]] std::wstring Write() {
    ReadFormer();
    const std::size_t rows = std::min(values_.size(), static_cast<std::size_t>(Geometry().rows));
    for (std::size_t i = 0; i < rows; ++i) {
      for (std::size_t j = 0; j < values_[i].size(); ++j)
        WriteItem(i, j);
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
    if (former_.Cells() > 0 && !ReadCells(sheet_.sheet.Get(), former_, formerCells_).Ok())
      formerCells_.clear();
  }

  void WriteItem(std::size_t i, std::size_t j) {
    const std::int32_t row = range_.row1 + static_cast<std::int32_t>(i);
    const std::int32_t col = ClampToInt32(std::int64_t{range_.col1} + static_cast<std::int64_t>(j));
    const wchar_t* status = L"skipped";
    if (col <= range_.col2 && !(isProtected_ && IsCellLocked(sheet_.sheet.Get(), row, col))) {
      const bool written = WriteCell(row, col, values_[i][j]);
      if (written) ++applied_;
      status = written ? L"applied" : L"failed";
    }
    if (!results_.empty()) results_ += L',';
    results_ += Concat(L"{\"row\":", row, L",\"col\":", col, L",\"status\":\"", status, L"\"}");
  }

  bool WriteCell(std::int32_t row, std::int32_t col, const CellContent& content) {
    const CellReading* const former = FormerCell(row, col);
    // What could not be put back is not overwritten.
    if (former == nullptr || !former->isReadable) return false;
    CellTarget place;
    place.sheet = sheet_.sheet;
    place.cell = GetCellDispatch(sheet_.sheet.Get(), row, col);
    if (place.cell == nullptr) return false;
    if (!PutCellContent(place, sheet_.name, row, col, content).Ok()) return false;
    context_.undo.Append({row, col, sheet_.name, former->Content(), book_});
    return true;
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
  UndoBook book_;
  bool isProtected_;
  RangeGeometry former_;
  std::vector<CellReading> formerCells_;
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
  const ToolSheet sheet = FindToolSheet(context, arguments);
  if (sheet.sheet == nullptr) return sheet.error;
  const DisplayAlertsGuard alertsOff(context.target.Application());
  return RangeWriter(context, sheet, *range, *values).Write();
}

}  // namespace qv
