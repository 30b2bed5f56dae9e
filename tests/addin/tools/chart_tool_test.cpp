#include <string>

#include "addin/tools/tools_fixture.h"
#include "foundation/text.h"

namespace qv::test {
namespace {

class ChartTool : public ToolsTest {
 protected:
  [[nodiscard]] std::wstring Create(const wchar_t* json) { return Run(L"excelChartCreate", json); }
  [[nodiscard]] const devhost::memory::Chart& LastChart() { return *engine.Sheet(L"Sheet1").charts.back(); }
  [[nodiscard]] size_t Charts() { return engine.Sheet(L"Sheet1").charts.size(); }
};

TEST_F(ChartTool, EveryWordMakesItsKindOfChart) {
  const struct {
    const wchar_t* type;
    const wchar_t* word;
    long number;
  } cases[] = {{LR"("column")", L"column", 51}, {LR"("line")", L"line", 4}, {LR"("pie")", L"pie", 5},
               {LR"("bar")", L"bar", 57},       {LR"("")", L"column", 51},  {L"null", L"column", 51}};
  for (const auto& [type, word, number] : cases) {
    const std::wstring json = Concat(LR"({"source":"A1:B3","type":)", type, L'}');
    const std::wstring result = Create(json.c_str());
    EXPECT_EQ(result,
              Concat(LR"({"ok":true,"shapeName":"Chart )", Charts(), LR"(","type":")", word, LR"("})"));
    EXPECT_EQ(LastChart().type, number);
  }
}

TEST_F(ChartTool, PlaceTitleAndSourceArriveAndDefaultsFillTheRest) {
  EXPECT_EQ(Create(LR"({"source":"B2:C4","left":10.5,"top":-5,"width":0,"height":"80","title":"A \"b\""})"),
            LR"({"ok":true,"shapeName":"Chart 1","type":"column"})");
  EXPECT_EQ(LastChart().left, 10.5);
  EXPECT_EQ(LastChart().top, 50);
  EXPECT_EQ(LastChart().width, 400);
  EXPECT_EQ(LastChart().height, 300);
  EXPECT_EQ(LastChart().title, L"A \"b\"");
  EXPECT_EQ(LastChart().source, L"Sheet1!$B$2:$C$4");
  EXPECT_NE(Create(LR"({"source":"A1"})").find(L"ok"), std::wstring::npos);
  EXPECT_FALSE(LastChart().hasTitle);
}

TEST_F(ChartTool, BadArgumentsHaveTheirOwnTexts) {
  const struct {
    const wchar_t* json;
    const wchar_t* message;
  } cases[] = {
      {LR"({"type":"Pie","source":"A1:B3"})", L"unknown chart type (column|line|pie|bar)"},
      {LR"({"type":5,"source":"A1:B3"})", L"unknown chart type (column|line|pie|bar)"},
      {L"{}", L"source range required"},
      {LR"({"source":"$A$1:B2"})", L"invalid source range"},
      {LR"({"source":"A1048577"})", L"invalid source range"},
      {LR"({"source":"A1","sheetName":"None"})", L"找不到工作表"},
  };
  for (const auto& [json, message] : cases)
    EXPECT_EQ(Create(json), Error(message)) << ToUtf8(json);
  EXPECT_EQ(Charts(), 0U);
}

TEST_F(ChartTool, AHostWithoutTheNewMemberMakesTheChartTheOldWay) {
  engine.Faults().Hide("Shapes.AddChart2");
  EXPECT_EQ(Create(LR"({"source":"A1:B3","type":"pie","left":5,"title":"Old"})"),
            LR"({"ok":true,"shapeName":"Chart 1","type":"pie"})");
  EXPECT_EQ(LastChart().type, 5);
  EXPECT_EQ(LastChart().left, 5);
  EXPECT_EQ(LastChart().title, L"Old");
  EXPECT_EQ(engine.Calls("ChartObjects.Add"), 1U);
}

TEST_F(ChartTool, WhatTheHostLacksOrRefusesLeavesNoChart) {
  const struct {
    std::vector<std::string> hidden;
    const char* failing;
    const wchar_t* message;
  } cases[] = {
      {{"Worksheet.Shapes"}, nullptr, L"Shapes collection unavailable"},
      {{"Shapes.AddChart2", "Worksheet.ChartObjects"},
       nullptr,
       L"neither Shapes.AddChart2 nor ChartObjects available"},
      {{"Shapes.AddChart2"}, "ChartObjects.Add", L"ChartObjects.Add failed"},
      {{}, "Shapes.AddChart2", L"chart object not accessible"},
      {{"Shape.Chart"}, nullptr, L"chart object not accessible"},
      {{}, "Chart.SetSourceData", L"chart object not accessible"},
      {{}, "Chart.ChartType", L"chart object not accessible"},
  };
  for (const auto& [hidden, failing, message] : cases) {
    for (const std::string& member : hidden)
      engine.Faults().Hide(member);
    if (failing != nullptr) engine.Faults().Fail({.member = failing});
    EXPECT_EQ(Create(LR"({"source":"A1:B3"})"), Error(message));
    EXPECT_EQ(Charts(), 0U);
    engine.Faults().Clear();
  }
  engine.Sheet(L"Sheet1").isProtected = true;
  EXPECT_EQ(Create(LR"({"source":"A1:B3"})"), Error(L"chart object not accessible"));
}

class CalculationTools : public ToolsTest {};

TEST_F(CalculationTools, TheModeIsSetReadAndCalculatedIn) {
  const std::pair<const wchar_t*, long> modes[] = {
      {L"manual", -4135}, {L"semiautomatic", 2}, {L"automatic", -4105}};
  for (const auto& [word, number] : modes) {
    EXPECT_EQ(Run(L"excelCalcSetMode", Concat(LR"({"mode":")", word, LR"("})")),
              Concat(LR"({"ok":true,"mode":")", word, LR"("})"));
    EXPECT_EQ(engine.Host().calculation, number);
    EXPECT_EQ(Run(L"excelCalcGetMode"), Concat(LR"({"mode":")", word, LR"("})"));
  }
  EXPECT_EQ(Run(L"excelCalculateNow"), LR"({"ok":true})");
  EXPECT_EQ(engine.Calls("Application.Calculate"), 1U);
  engine.Host().calculation = 7;
  EXPECT_EQ(Run(L"excelCalcGetMode"), LR"({"mode":"unknown"})");
  engine.Host().calculation = -4105;
}

TEST_F(CalculationTools, WhatIsWrongIsSaidAndNothingChanges) {
  for (const wchar_t* json : {L"{}", LR"({"mode":"Manual"})", LR"({"mode":""})", LR"({"mode":-4135})"})
    EXPECT_EQ(Run(L"excelCalcSetMode", json), Error(L"unknown mode (manual|automatic|semiautomatic)"));
  MakeBusy("Application.Calculation");
  MakeBusy("Application.Calculate");
  EXPECT_EQ(Run(L"excelCalcSetMode", LR"({"mode":"manual"})"), Error(L"set Calculation failed"));
  EXPECT_EQ(Run(L"excelCalcGetMode"), Error(L"get Calculation failed"));
  EXPECT_EQ(Run(L"excelCalculateNow"), Error(L"Calculate failed"));
  EXPECT_EQ(engine.Host().calculation, -4105);
}

}  // namespace
}  // namespace qv::test
