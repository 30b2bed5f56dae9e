#include "workbook/scroll_into_view.h"

#include <optional>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "workbook/automation.h"

namespace qv {
namespace {

bool Covers(const RangeGeometry& outer, const RangeGeometry& inner) {
  const auto holds = [](std::int32_t outerFirst, std::int32_t outerCount, std::int32_t first,
                        std::int32_t count) {
    return first >= outerFirst && std::int64_t{first} + count <= std::int64_t{outerFirst} + outerCount;
  };
  return holds(outer.firstRow, outer.rows, inner.firstRow, inner.rows) &&
         holds(outer.firstCol, outer.cols, inner.firstCol, inner.cols);
}

}  // namespace

void ScrollIntoView(const TargetContext& target, std::wstring_view sheetName, const RangeGeometry& block) {
  const ComPtr<IDispatch> window = target.GetTargetWindowDrv();
  const ComPtr<IDispatch> shown = GetDispProperty(window.Get(), L"ActiveSheet");
  if (GetStringProperty(shown.Get(), L"Name") != sheetName) return;
  const std::optional<RangeGeometry> visible =
      ReadGeometry(RangeReader::LateBound(GetDispProperty(window.Get(), L"VisibleRange")));
  if (visible && Covers(*visible, block)) {
    PaneLog(L"ScrollActiveWindowToExtents skip already visible\r\n");
    return;
  }
  const Variant row(block.firstRow);
  const Variant col(block.firstCol);
  // What is written is written; a window that does not scroll is no failure.
  static_cast<void>(PutDispProperty(window.Get(), L"ScrollRow", &row));
  static_cast<void>(PutDispProperty(window.Get(), L"ScrollColumn", &col));
  PaneLog(Concat(L"ScrollActiveWindowToExtents r=", block.firstRow, L'-', block.firstRow + (block.rows - 1),
                 L" c=", block.firstCol, L'-', block.firstCol + (block.cols - 1), L" target=", block.firstRow,
                 L',', block.firstCol, L" visible=0\r\n"));
}

}  // namespace qv
