#include "translation/selection_preview.h"

#include <gtest/gtest.h>

#include <array>

namespace qv {
namespace {

CellUnit Unit(const std::shared_ptr<SheetTexts>& sheet, std::int32_t row, std::int32_t col, bool written) {
  CellUnit unit;
  unit.sheet = sheet;
  unit.row = row;
  unit.col = col;
  unit.written = written;
  return unit;
}

TEST(SelectionPreview, CountsWrittenUnitsOfTheSheetAndOfTheSelection) {
  const auto data = std::make_shared<SheetTexts>(L"Data");
  const auto more = std::make_shared<SheetTexts>(L"More");
  std::vector<CellUnit> units;
  // The corners of B2:C3 and the cells just outside of it.
  for (const auto& [row, col] : {std::pair{2, 2}, {3, 3}, {1, 2}, {2, 1}, {4, 3}, {3, 4}})
    units.push_back(Unit(data, row, col, true));
  units.push_back(Unit(data, 2, 3, false));
  units.push_back(Unit(more, 2, 2, true));
  CellUnit title = Unit(data, 0, 0, true);
  title.kind = UnitKind::kChartTitle;
  units.push_back(title);

  // Overlapping blocks.
  const std::array blocks = {RangeGeometry{.rows = 2, .cols = 2, .firstRow = 2, .firstCol = 2},
                             RangeGeometry{.rows = 1, .cols = 1, .firstRow = 3, .firstCol = 3}};
  const WrittenCounts counts = CountWritten(units, L"Data", blocks);
  EXPECT_EQ(counts.onSheet, 7U);
  EXPECT_EQ(counts.inSelection, 2U);
  const std::array wholeColumn = {RangeGeometry{.rows = 1048576, .cols = 1, .firstRow = 1, .firstCol = 2}};
  EXPECT_EQ(CountWritten(units, L"Data", wholeColumn).inSelection, 2U);
  EXPECT_EQ(CountWritten(units, L"More", {}).onSheet, 1U);
  EXPECT_EQ(CountWritten(units, L"Nowhere", wholeColumn).onSheet, 0U);
}

TEST(SelectionPreview, JoinsTheTextsOfASmallSelection) {
  std::wstring text;
  for (const wchar_t* cell : {L"", L" one ", L"\n", L"two\nlines", L"three"})
    AppendQuickText(text, cell);
  EXPECT_EQ(text, L"one\ntwo\nlines\nthree");
}

TEST(SelectionPreview, IsToldByAGuardedScript) {
  SelectionPreview preview{2, 11, L"$A$1,$C$3", {5, 1}, std::nullopt};
  EXPECT_EQ(
      SelectionPreviewScript(preview),
      L"if(window.onSelectionPreview)onSelectionPreview({fragments:2,chars:11,rangeAddress:\"$A$1,$C$3\","
      L"translatedCellsOnSheet:5,translatedCellsInSelection:1})");
  preview.quickText = L"say \"hi\"";
  EXPECT_TRUE(SelectionPreviewScript(preview).ends_with(
      LR"(,translatedCellsInSelection:1,quickText:"say \"hi\""}))"));
  EXPECT_EQ(SelectionPreviewErrorScript(kSelectionUnreadableError),
            L"if(window.onSelectionPreview)onSelectionPreview({error:\"无法读取选区\"})");
  EXPECT_EQ(SelectionPreviewErrorScript(kSelectionFailedError),
            L"if(window.onSelectionPreview)onSelectionPreview({error:\"读取 Excel 选区异常\"})");
}

}  // namespace
}  // namespace qv
