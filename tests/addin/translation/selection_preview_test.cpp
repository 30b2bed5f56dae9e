#include "foundation/json_text.h"
#include "foundation/text.h"
#include "run_fixture.h"
#include "translation/selection_preview_reader.h"

namespace qv {
namespace {

using devhost::memory::kHostBusy;
using devhost::memory::kOnGet;

constexpr const wchar_t* kUnreadable =
    L"if(window.onSelectionPreview)onSelectionPreview({error:\"无法读取选区\"})";

class SelectionPreviewTest : public RunTest {
 protected:
  void Push() {
    pane->page.received.clear();
    SelectionPreviewReader(pane->target, pane->session, *pane->context, pane->page).Push();
  }

  /// What a push tells the page about the selected cells, behind the function's opening brace.
  std::wstring PreviewOf(const std::string& address) {
    engine->Select(L"Data", address);
    Push();
    constexpr std::wstring_view kStart = L"if(window.onSelectionPreview)onSelectionPreview({";
    if (pane->page.received.size() != 1 || !pane->page.received[0].starts_with(kStart)) return L"?";
    return pane->page.received[0].substr(kStart.size());
  }
};

TEST_F(SelectionPreviewTest, CountsWhatARunWouldTranslateInAllAreas) {
  Set("A1", L"Two words");
  Set("A2", L"12,345.6");
  engine->Set(L"", "A3", 7.0);
  Set("C1", L"Other");
  Set("B9", L"Unselected");
  EXPECT_EQ(PreviewOf("A1:A3,C1:C2,C1"),
            L"fragments:2,chars:14,rangeAddress:\"$A$1:$A$3,$C$1:$C$2,$C$1\",translatedCellsOnSheet:0,"
            L"translatedCellsInSelection:0,quickText:\"Two words\\n12,345.6\\nOther\\nOther\"})");
}

TEST_F(SelectionPreviewTest, ReadsButDoesNotCountAFormula) {
  engine->SetFormula(L"", "A1", L"=\"Sum\"", std::wstring(L"Sum"));
  EXPECT_EQ(PreviewOf("A1"),
            L"fragments:0,chars:0,rangeAddress:\"$A$1\",translatedCellsOnSheet:0,"
            L"translatedCellsInSelection:0,quickText:\"Sum\"})");
}

TEST_F(SelectionPreviewTest, OnlyUpTo64CellsGiveTheirText) {
  Set("A1", L"Text\nEarlier translation");
  struct Case {
    const char* address;
    bool hasText;
  };
  for (const Case& c : {Case{"A1", true}, Case{"A1:A64", true}, Case{"A1:A65", false},
                        Case{"A1:A63,C1", true}, Case{"A1:A64,C1", false}, Case{"A1:H8", true}}) {
    const std::wstring preview = PreviewOf(c.address);
    EXPECT_TRUE(Contains(preview, L"fragments:1,chars:4,")) << c.address;
    EXPECT_EQ(preview.ends_with(L",quickText:\"Text\\nEarlier translation\"})"), c.hasText) << c.address;
    EXPECT_EQ(Contains(preview, L"quickText"), c.hasText) << c.address;
  }
  EXPECT_TRUE(PreviewOf("D4:E5").ends_with(L",quickText:\"\"})"));
}

TEST_F(SelectionPreviewTest, CountsTheCellsThatARunHasWritten) {
  FillRows(5);
  pane->Start();
  ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  EXPECT_TRUE(Contains(PreviewOf("A2:B3,A3:A4"), L",translatedCellsOnSheet:5,translatedCellsInSelection:3,"));
  engine->Select(L"More", "A1:A9");
  Push();
  EXPECT_TRUE(pane->page.Has(L",translatedCellsOnSheet:0,translatedCellsInSelection:0,"));

  // A sheet of the same name in another workbook holds none of them.
  engine->AddWorkbook(L"Other.xlsx", L"C:\\Books", {L"Data"});
  EXPECT_TRUE(Contains(PreviewOf("A1:A5"), L",translatedCellsOnSheet:0,translatedCellsInSelection:0,"));
}

TEST_F(SelectionPreviewTest, WhatCannotBeReadIsToldAsSuch) {
  FillRows(1);
  engine->AddChart(L"Data", L"Sales");
  engine->SelectChart(L"Data", 0);
  Push();
  EXPECT_EQ(pane->page.received, std::vector<std::wstring>{kUnreadable});

  engine->Select(L"Data", "A1:GR1001");  // 200 × 1001 cells
  Push();
  EXPECT_EQ(pane->page.received, std::vector<std::wstring>{kUnreadable});

  engine->Select(L"Data", "A1");
  engine->Faults().Fail({.member = "Window.Selection"});
  Push();
  EXPECT_EQ(pane->page.received, std::vector<std::wstring>{kUnreadable});
  engine->Fault({{"clear", true}});

  pane->target.SetApplication(nullptr);
  Push();
  EXPECT_EQ(pane->page.received, std::vector<std::wstring>{kUnreadable});
}

TEST_F(SelectionPreviewTest, ABusyHostIsLeftAlone) {
  FillRows(1);
  for (const char* member : {"*", "Window.Selection", "Range.*"}) {
    SCOPED_TRACE(member);
    engine->Faults().Fail({.member = member, .error = {DISP_E_EXCEPTION, kHostBusy}, .on = kOnGet});
    Push();
    EXPECT_TRUE(pane->page.received.empty());
    engine->Fault({{"clear", true}});
  }
  Push();
  EXPECT_EQ(pane->page.received.size(), 1U);
}

TEST_F(SelectionPreviewTest, APaneThatClosesWhileTheHostIsAskedHearsNothing) {
  FillRows(1);
  engine->Faults().OnCall("Range.Value2", [&] { pane->Close(); });
  Push();
  EXPECT_TRUE(pane->page.received.empty());
  engine->Fault({{"clear", true}});
}

}  // namespace
}  // namespace qv
