#include "display_fixture.h"
#include "trace_tails.h"

namespace qv {
namespace {

/// The host becomes busy, or refuses, in the middle of what a write consists of.
class BusyWriteTest : public DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    pane = std::make_unique<TestPane>(engine->Application(), Patience{1, 3});
  }

  static nlohmann::json Busy(const char* member, const char* on, const nlohmann::json& times, int after = 0) {
    return {{"fail", member}, {"code", "0x800AC472"}, {"on", on}, {"times", times}, {"after", after}};
  }

  /// Acts when the cells are collected, before the first is written.
  void OnceCollected(const std::function<void()>& act) {
    pane->page.onReceived = [act](const std::wstring& script) {
      if (Contains(script, L"onReady(")) act();
    };
  }
};

TEST_F(BusyWriteTest, ARowThatTheHostWasTooBusyToFitIsFittedLater) {
  struct Case {
    nlohmann::json fault;
    std::string_view name;
  };
  const Case cases[] = {
      {Busy("Range.AutoFit", "method", 2), "fitting"},
      {Busy("Range.EntireRow", "get", 1), "looking at the row"},
      {Busy("Range.RowHeight", "get", 1), "reading the height before"},
      {Busy("Range.RowHeight", "get", 1, 1), "reading the height after"},
      {Busy("Range.RowHeight", "put", 2), "putting the height"},
      {Busy("Range.Value2", "put", 2, 1), "writing the next row"},
  };
  const std::map<SheetRow, double> former = {{{L"Data", 1}, 15.0}, {{L"Data", 2}, 15.0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    FillRows(2);
    OnceCollected([&] { engine->Fault(c.fault); });
    Translate(kDual);
    pane->page.onReceived = nullptr;
    for (const int row : {1, 2})
      EXPECT_EQ(engine->Sheet().RowHeight(row), 30.0) << row;
    EXPECT_EQ(pane->session.previousRowHeights, former);
    EXPECT_EQ(Switch(L"original"), Done(L"original", 2, 0));
    engine->Fault(c.fault);
    EXPECT_EQ(Switch(L"dual"), Done(L"dual", 2, 0));
    for (const int row : {1, 2})
      EXPECT_EQ(engine->Sheet().RowHeight(row), 30.0) << row;
    engine->Fault({{"clear", true}});
    EXPECT_EQ(Switch(L"original"), Done(L"original", 2, 0));
    EXPECT_EQ(engine->Sheet().RowHeight(1), 15.0);
  }
}

TEST_F(BusyWriteTest, AHostThatNeverFitsARowCostsNoText) {
  FillRows(2);
  engine->Fault(Busy("Range.AutoFit", "method", "always"));
  Translate(kDual);
  EXPECT_EQ(Text("A2"), L"Text number 2\nES:Text number 2");
  EXPECT_EQ(Switch(L"original"), Done(L"original", 2, 0));
  EXPECT_EQ(Switch(L"dual"), Done(L"dual", 2, 0));
}

TEST_F(BusyWriteTest, NothingIsWrittenBeforeTheCellIsKnown) {
  for (const char* member :
       {"Range.Font", "Font.Color", "Range.HasFormula", "Range.Formula", "Range.WrapText"}) {
    SCOPED_TRACE(member);
    engine->SetFormula(L"", "A1", L"=\"Go\"&\"od\"", std::wstring(L"Good"));
    Set("A2", L"Text");
    engine->Sheet().ChangeStyle({1, 1, 1, 1}, [](auto& style) { style.font.color = 255; });
    OnceCollected([&] { engine->Fault(Busy(member, "get", 1)); });
    Translate(kDual);
    pane->page.onReceived = nullptr;
    EXPECT_EQ(Text("A1"), L"Good\nES:Good");
    EXPECT_EQ(Switch(L"original"), Done(L"original", 2, 0));
    const nlohmann::json cell = engine->Cell(L"", "A1");
    EXPECT_EQ(cell.at("formula"), "=\"Go\"&\"od\"");
    EXPECT_EQ(cell.at("wrap"), false);
    EXPECT_EQ(engine->Sheet().StyleAt(1, 1).font.color, 255);
  }
}

TEST_F(BusyWriteTest, ARefusedWriteKeepsNoLookAndALaterOneLooksAnew) {
  FillRows(1);
  engine->Protect(L"Data", true);
  Translate({});
  EXPECT_FALSE(Unit(0).baseline);
  engine->Protect(L"Data", false);
  engine->SetFormula(L"", "A1", L"=B1", std::wstring(L"Typed since"));
  EXPECT_EQ(Switch(L"target"), Done(L"target", 1, 0));
  EXPECT_EQ(Switch(L"original"), Done(L"original", 1, 0));
  EXPECT_EQ(engine->Cell(L"", "A1").at("formula"), "=B1");
}

TEST_F(BusyWriteTest, AFormulaThatTheUserTypedSinceIsNotPutBackUnasked) {
  FillRows(2);
  for (const wchar_t* shown : {L"ES:Text number 1", L"Text number 1"}) {
    SCOPED_TRACE(ToUtf8(shown));
    Translate({});
    engine->SetFormula(L"", "A1", L"=B1", std::wstring(shown));
    const TraceTails tails;
    Translate({});
    EXPECT_TRUE(Contains(tails.PaneLines(), L"candidates=2 restored=1 failed=1\r\n"));
    ASSERT_TRUE(Unit(0).formulaBeforeWrite);
    EXPECT_EQ(*Unit(0).formulaBeforeWrite, L"=B1");
    FillRows(2);
  }
}

TEST_F(BusyWriteTest, EachWriteBeginsInTheLogBeforeItsCellIsLookedFor) {
  FillRows(1);
  OnceCollected([&] { engine->Sheet(L"Data").name = L"Renamed"; });
  const TraceTails tails;
  Translate(kDual);
  const std::wstring log = tails.PaneLines();
  const std::size_t enter = log.find(L"PutCellValueDispatch enter sheet=Data row=1 col=1 textLen=30\r\n");
  const std::size_t failed = log.find(L"PutCellValueDispatch: sheet lookup failed sheet=Data ");
  EXPECT_NE(failed, std::wstring::npos) << ToUtf8(log);
  EXPECT_LT(enter, failed) << ToUtf8(log);
  engine->Sheet(L"Renamed").name = L"Data";
}

TEST_F(BusyWriteTest, APaneThatGoesAwayPutsBackWhatABusyHostDidNotTake) {
  FillRows(1);
  Translate({});
  engine->Fault(Busy("Application.DisplayAlerts", "put", 2, 1));
  EXPECT_EQ(Switch(L"original"), Done(L"original", 1, 0));
  ASSERT_FALSE(engine->Host().displayAlerts);
  pane->Close();
  EXPECT_TRUE(engine->Host().displayAlerts);
}

}  // namespace
}  // namespace qv
