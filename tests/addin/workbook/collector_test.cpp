#include "workbook/collector.h"

#include "addin/workbook/workbook_fixture.h"
#include "workbook/cell_text.h"
#include "workbook/range_reader.h"

namespace qv::test {
namespace {

using devhost::memory::ErrorValue;
using devhost::memory::kGeneralFailure;
using devhost::memory::kHostBusy;
using devhost::memory::kOnGet;

class Collecting : public WorkbookTest {
 protected:
  void SetUp() override {
    WorkbookTest::SetUp();
    Pin();
  }

  bool CollectSheet(std::wstring_view sheet = {}, std::uint64_t runId = 0) {
    return Collector(target, panel, pane).CollectUsedRangeCells(sheet, runId, result);
  }
  bool CollectSelection(const std::string& address) {
    engine.Select(L"Sheet1", address);
    return Collector(target, panel, pane).CollectSelectionCells(0, result);
  }

  /// "A1=text" of every unit in order.
  [[nodiscard]] std::vector<std::wstring> Units() const {
    std::vector<std::wstring> units;
    for (const CellUnit& unit : result.units)
      units.push_back(A1Address(unit.row, unit.col) + L"=" + std::wstring(unit.sourceText));
    return units;
  }

  /// Texts "t1", "t2"… row by row in a block at the top left.
  void FillBlock(long rows, long cols) {
    for (long row = 1; row <= rows; ++row) {
      for (long col = 1; col <= cols; ++col) {
        SetText(Narrow(A1Address(row, col)), L"t" + std::to_wstring((row - 1) * cols + col));
      }
    }
  }

  static std::string Narrow(const std::wstring& ascii) { return {ascii.begin(), ascii.end()}; }

