#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/line_tools.h"
#include "tools/tool_result.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"
#include "workbook/scroll_into_view.h"

namespace qv {
namespace {

template <typename... Parts>
void Log(const Parts&... parts) {
  PaneLog(Concat(L"ExcelInsertRowsCols ", parts..., L"\r\n"));
}

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
    const std::wstring_view failure = Insert(*range);
    if (!failure.empty()) return ErrorResult(failure);
    Show(*range);
    return OkResult();
  }

  /// Ends at the first line that the host refuses.
  [[nodiscard]] std::wstring InsertIndices(const std::vector<std::int32_t>& indices) {
    Log(L"indicesMode count=", indices.size());
    for (const std::int32_t index : indices) {
      Log(L"inserting idx=", index);
      const std::wstring_view failure = Insert(LineAt(mode_, index));
      if (failure.empty()) continue;
      Log(L"insert failed idx=", index);
      return ErrorResult(failure);
    }
    Show(LineAt(mode_, indices.back()));
    return OkResult();
  }

 private:
  /// The error's text; empty when it worked.
  [[nodiscard]] std::wstring_view Insert(const RangeArgs& place) {
    const ComPtr<IDispatch> range = FindRange(sheet_.sheet.Get(), place);
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
      return L"插入失败";
    }
    Log(L"Insert succeeded");
    return {};
  }

  /// Brings the block into view, where it has no end from the first row or column on.
  void Show(RangeArgs block) {
    if (block.IsWholeRows()) block.col1 = block.col2 = 1;
    if (block.IsWholeColumns()) block.row1 = block.row2 = 1;
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
  const std::vector<std::int32_t> indices = ParseLineIndices(arguments);
  if (indices.empty()) {
    Log(L"error: range or indices empty");
    return ErrorResult(kNoRangeOrIndicesText);
  }
  return inserter.InsertIndices(indices);
}

}  // namespace qv
