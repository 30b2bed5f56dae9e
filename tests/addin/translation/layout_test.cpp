#include "foundation/text.h"
#include "run_fixture.h"

namespace qv {
namespace {

class LayoutTest : public RunTest {
 protected:
  /// Runs the active sheet to its end; `members` go into the start message.
  void Translate(const std::wstring& members) {
    pane->page.received.clear();
    pane->Start(members);
    ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  }
};

TEST_F(LayoutTest, DualStylesTheTranslationAndNothingElse) {
  Set("A1", L"Hello  ");
  engine->Type(L"", "B2", L"Other");
  Translate(
      L"\"excelBilingualBelow\":true,\"targetFont\":\"Arial\",\"targetFontSize\":9,"
      L"\"targetFontBold\":true,\"targetFontColor\":255");
  const nlohmann::json cell = engine->Cell(L"", "A1");
  EXPECT_EQ(cell.at("value"), "Hello\nES:Hello");
  EXPECT_EQ(cell.at("wrap"), true);
  const nlohmann::json& runs = cell.at("runs");
  ASSERT_EQ(runs.size(), 2U) << runs.dump();
  EXPECT_EQ(runs[0].at("color"), 0);
  EXPECT_EQ(runs[0].at("bold"), false);
  EXPECT_EQ(runs[1].at("start"), 7);
  EXPECT_EQ(runs[1].at("text"), "ES:Hello");
  EXPECT_EQ(runs[1].at("color"), 255);
  EXPECT_EQ(runs[1].at("bold"), true);
  EXPECT_EQ(runs[1].at("font"), "Arial");
  EXPECT_EQ(runs[1].at("size"), 9);
}

TEST_F(LayoutTest, TheDefaultColorIsSlateBlueAndTheFontStaysAsItIs) {
  Set("A1", L"Hello");
  Translate(L"\"excelBilingualBelow\":true");
  const nlohmann::json run = engine->Cell(L"", "A1").at("runs").at(1);
  EXPECT_EQ(run.at("color"), 9203290);
  EXPECT_EQ(run.at("bold"), false);
  EXPECT_EQ(run.at("font"), "Calibri");
}

TEST_F(LayoutTest, TargetKeepsTheCellsFormatting) {
  Set("A1", L"Hello");
  Translate(L"\"targetFontBold\":true");
  const nlohmann::json cell = engine->Cell(L"", "A1");
  EXPECT_EQ(cell.at("value"), "ES:Hello");
  EXPECT_EQ(cell.at("wrap"), false);
  EXPECT_EQ(engine->Sheet().RowHeight(1), 15.0);
}

TEST_F(LayoutTest, TheBaselineIsTakenBeforeTheFirstWrite) {
  Set("A1", L"Hello");
  engine->SetFormula(L"", "A2", L"=\"Good\"", std::wstring(L"Good"));
  engine->Fault({{"fail", "Font.Color"}, {"on", "get"}, {"times", 1}});
  Translate(L"\"excelBilingualBelow\":true");
  ASSERT_EQ(pane->session.units.size(), 2U);
  const CellUnit& unit = pane->session.units[0];
  EXPECT_TRUE(unit.written);
  EXPECT_EQ(unit.baseline->name, L"Calibri");
  EXPECT_EQ(unit.baseline->size, 11.0);
  EXPECT_EQ(unit.baseline->bold, false);
  EXPECT_EQ(unit.baseline->color, std::nullopt);
  EXPECT_FALSE(unit.formulaBeforeWrite);
  EXPECT_EQ(*pane->session.units[1].formulaBeforeWrite, L"=\"Good\"");
  EXPECT_EQ(pane->session.units[1].baseline->color, 0);
}

TEST_F(LayoutTest, RowsGrowButNeverShrinkAndFrozenOnesStay) {
  for (const char* address : {"A1", "A2", "A3", "A4"})
    Set(address, L"Text");
  devhost::memory::Sheet& sheet = engine->Sheet();
  sheet.SetRowHeight(3, 90.0);
  sheet.SetRowHeight(4, 29.7);  // two lines are 30
  const auto window = engine->Host().ActiveWindow();
  devhost::memory::SheetView& view = window->ViewOf(sheet);
  view.splitRow = 1;
  view.frozen = true;
  Translate(L"\"excelBilingualBelow\":true");
  EXPECT_EQ(sheet.RowHeight(1), 15.0);
  EXPECT_EQ(sheet.RowHeight(2), 30.0);
  EXPECT_EQ(sheet.RowHeight(3), 90.0);
  EXPECT_EQ(sheet.RowHeight(4), 29.7);
  const std::map<std::pair<std::wstring, std::int32_t>, double> expected = {{{L"Data", 2}, 15.0}};
  EXPECT_EQ(pane->session.previousRowHeights, expected);
}

TEST_F(LayoutTest, ARowIsFittedOnceAndAHiddenOneStaysHidden) {
  for (const char* address : {"A1", "B1", "C1", "A2"})
    Set(address, L"Text");
  engine->Sheet().HideRow(2, true);
  engine->ResetCounters();
  Translate(L"\"excelBilingualBelow\":true");
  EXPECT_EQ(Text("A2"), L"Text\nES:Text");
  EXPECT_TRUE(engine->Sheet().IsRowHidden(2));
  EXPECT_EQ(engine->Sheet().RowHeight(1), 30.0);
  EXPECT_EQ(engine->Counters().at("calls").at("Range.AutoFit"), 1);
}

TEST_F(LayoutTest, WithoutAutoFitTheHeightIsEstimated) {
  Set("A1", L"Text");
  engine->Fault({{"missing", "Range.AutoFit"}});
  Translate(L"\"excelBilingualBelow\":true");
  EXPECT_NEAR(engine->Sheet().RowHeight(1), 11.0 * 1.35 * 2 + 6.0, 0.01);
}

TEST_F(LayoutTest, StylingFailuresNeverFailTheWrite) {
  for (const char* missing : {"Range.Characters", "Range.WrapText", "Range.EntireRow", "Font.Color"}) {
    SCOPED_TRACE(missing);
    Set("A1", L"Text");
    engine->Fault({{"missing", missing}});
    Translate(L"\"excelBilingualBelow\":true,\"targetFontBold\":true");
    EXPECT_EQ(Text("A1"), L"Text\nES:Text");
    EXPECT_FALSE(pane->page.Has(L"sheetWriteBlocked"));
    engine->Fault({{"clear", true}});
  }
}

TEST_F(LayoutTest, AMergedCellWrapsItsWholeArea) {
  Set("A1", L"Title");
  engine->Merge(L"", "A1:C1");
  Translate(L"\"excelBilingualBelow\":true");
  EXPECT_EQ(engine->Cell(L"", "A1").at("value"), "Title\nES:Title");
  EXPECT_TRUE(engine->Sheet().StyleAt(1, 3).wrap);
}

}  // namespace
}  // namespace qv
