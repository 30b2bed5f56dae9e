#include "translation/selection_preview.h"

#include "foundation/json_text.h"
#include "foundation/text.h"
#include "workbook/area_index.h"

namespace qv {
namespace {

std::wstring PreviewCall(std::wstring_view members) {
  return Concat(L"if(window.onSelectionPreview)onSelectionPreview({", members, L"})");
}

}  // namespace

WrittenCounts CountWritten(const std::vector<CellUnit>& units, std::wstring_view sheetName,
                           std::span<const RangeGeometry> blocks) {
  WrittenCounts counts;
  const AreaIndex selected(blocks);
  for (const CellUnit& unit : units) {
    if (!unit.written || unit.SheetName() != sheetName) continue;
    ++counts.onSheet;
    if (selected.Holds(unit.row, unit.col)) ++counts.inSelection;
  }
  return counts;
}

void AppendQuickText(std::wstring& quickText, std::wstring_view cellText) {
  const std::wstring_view text = Trim(cellText);
  if (text.empty()) return;
  if (!quickText.empty()) quickText += L'\n';
  quickText += text;
}

std::wstring SelectionPreviewScript(const SelectionPreview& preview) {
  const std::wstring quickPart =
      preview.quickText ? Concat(L",quickText:", JsonQuote(*preview.quickText)) : std::wstring();
  return PreviewCall(Concat(L"fragments:", preview.fragments, L",chars:", preview.chars, L",rangeAddress:",
                            JsonQuote(preview.rangeAddress), L",translatedCellsOnSheet:",
                            preview.written.onSheet, L",translatedCellsInSelection:",
                            preview.written.inSelection, quickPart));
}

std::wstring SelectionPreviewErrorScript(std::wstring_view error) {
  return PreviewCall(Concat(L"error:", JsonQuote(error)));
}

}  // namespace qv
