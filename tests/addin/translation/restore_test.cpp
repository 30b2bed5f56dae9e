#include "display_fixture.h"

namespace qv {
namespace {

class RestoreTest : public DisplayTest {};

TEST_F(RestoreTest, PutsTextFontWrapAndHeightsBackLastUnitFirst) {
  FillRows(3);
  auto& sheet = engine->Sheet();
  sheet.ChangeStyle({1, 1, 1, 1}, [](auto& style) {
    style.font.name = L"Arial";
    style.font.size = 14;
    style.font.bold = true;
    style.font.color = 255;
  });
  sheet.SetRowHeight(1, 20.0);
  Translate(L"\"excelBilingualBelow\":true,\"targetFont\":\"Courier\",\"targetFontSize\":8");
  ASSERT_EQ(sheet.RowHeight(2), 30.0);
  std::vector<std::wstring> order;
  engine->Faults().OnCall("Range.Value2", [&] { order.push_back(Text("A3") + L"|" + Text("A1")); });
  EXPECT_EQ(Switch(L"restore", L"session"), Done(L"original", 3, 0));
  ASSERT_GE(order.size(), 2U);
  EXPECT_EQ(order[1], L"Text number 3|Text number 1\nES:Text number 1");
  const nlohmann::json cell = engine->Cell(L"", "A1");
  EXPECT_EQ(cell.at("value"), "Text number 1");
  EXPECT_EQ(cell.at("wrap"), false);
  const auto& font = sheet.StyleAt(1, 1).font;
  EXPECT_EQ(font.name, L"Arial");
  EXPECT_EQ(font.size, 14);
  EXPECT_TRUE(font.bold);
  EXPECT_EQ(font.color, 255);
  EXPECT_TRUE(sheet.Find(1, 1)->runs.empty());
  EXPECT_EQ(sheet.RowHeight(1), 20.0);
  EXPECT_EQ(sheet.RowHeight(3), 15.0);
  EXPECT_TRUE(pane->session.previousRowHeights.empty());
  EXPECT_FALSE(Unit(0).written);
}

TEST_F(RestoreTest, AColorThatCouldNotBeReadBecomesAutomaticAndOthersAreLeftAlone) {
  FillRows(2);
  engine->Fault({{"fail", "Font.Color"}, {"on", "get"}, {"times", 1}});
  Translate(kDual);
  engine->ResetCounters();
  int colors = 0;
  int indexes = 0;
  engine->Faults().OnCall("Font.Color", [&] { ++colors; });
  engine->Faults().OnCall("Font.ColorIndex", [&] { ++indexes; });
  EXPECT_EQ(Switch(L"original"), Done(L"original", 2, 0));
  // The value put already took the translation's colour away: A2's is only looked at.
  EXPECT_EQ(colors, 1);
  EXPECT_GE(indexes, 1);
  EXPECT_EQ(engine->Sheet().StyleAt(1, 1).font.color, 0);
}

TEST_F(RestoreTest, TheSecondTimeThereIsNothingLeft) {
  FillRows(2);
  Translate(kDual);
  EXPECT_EQ(Switch(L"original"), Done(L"original", 2, 0));
  Set("A1", L"Typed since");
  EXPECT_EQ(Switch(L"original"), Done(L"original", 0, 0, kNothingToRestore));
  EXPECT_EQ(Switch(L"original", L"sheet"), Done(L"original", 0, 0, kNothingToRestore));
  EXPECT_EQ(Text("A1"), L"Typed since");
}

TEST_F(RestoreTest, ProtectedCellsKeepTheirMarkAndSucceedLater) {
  FillRows(2);
  Translate(kDual);
  engine->Protect(L"Data", true);
  EXPECT_EQ(Switch(L"original"), Done(L"original", 0, 2, kSwitchFailed));
  EXPECT_EQ(Text("A1"), L"Text number 1\nES:Text number 1");
  EXPECT_EQ(engine->Sheet().RowHeight(1), 30.0);
  EXPECT_TRUE(Unit(0).written);
  engine->Protect(L"Data", false);
  EXPECT_EQ(Switch(L"original"), Done(L"original", 2, 0));
  EXPECT_EQ(engine->Sheet().RowHeight(1), 15.0);
}

TEST_F(RestoreTest, OneRefusedCellDoesNotStopTheOthers) {
  FillRows(3);
  Translate(kDual);
  engine->Fault({{"fail", "Range.Value2"}, {"on", "put"}, {"times", 1}});
  engine->Fault({{"fail", "Range.Value"}, {"on", "put"}, {"times", 1}});
  EXPECT_EQ(Switch(L"original"), Done(L"original", 2, 1));
  EXPECT_TRUE(Unit(2).written);
  EXPECT_EQ(engine->Sheet().RowHeight(3), 30.0);
  EXPECT_EQ(engine->Sheet().RowHeight(1), 15.0);
}

TEST_F(RestoreTest, RenamedAndDeletedSheetsFailWithoutHarm) {
  FillRows(1);
  engine->Set(L"More", "A1", std::wstring(L"Other"));
  Translate(L"\"excelTranslateAllSheets\":true");
  engine->Sheet(L"Data").name = L"Renamed";
  EXPECT_EQ(Switch(L"original"), Done(L"original", 1, 1));
  EXPECT_EQ(Text("A1", L"Renamed"), L"ES:Text number 1");
  EXPECT_EQ(Text("A1", L"More"), L"Other");
  engine->Sheet(L"Renamed").name = L"Data";
  EXPECT_EQ(Switch(L"original"), Done(L"original", 1, 0));
}

TEST_F(RestoreTest, FormulasMergedCellsAndChartTitlesComeBack) {
  engine->SetFormula(L"", "A1", L"=\"Good\"&\" day\"", std::wstring(L"Good day"));
  Set("A2", L"Title");
  engine->Merge(L"", "A2:C2");
  engine->AddChart(L"Data", L"Sales by region");
  Translate(kDual);
  ASSERT_EQ(Text("A1"), L"Good day\nES:Good day");
  ASSERT_EQ(engine->Sheet().charts[0]->title, L"ES:Sales by region");
  EXPECT_EQ(Switch(L"original"), Done(L"original", 3, 0));
  EXPECT_EQ(engine->Cell(L"", "A1").at("formula"), "=\"Good\"&\" day\"");
  EXPECT_EQ(Text("A2"), L"Title");
  EXPECT_FALSE(engine->Sheet().StyleAt(2, 3).wrap);
  EXPECT_EQ(engine->Sheet().charts[0]->title, L"Sales by region");
}

TEST_F(RestoreTest, ANewRunReadsTheSourceAndLeavesRetypedCellsAlone) {
  for (const std::wstring_view action : {L"start", L"restart"}) {
    SCOPED_TRACE(ToUtf8(action));
    FillRows(3);
    Translate(kDual, action);
    Set("A2", L"Retyped");
    service.Reset();
    Translate({}, action);
    EXPECT_EQ(service.TranslateBodies().at(0).at("texts"),
              nlohmann::json({"Text number 1", "Retyped", "Text number 3"}));
    EXPECT_EQ(Text("A1"), L"ES:Text number 1");
    EXPECT_EQ(Text("A2"), L"ES:Retyped");
    EXPECT_EQ(engine->Sheet().RowHeight(1), 15.0);
    EXPECT_EQ(Switch(L"original"), Done(L"original", 3, 0));
  }
}

TEST_F(RestoreTest, TheUserMayRestoreARetypedCell) {
  FillRows(1);
  Translate({});
  Set("A1", L"Retyped");
  EXPECT_EQ(Switch(L"original"), Done(L"original", 1, 0));
  EXPECT_EQ(Text("A1"), L"Text number 1");
}

TEST_F(RestoreTest, ANewRunOnAnotherSheetRestoresNothing) {
  FillRows(1);
  engine->Set(L"More", "A1", std::wstring(L"Other"));
  Translate({});
  engine->ActivateSheet(L"More");
  Translate({});
  EXPECT_EQ(Text("A1", L"Data"), L"ES:Text number 1");
  EXPECT_EQ(Text("A1", L"More"), L"ES:Other");
}

TEST_F(RestoreTest, SheetsOfTheSameNameInAnotherWorkbookAreNotMeant) {
  FillRows(1);
  Translate({});
  engine->AddWorkbook(L"Second.xlsx", L"C:\\Books", {L"Data"});
  engine->Set(L"Data", "A1", std::wstring(L"ES:Text number 1"));
  EXPECT_EQ(Switch(L"original"), Done(L"original", 0, 1, kSwitchFailed));
  EXPECT_EQ(Text("A1"), L"ES:Text number 1");
  Translate({});
  EXPECT_EQ(service.TranslateBodies().back().at("texts").at(0), "ES:Text number 1");
}

TEST_F(RestoreTest, ABusyHostIsAskedAgain) {
  FillRows(3);
  Translate(kDual);
  engine->Fault(
      {{"fail", "Range.Value2"}, {"code", "0x800AC472"}, {"on", "put"}, {"times", 1}, {"after", 1}});
  EXPECT_EQ(Switch(L"original"), Done(L"original", 3, 0));
  EXPECT_EQ(Text("A1"), L"Text number 1");
}

TEST_F(RestoreTest, ATitleThatIsNotOursIsNeverWritten) {
  engine->AddChart(L"Data", L"Sales by region");
  engine->AddChart(L"Data", L"Costs by region");
  Translate({});
  auto& charts = engine->Sheet().charts;
  ASSERT_EQ(charts[1]->title, L"ES:Costs by region");
  // The first chart is gone: the second is number 1 now, and there is none with number 2.
  charts.erase(charts.begin());
  EXPECT_EQ(Switch(L"dual"), Done(L"dual", 0, 2, kSwitchFailed));
  EXPECT_EQ(Switch(L"original"), Done(L"original", 0, 2, kSwitchFailed));
  EXPECT_EQ(charts[0]->title, L"ES:Costs by region");
  Translate({});
  EXPECT_EQ(service.TranslateBodies().back().at("texts").at(0), "ES:Costs by region");
}

}  // namespace
}  // namespace qv
