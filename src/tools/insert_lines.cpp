#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/line_tools.h"
#include "tools/tool_result.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"
#include "workbook/range_reader.h"
#include "workbook/scroll_into_view.h"

namespace qv {
namespace {

template <typename... Parts>
void Log(const Parts&... parts) {
  PaneLog(Concat(L"ExcelInsertRowsCols ", parts..., L"\r\n"));
}

constexpr std::wstring_view kInsertFailedText = L"插入失败";

/// One call of the tool.
class LineInserter {
 public:
  LineInserter(const ToolContext& context, const ToolSheet& sheet, LineMode mode)
      : context_(context), sheet_(sheet), mode_(mode) {}

  [[nodiscard]] std::wstring InsertRange(const ToolArguments& arguments) {
    Log(L"rangeMode range=", arguments.Text(L"range"));
    const std::optional<RangeArgs> range = ParseLineRange(arguments, mode_);
    if (!range) {
      Log(L"error: ParseA1 failed");
      return ErrorResult(kInvalidRangeText);
    }
    if (!EndCopyMode()) return ErrorResult(kInsertFailedText);
    const std::wstring_view failure = Insert(*range);
    if (!failure.empty()) return ErrorResult(failure);
    Show(*range);
    return OkResult();
  }

  /// Ends at the first line that the host refuses.
  [[nodiscard]] std::wstring InsertIndices(const LineIndices& indices) {
    Log(L"indicesMode count=", indices.given);
    if (indices.numbers.empty()) return OkResult();
    if (!EndCopyMode()) return ErrorResult(kInsertFailedText);
    for (const std::int32_t index : indices.numbers) {
      Log(L"inserting idx=", index);
      const std::wstring_view failure = Insert(LineAt(mode_, index));
      if (failure.empty()) continue;
      Log(L"insert failed idx=", index);
      return ErrorResult(failure);
    }
    Show(LineAt(mode_, indices.numbers.back()));
    return OkResult();
  }

 private:
  /// The error's text; empty when it worked.
  [[nodiscard]] std::wstring_view Insert(const RangeArgs& place) {
    const ComPtr<IDispatch> range = FindRange(sheet_.sheet.Get(), FirstCellsOf(place));
    if (range == nullptr) {
      Log(L"error: GetRangeFromCoordsDisp failed");
      return kNoLinesText;
    }
    const ComPtr<IDispatch> lines = GetDispProperty(range.Get(), EntireMember(mode_));
    if (lines == nullptr) {
      Log(L"error: GetSubDisp failed");
      return kNoLinesText;
    }
    Log(L"calling EntireRow/Column.Insert");
    const HRESULT hr = InvokeByName(lines.Get(), L"Insert", {}, nullptr);
    if (FAILED(hr)) {
      Log(L"error: Insert failed hr=0x", Hex8(hr));
      return kInsertFailedText;
    }
    Log(L"Insert succeeded");
    return {};
  }

  /// While cells are marked for copying, the host would insert them instead of empty lines. False when it
  /// does not let go of them. A host that does not tell has none.
  [[nodiscard]] bool EndCopyMode() {
    IDispatch* const application = context_.target.Application();
    if (GetIntProperty(application, L"CutCopyMode") == 0) return true;
    const Variant none(false);
    const HRESULT hr = PutDispProperty(application, L"CutCopyMode", &none);
    if (FAILED(hr)) Log(L"error: CutCopyMode not ended hr=0x", Hex8(hr));
    return SUCCEEDED(hr);
  }

  /// Brings the new lines into view. They reach from edge to edge, so the window moves in one direction only.
  void Show(RangeArgs block) {
    const ComPtr<IDispatch> window = context_.target.GetTargetWindowDrv();
    const RangeGeometry visible =
        ReadGeometry(RangeReader::LateBound(GetDispProperty(window.Get(), L"VisibleRange")))
            .value_or(RangeGeometry{1, 1, 1, 1});
    if (mode_ == LineMode::kRows) {
      block.col1 = block.col2 = visible.firstCol;
    } else {
      block.row1 = block.row2 = visible.firstRow;
    }
    ScrollIntoView(context_.target, sheet_.name, GeometryOf(block));
  }

  const ToolContext& context_;
  const ToolSheet& sheet_;
  LineMode mode_;
};

}  // namespace

std::wstring InsertRowsCols(const ToolContext& context, const std::wstring& json) {
  const ToolArguments arguments(json);
  Log(L"enter mode=", arguments.Text(L"mode"), L" jsonLen=", json.size());
  const std::optional<LineMode> mode = ParseLineMode(arguments);
  if (!mode) {
    Log(L"error: invalid mode");
    return ErrorResult(kBadModeText);
  }
  const ToolSheet sheet = FindLineSheet(context, arguments);
  if (sheet.sheet == nullptr) {
    Log(L"error: no active sheet");
    return sheet.error;
  }
  const DisplayAlertsGuard alertsOff(context.target.Application());
  LineInserter inserter(context, sheet, *mode);
  if (NamesRange(arguments)) return inserter.InsertRange(arguments);
  const LineIndices indices = ParseLineIndices(arguments);
  if (indices.given == 0) {
    Log(L"error: range or indices empty");
    return ErrorResult(kNoRangeOrIndicesText);
  }
  if (indices.given > kMaxLineIndices) return ErrorResult(kTooManyIndicesText);
  return inserter.InsertIndices(indices);
}

}  // namespace qv