  using Texts = std::vector<std::wstring>;
  RecordingPanel panel;
  PaneContext pane{1};
  CollectResult result;
};

TEST_F(Collecting, TakesTextsAndBooleansOnlyRowByRow) {
  SetText("C3", L"first");
  SetText("D3", L"12,345.6");
  SetText("E3", L"two \nlines");
  engine.Set(L"Sheet1", "B4", 12.5);
  engine.Set(L"Sheet1", "C4", true);
  engine.Set(L"Sheet1", "D4", ErrorValue{2042});
  SetText("E4", L"\u4E2D\u6587");
  SetText("B5", L"last");
  const TraceTail trace;
  ASSERT_TRUE(CollectSheet(L"Sheet1"));
  EXPECT_EQ(Units(), (Texts{L"C3=first", L"E3=two", L"C4=TRUE", L"E4=\u4E2D\u6587", L"B5=last"}));
  EXPECT_EQ(result.cells, 12);
  EXPECT_EQ(result.sheetName, L"Sheet1");
  EXPECT_EQ(result.units[0].SheetName(), L"Sheet1");
  for (const wchar_t* line :
       {L"Excel CollectUsedRangeCells sheet=Sheet1\r\n", L"Excel CollectCellsFromDispatchValue2\r\n",
        L"Excel Value2 dispatch batch rows=3 cols=4 r0=3 c0=2\r\n", L"Excel Value2 dispatch cells=5\r\n"})
    EXPECT_TRUE(trace.Has(line)) << testing::PrintToString(std::wstring(line));
}

TEST_F(Collecting, FormulasAreSkippedOnlyWhereTheHostTellsCellByCell) {
  engine.SetFormula(L"Sheet1", "A1", L"=B1", std::wstring(L"result"));
  ASSERT_TRUE(CollectSheet());
  EXPECT_EQ(Units(), Texts{}) << "a range of one cell";

  SetText("B1", L"constant");
  ASSERT_TRUE(CollectSheet());
  EXPECT_EQ(Units(), (Texts{L"A1=result", L"B1=constant"})) << "one answer for several cells";

  engine.Faults().arrayAnswers = true;
  ASSERT_TRUE(CollectSheet());
  EXPECT_EQ(Units(), (Texts{L"B1=constant"})) << "one answer a cell";
}

TEST_F(Collecting, OneUnitComesFromAMergedBlock) {
  SetText("A1", L"title");
  engine.Merge(L"Sheet1", "A1:C2");
  ASSERT_TRUE(CollectSheet());
  EXPECT_EQ(Units(), Texts{L"A1=title"}) << "all merged";
  SetText("A3", L"below");
  ASSERT_TRUE(CollectSheet());
  EXPECT_EQ(Units(), (Texts{L"A1=title", L"A3=below"})) << "mixed";
  engine.Faults().arrayAnswers = true;
  engine.ResetCounters();
  ASSERT_TRUE(CollectSheet());
  EXPECT_EQ(Units(), (Texts{L"A1=title", L"A3=below"})) << "one answer a cell";
  EXPECT_EQ(engine.Calls("Worksheet.Cells"), 1U) << "only merged cells with a text are fetched";
}

TEST_F(Collecting, OnlyTheTopLeftCellOfAMergeIsNotCovered) {
  engine.Merge(L"Sheet1", "B2:C3");
  const auto covered = [this](const char* address, std::int32_t row, std::int32_t col) {
    const ComPtr<IDispatch> cell = engine.RangeObject(L"Sheet1", address);
    const bool byName = IsCoveredByMerge(RangeReader::LateBound(cell), row, col);
    EXPECT_EQ(IsCoveredByMerge(RangeReader::Typed(cell.Get()).value(), row, col), byName);
    return byName;
  };
  EXPECT_FALSE(covered("B2", 2, 2));
  EXPECT_TRUE(covered("C2", 2, 3));
  EXPECT_TRUE(covered("B3", 3, 2));
  EXPECT_FALSE(covered("A1", 1, 1));
}

TEST_F(Collecting, AMergedCellThatCannotBeFetchedIsKept) {
  SetText("A1", L"title");
  engine.Merge(L"Sheet1", "A1:B1");
  engine.Faults().Fail({.member = "Worksheet.Cells"});
  ASSERT_TRUE(CollectSheet());
  EXPECT_EQ(Units(), Texts{L"A1=title"});
}

TEST_F(Collecting, ATooLongTextBecomesAWarning) {
  SetText("A1", std::wstring(20000, L'a'));
  SetText("AB7", std::wstring(20001, L'a'));
  ASSERT_TRUE(CollectSheet());
  ASSERT_EQ(result.units.size(), 1U);
  EXPECT_EQ(result.warnings, Texts{L"内容过长（超过 20000 字符）：AB7，请拆分后再翻译"});
}

struct FallbackCase {
  long rows;
  long cols;
  bool typed;
  const wchar_t* usedRangeLine;
  const wchar_t* selectionLine;
};

TEST_F(Collecting, AFailedBulkReadFallsBackByInterfaceAndSize) {
  const wchar_t* const kTypedCells = L"Excel CollectCellsFromRangeArea (IRange per-cell)\r\n";
  const wchar_t* const kTypedBulk = L"Excel CollectCellsFromRangeValue2\r\n";
  const wchar_t* const kCells = L"Excel CollectCellsFromUsedRangeDispatch\r\n";
  const FallbackCase cases[] = {
      {1, 47, true, kTypedCells, kTypedCells}, {1, 48, true, kTypedCells, kTypedBulk},
      {9, 7, true, kTypedCells, kTypedBulk},   {8, 8, true, kTypedBulk, kTypedBulk},
      {8, 8, false, kCells, kCells},
  };
  for (const FallbackCase& c : cases) {
    engine.Sheet(L"Sheet1").ClearContents({1, 1, 100, 100});
    FillBlock(c.rows, c.cols);
    engine.Host().typedRange = c.typed;
    const std::string block =
        "A1:" + Narrow(A1Address(static_cast<std::int32_t>(c.rows), static_cast<std::int32_t>(c.cols)));
    for (const bool selection : {false, true}) {
      engine.Faults().failBulkGets = 1;
      const TraceTail trace;
      ASSERT_TRUE(selection ? CollectSelection(block) : CollectSheet());
      EXPECT_EQ(result.units.size(), static_cast<std::size_t>(c.rows * c.cols));
      EXPECT_EQ(result.units.back().sourceText, L"t" + std::to_wstring(c.rows * c.cols));
      EXPECT_TRUE(trace.Has(selection ? c.selectionLine : c.usedRangeLine))
          << block << " selection " << selection;
      if (c.typed) continue;
      EXPECT_TRUE(trace.Has(selection
                                ? L"Excel Selection QI IRange failed — slow dispatch fallback\r\n"
                                : L"Excel UsedRange QI IRange failed — slow per-cell dispatch fallback\r\n"));
      EXPECT_EQ(trace.Has(L"Excel WARN: large UsedRange without Value2 batch; expect slow collect\r\n"),
                !selection);
    }
  }
}

TEST_F(Collecting, CellByCellAppliesTheSameRulesAndLeavesOutWhatCannotBeRead) {
  FillBlock(1, 3);
  engine.SetFormula(L"Sheet1", "A2", L"=A1", std::wstring(L"formula"));
  SetText("A3", L"title");
  engine.Merge(L"Sheet1", "A3:B3");
  engine.Host().typedRange = false;
  engine.Faults().failBulkGets = 1;
  // The second of the three texts cannot be read; the first read of Value2 is the bulk one.
  engine.Faults().Fail({.member = "Range.Value2", .times = 1, .on = kOnGet, .after = 2});
  const TraceTail trace;
  ASSERT_TRUE(CollectSheet());
  EXPECT_EQ(Units(), (Texts{L"A1=t1", L"C1=t3", L"A3=title"}));
  EXPECT_TRUE(trace.Has(L"Excel Item Value2(1,2) hr=0x80020009 vt=0\r\n"));
  EXPECT_TRUE(trace.Has(L"Excel dispatch collect cells=3\r\n"));
}

TEST_F(Collecting, ABusyHostEndsTheCollectionInsteadOfLosingCells) {
  FillBlock(2, 2);
  engine.Faults().Fail({.member = "Range.Value2", .error = {DISP_E_EXCEPTION, kHostBusy}});
  EXPECT_FALSE(CollectSheet());
  EXPECT_EQ(result.error, L"无法读取区域");
  EXPECT_TRUE(result.units.empty());
}

TEST_F(Collecting, ABusyHostIsNoticedInEveryReadOfACell) {
  SetText("A1", L"title");
  SetText("A2", L"below");
  engine.Merge(L"Sheet1", "A1:B1");
  engine.Host().typedRange = false;
  for (const char* member : {"Range.HasFormula", "Range.MergeCells", "Range.MergeArea"}) {
    engine.Faults().failBulkGets = 1;
    engine.Faults().Fail({.member = member, .error = {DISP_E_EXCEPTION, kHostBusy}});
    EXPECT_FALSE(CollectSheet()) << member;
    EXPECT_EQ(result.error, L"无法读取区域") << member;
    engine.Faults().Clear();
  }
}

TEST_F(Collecting, ARangeOfWhichNoCellCanBeReadIsAFailure) {
  FillBlock(2, 2);
  for (const bool typed : {true, false}) {
    engine.Host().typedRange = typed;
    engine.Faults().Fail({.member = "Range.Value2"});
    EXPECT_FALSE(CollectSheet());
    EXPECT_EQ(result.error, L"无法读取已用区域");
    EXPECT_FALSE(CollectSelection("A1:B2"));
    EXPECT_EQ(result.error, L"无法读取选区");
    engine.Faults().Clear();
  }
}

TEST_F(Collecting, ASheetWithoutAReadableNameIsNotCollected) {
  SetText("A1", L"text");
  engine.Faults().Fail({.member = "Worksheet.Name"});
  EXPECT_FALSE(CollectSheet());
  EXPECT_EQ(result.error, L"无法读取已用区域");
  EXPECT_FALSE(CollectSelection("A1"));
  EXPECT_EQ(result.error, L"无法读取选区");
}

TEST_F(Collecting, AScanThatNobodyWantsAnyMoreIsGivenUp) {
  FillBlock(6, 1);
  int asked = 0;
  const auto collect = [&](int wantedTimes, const std::string& address) {
    asked = 0;
    engine.Select(L"Sheet1", address);
    return Collector(target, panel, pane, [&, wantedTimes] { return ++asked <= wantedTimes; })
        .CollectSelectionCells(0, result);
  };
  EXPECT_TRUE(collect(100, "A1:A6"));
  EXPECT_FALSE(collect(3, "A1:A6"));
  EXPECT_LE(asked, 5) << "and no other way is tried";
  EXPECT_TRUE(result.units.empty());
  EXPECT_EQ(result.error, L"");
  engine.ResetCounters();
  EXPECT_FALSE(collect(0, "A1,A3"));
  EXPECT_EQ(engine.Calls("Range.Value2"), 0U);
}

TEST_F(Collecting, ATooLongCellInTwoAreasIsWarnedAboutOnce) {
  SetText("A1", std::wstring(20001, L'a'));
  SetText("B1", std::wstring(20001, L'a'));
  ASSERT_TRUE(CollectSelection("A1:B1,A1:A2"));
  EXPECT_EQ(result.warnings.size(), 2U);
}

TEST_F(Collecting, FailuresHaveTheirTexts) {
  engine.Faults().Fail({.member = "Worksheet.UsedRange"});
  EXPECT_FALSE(CollectSheet());
  EXPECT_EQ(result.error, L"无法读取已用区域");
  engine.Faults().Clear();
  EXPECT_FALSE(CollectSheet(L"Nowhere"));
  EXPECT_EQ(result.error, L"无法读取已用区域");
  engine.AddChart(L"Sheet1", L"Chart");
  engine.SelectChart(L"Sheet1", 0);
  EXPECT_FALSE(Collector(target, panel, pane).CollectSelectionCells(0, result));
  EXPECT_EQ(result.error, L"请先选择单元格");
  engine.Faults().Fail({.member = "Range.Row"});
  EXPECT_FALSE(CollectSelection("A1:B2"));
  EXPECT_EQ(result.error, L"无法读取选区");
  engine.Faults().Clear();
  target.ReleaseReferences();
  EXPECT_FALSE(CollectSheet());
  EXPECT_EQ(result.error, L"未连接到 Excel");
  EXPECT_FALSE(Collector(target, panel, pane).CollectSelectionCells(0, result));
  EXPECT_EQ(result.error, L"未连接到 Excel");
}

TEST_F(Collecting, TheSelectionLimitCountsAllAreas) {
  SetText("A1", L"text");
  engine.ResetCounters();
  EXPECT_FALSE(CollectSelection("A1:B100000,D1"));
  EXPECT_EQ(result.error, L"选区过大，请缩小选择范围");
  EXPECT_FALSE(CollectSelection("A:A"));
  EXPECT_EQ(result.error, L"选区过大，请缩小选择范围");
  EXPECT_EQ(engine.Calls("Range.Value2"), 0U);
  EXPECT_TRUE(CollectSelection("A1:B100000"));
  EXPECT_EQ(result.cells, 200000);
  EXPECT_EQ(Units(), Texts{L"A1=text"});
}

TEST_F(Collecting, EveryAreaOfASelectionIsTakenOnceInOrder) {
  FillBlock(3, 3);
  ASSERT_TRUE(CollectSelection("C1:C2,A1,B2:C3"));
  EXPECT_EQ(Units(), (Texts{L"C1=t3", L"C2=t6", L"A1=t1", L"B2=t5", L"B3=t8", L"C3=t9"}));
  engine.Faults().Hide("Range.Areas");
  ASSERT_TRUE(CollectSelection("B1:B2"));
  EXPECT_EQ(Units(), (Texts{L"B1=t2", L"B2=t5"}));
}

TEST_F(Collecting, ASelectionOfOneAreaIsNotTheWholeSheet) {
  FillBlock(2, 2);
  ASSERT_TRUE(CollectSelection("B2"));
  EXPECT_EQ(Units(), Texts{L"B2=t4"});
  EXPECT_EQ(result.cells, 1);
  EXPECT_EQ(result.sheetName, L"Sheet1");
}

TEST_F(Collecting, ProgressNamesTheFirstTheLastAndEverySixteenthRow) {
  SetText("A1", L"top");
  SetText("A40", L"end");
  ASSERT_TRUE(CollectSheet(L"", 7));
  const auto script = [](int row) {
    return L"if(window.onScanProgress)onScanProgress({runId:7,current:" + std::to_wstring(row) +
           L",total:40})";
  };
  EXPECT_EQ(panel.scripts, (Texts{script(1), script(16), script(32), script(40)}));
  panel.scripts.clear();
  ASSERT_TRUE(CollectSheet(L"", 0));
  EXPECT_TRUE(panel.scripts.empty());
}

TEST_F(Collecting, AClosingPaneEndsTheScan) {
  FillBlock(40, 2);
  panel.onScript = [this] {
    if (panel.scripts.size() == 2) pane.MarkClosing();
  };
  EXPECT_FALSE(CollectSheet(L"", 7));
  EXPECT_EQ(panel.scripts.size(), 2U);
  EXPECT_TRUE(result.units.empty());
}

}  // namespace
}  // namespace qv::test
