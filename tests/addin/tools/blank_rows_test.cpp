#include <functional>
#include <string>
#include <vector>

#include "addin/tools/tools_fixture.h"
#include "foundation/text.h"
#include "tools/delete_blank_rows.h"
#include "workbook/host_state.h"
#include "workbook/workbook_busy_table.h"

namespace qv::test {
namespace {

using devhost::memory::CellStyle;

constexpr const wchar_t* kUnreadable = L"无法解析表格内容。";
constexpr const wchar_t* kNotReady = L"Excel Application 未就绪，请重启 Excel 后重试。";

/// Column A with its row's number in rows 1 to 10 but for rows 3 and 7, which are empty in both columns.
class BlankRowRemoval : public ToolsTest {
 protected:
  void SetUp() override {
    ToolsTest::SetUp();
    for (int i = 1; i <= 10; ++i) {
      if (i != 3 && i != 7) engine.Set(L"Sheet1", "A" + std::to_string(i), static_cast<double>(i));
    }
    engine.Set(L"Sheet1", "B10", std::wstring(L"end"));
  }

  BlankRowResult Remove(bool answer = true) {
    return DeleteBlankRows(engine.Application(), target.Pinned(), preview, [&](std::int32_t found) {
      asked.push_back(found);
      if (inQuestion) inQuestion();
      return answer;
    });
  }
  void Select(const std::string& address) { engine.Select(L"Sheet1", address); }
  [[nodiscard]] std::string Selected() { return ToUtf8(Look(engine.WindowObject(book->windows.front()))); }
  [[nodiscard]] static std::wstring Look(const ComPtr<IDispatch>& window) {
    return GetStringProperty(GetDispProperty(window.Get(), L"Selection").Get(), L"Address");
  }
  void Put(const std::string& address, const wchar_t* property, const Variant& value) {
    const ComPtr<IDispatch> range = engine.RangeObject(L"Sheet1", address);
    EXPECT_EQ(PutDispProperty(GetDispProperty(range.Get(), L"Interior").Get(), property, &value), S_OK);
  }
  /// The styles of the first rows and columns.
  [[nodiscard]] std::vector<CellStyle> Styles() {
    std::vector<CellStyle> styles;
    for (long row = 1; row <= 12; ++row) {
      for (long col = 1; col <= 4; ++col)
        styles.push_back(engine.Sheet(L"Sheet1").StyleAt(row, col));
    }
    return styles;
  }
  [[nodiscard]] long ColorAt(long row, long col) {
    return engine.Sheet(L"Sheet1").StyleAt(row, col).fillColor;
  }
  [[nodiscard]] std::string ColumnA() {
    std::wstring numbers;
    for (long row = 1; row <= 10; ++row) {
      const auto* const cell = engine.Sheet(L"Sheet1").Find(row, 1);
      numbers += cell == nullptr || !cell->HasContent()
                     ? L"-"
                     : devhost::memory::DisplayText(cell->value, L"General");
      numbers += L' ';
    }
    return ToUtf8(numbers);
  }
  void FailAll(const std::string& member, unsigned on = devhost::memory::kOnAnyCall) {
    engine.Faults().Fail({.member = member, .on = on});
  }

  RowPreview preview;
  std::vector<std::int32_t> asked;
  std::function<void()> inQuestion;
};

constexpr const char* kWhole = "1 2 - 4 5 6 - 8 9 10 ";
constexpr const char* kWithoutBlank = "1 2 4 5 6 8 9 10 - - ";

TEST_F(BlankRowRemoval, DeletesFromTheBottomUp) {
  const TraceTail trace;
  std::vector<std::string> steps;
  engine.Faults().OnCall("Range.Delete", [&] { steps.push_back(ColumnA()); });
  const BlankRowResult result = Remove();
  EXPECT_EQ(result.deleted, 2);
  EXPECT_EQ(result.found, 2);
  EXPECT_EQ(result.failed, 0);
  EXPECT_FALSE(result.silent);
  EXPECT_EQ(result.error, L"");
  EXPECT_EQ(steps, (std::vector<std::string>{kWhole, "1 2 - 4 5 6 8 9 10 - "}));
  EXPECT_EQ(ColumnA(), kWithoutBlank);
  EXPECT_EQ(asked, std::vector<std::int32_t>{2});
  EXPECT_TRUE(trace.Has(L"Excel BlankRowCleaner used=10x2 r0=1 scope=[1,10] blank=2\r\n"));
  EXPECT_TRUE(trace.Has(L"Excel BlankRowCleaner done deleted=2 failed=0 sheet=Sheet1\r\n"));
}

TEST_F(BlankRowRemoval, TellsTheHostTheShiftAndKeepsItQuietMeanwhile) {
  std::vector<bool> switches;
  engine.Faults().OnCall("Range.Delete", [&] {
    switches.push_back(engine.Host().screenUpdating);
    switches.push_back(engine.Host().displayAlerts);
  });
  inQuestion = [&] { EXPECT_TRUE(engine.Host().screenUpdating && !engine.Host().displayAlerts); };
  EXPECT_EQ(Remove().deleted, 2);
  EXPECT_EQ(switches, std::vector<bool>(4, false));
  EXPECT_TRUE(engine.Host().screenUpdating && engine.Host().displayAlerts);
}

TEST_F(BlankRowRemoval, ASelectionOfSeveralRowsIsTheScope) {
  struct Case {
    const char* selection;
    const char* scope;
    const char* left;
  };
  const Case cases[] = {
      {"A5:B10", "[5,10] blank=1", "1 2 - 4 5 6 8 9 10 - "},
      {"C1:C3", "[1,3] blank=1", "1 2 4 5 6 8 9 10 - - "},
      {"B20:B40", "[20,8] blank=0", "1 2 4 5 6 8 9 10 - - "},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.selection);
    const TraceTail trace;
    Select(c.selection);
    static_cast<void>(Remove());
    EXPECT_NE(ToUtf8(trace.Text()).find(c.scope), std::string::npos) << ToUtf8(trace.Text());
    EXPECT_EQ(ColumnA(), c.left);
  }
}

TEST_F(BlankRowRemoval, TheFirstAreaOfASelectionCounts) {
  Select("A1,A5:A8");
  EXPECT_EQ(Remove(false).found, 2);
  Select("A5:A8,A1:A4");
  EXPECT_EQ(Remove(false).found, 1);
  engine.AddChart(L"Sheet1", L"Sales");
  engine.SelectChart(L"Sheet1", 0);
  EXPECT_EQ(Remove(false).found, 2);
}

TEST_F(BlankRowRemoval, KeepsWhatTheHostShowsAsEmptyButIsNot) {
  engine.SetFormula(L"Sheet1", "B3", L"=\"\"", std::wstring());
  engine.Set(L"Sheet1", "B7", std::wstring());
  // A row that has nothing but a format is blank.
  Put("A12:B12", L"Color", Variant(255));
  engine.Merge(L"Sheet1", "A4:A5");
  const BlankRowResult result = Remove();
  EXPECT_EQ(result.deleted, 4);
  EXPECT_EQ(ColumnA(), "1 2 - 4 6 8 9 10 - - ");
}

TEST_F(BlankRowRemoval, AnEmptySheetAndOneFilledCellHaveNoBlankRows) {
  const TraceTail trace;
  engine.ActivateSheet(L"Data");
  EXPECT_EQ(Remove().found, 0);
  engine.Set(L"Data", "C5", 1.0);
  const BlankRowResult result = Remove();
  EXPECT_EQ(result.found, 0);
  EXPECT_EQ(result.error, L"");
  EXPECT_TRUE(asked.empty());
  EXPECT_TRUE(trace.Has(L"Excel BlankRowCleaner used=1x1 r0=5 scope=[5,5] blank=0\r\n"));
}

TEST_F(BlankRowRemoval, ShowsTheRowsDuringTheQuestionOnly) {
  Select("A5");
  auto& view = book->windows.front()->ViewOf(*book->sheets.front());
  view.scrollRow = 4;
  const std::vector<CellStyle> before = Styles();
  const TraceTail trace;
  inQuestion = [&] {
    EXPECT_EQ(Selected(), "$3:$3,$7:$7");
    for (const long row : {3, 7}) {
      EXPECT_NE(ColorAt(row, 1), 0xFFFFFF);
      EXPECT_EQ(ColorAt(row, 1), ColorAt(row, 2));
    }
    EXPECT_EQ(ColorAt(4, 1), 0xFFFFFF);
    // As hosts do that bring what is selected into view.
    view.scrollRow = 1;
    view.scrollColumn = 9;
  };
  const BlankRowResult result = Remove(false);
  EXPECT_TRUE(result.silent);
  EXPECT_EQ(result.found, 2);
  EXPECT_EQ(ColumnA(), kWhole);
  EXPECT_TRUE(Styles() == before);
  EXPECT_EQ(Selected(), "$A$5");
  EXPECT_EQ(view.scrollRow, 4);
  EXPECT_EQ(view.scrollColumn, 1);
  EXPECT_TRUE(trace.Has(L"Excel BlankRowCleaner preview cancelled by user\r\n"));
  EXPECT_FALSE(trace.Has(L"done deleted"));
}

TEST_F(BlankRowRemoval, PutsEveryKindOfFillBack) {
  engine.Set(L"Sheet1", "D1", 1.0);
  engine.Merge(L"Sheet1", "C7:D7");
  Put("A3", L"Color", Variant(0x123456));
  Put("B3", L"ThemeColor", Variant(5));
  Put("B3", L"TintAndShade", Variant(-0.25));
  Put("C3", L"Color", Variant(0x00FF00));
  Put("C3", L"Pattern", Variant(-4124));
  Put("A7", L"Color", Variant(0xFFFFFF));
  const std::vector<CellStyle> before = Styles();
  std::vector<CellStyle> shown;
  inQuestion = [&] { shown = Styles(); };
  EXPECT_TRUE(Remove(false).silent);
  EXPECT_TRUE(Styles() == before);
  const auto changed = [&](std::size_t row, std::size_t col) {
    return shown[(row - 1) * 4 + col - 1] != before[(row - 1) * 4 + col - 1];
  };
  // A pattern and merged cells could not be put back, and stay as they are.
  EXPECT_TRUE(changed(3, 1) && changed(3, 2) && !changed(3, 3) && changed(3, 4));
  EXPECT_TRUE(changed(7, 1) && changed(7, 2) && !changed(7, 3) && !changed(7, 4));
}

TEST_F(BlankRowRemoval, ManyRowsAreShownWithFewCalls) {
  for (long row = 11; row <= 1200; row += 2)
    engine.Sheet(L"Sheet1").SetEntry(row, 1, {1.0, {}, false, {}});
  engine.ResetCounters();
  std::uint64_t calls = 0;
  inQuestion = [&] {
    calls = engine.Calls();
    EXPECT_EQ(book->windows.front()->ViewOf(*book->sheets.front()).selection.size(), 2U + 594U);
  };
  EXPECT_EQ(Remove(false).found, 596);
  EXPECT_LT(calls, 596U);
  EXPECT_TRUE(Styles() == std::vector<CellStyle>(48));
}

TEST_F(BlankRowRemoval, RowsThatGetContentDuringTheQuestionStay) {
  inQuestion = [&] { engine.Set(L"Sheet1", "B3", std::wstring(L"new")); };
  const BlankRowResult result = Remove();
  EXPECT_EQ(result.found, 1);
  EXPECT_EQ(result.deleted, 1);
  EXPECT_EQ(result.failed, 0);
  EXPECT_EQ(ColumnA(), "1 2 - 4 5 6 8 9 10 - ");
}

TEST_F(BlankRowRemoval, AFailedRowDoesNotStopTheOthers) {
  engine.Faults().Fail({.member = "Range.Delete", .times = 1});
  BlankRowResult result = Remove();
  EXPECT_EQ(result.deleted, 1);
  EXPECT_EQ(result.failed, 1);
  EXPECT_EQ(ColumnA(), "1 2 4 5 6 - 8 9 10 - ");
  const TraceTail trace;
  FailAll("Range.EntireRow");
  result = Remove();
  EXPECT_EQ(result.deleted, 0);
  EXPECT_EQ(result.failed, 1);
  EXPECT_TRUE(trace.Has(L"Excel BlankRowCleaner row=6 EntireRow missing\r\n"));
  EXPECT_TRUE(trace.Has(L"Excel BlankRowCleaner done deleted=0 failed=1 sheet=Sheet1\r\n"));
}

TEST_F(BlankRowRemoval, ARowIsFoundByItsAddressWhereRowsHaveNoItems) {
  engine.Faults().Hide("Range.Item");
  FailAll("Worksheet.Rows");
  EXPECT_EQ(Remove().deleted, 2);
  EXPECT_EQ(ColumnA(), kWithoutBlank);
}

TEST_F(BlankRowRemoval, AProtectedSheetFailsRowByRowAndKeepsItsFills) {
  const std::vector<CellStyle> before = Styles();
  engine.Sheet(L"Sheet1").isProtected = true;
  inQuestion = [&] { EXPECT_TRUE(Styles() == before); };
  const BlankRowResult result = Remove();
  EXPECT_EQ(result.found, 2);
  EXPECT_EQ(result.deleted, 0);
  EXPECT_EQ(result.failed, 2);
  EXPECT_EQ(ColumnA(), kWhole);
  EXPECT_TRUE(preview.Restore());
}

TEST_F(BlankRowRemoval, WhatCannotStartOrBeReadIsAnErrorAndChangesNothing) {
  EXPECT_EQ(DeleteBlankRows(nullptr, {}, preview, {}).error, kNotReady);
  for (const char* member : {"Window.ActiveSheet", "Window.Selection", "Worksheet.UsedRange", "Range.Rows",
                             "Range.Value2", "Range.Formula"}) {
    SCOPED_TRACE(member);
    FailAll(member, devhost::memory::kOnGet);
    EXPECT_EQ(Remove().error, kUnreadable);
    engine.Faults().Clear();
  }
  MakeBusy("*");
  EXPECT_EQ(Remove().error, kUnreadable);
  engine.Faults().Clear();
  EXPECT_TRUE(asked.empty());
  EXPECT_EQ(ColumnA(), kWhole);
  // The host that no longer answers after the question.
  inQuestion = [&] { FailAll("Range.Value2"); };
  EXPECT_EQ(Remove().error, kUnreadable);
  engine.Faults().Clear();
  EXPECT_EQ(ColumnA(), kWhole);
}

TEST_F(BlankRowRemoval, WithoutAWindowTheApplicationsSheetIsMeant) {
  const BlankRowResult result =
      DeleteBlankRows(engine.Application(), {}, preview, [](std::int32_t) { return true; });
  EXPECT_EQ(result.deleted, 2);
}

/// Whatever the host refuses, what was asked for is done as far as it can be, and nothing stays changed but
/// rows.
TEST_F(BlankRowRemoval, PutsBackWhatItChangedWhicheverCallFails) {
  const std::vector<CellStyle> before = Styles();
  for (const char* member : {"Window.ActiveCell", "Window.ScrollRow", "Window.ScrollColumn",
                             "Application.Union", "Application.DisplayAlerts", "Application.ScreenUpdating",
                             "Range.Select", "Range.MergeCells", "Range.Interior", "Interior.Pattern",
                             "Interior.Color", "Interior.ColorIndex", "Worksheet.Range", "Worksheet.Name"}) {
    for (const long after : {0L, 1L}) {
      SCOPED_TRACE(Concat(Widen(member), L' ', after).c_str());
      engine.Faults().Fail({.member = member, .times = 1, .after = after});
      EXPECT_TRUE(Remove(false).silent);
      engine.Faults().Clear();
      EXPECT_TRUE(preview.Restore());
      static_cast<void>(RestoreOwedHostState(engine.Application()));
      EXPECT_TRUE(Styles() == before);
      EXPECT_EQ(ColumnA(), kWhole);
      EXPECT_TRUE(engine.Host().screenUpdating && engine.Host().displayAlerts);
    }
  }
  EXPECT_EQ(asked.size(), 28U);
}

TEST_F(BlankRowRemoval, FillsThatAreRefusedStayOwedUntilTheHostTakesThem) {
  const std::vector<CellStyle> before = Styles();
  inQuestion = [&] { MakeBusy("Interior.*"); };
  EXPECT_TRUE(Remove(false).silent);
  EXPECT_FALSE(Styles() == before);
  EXPECT_FALSE(preview.Restore());
  engine.Faults().Clear();
  EXPECT_TRUE(preview.Restore());
  EXPECT_TRUE(Styles() == before);
}

TEST_F(BlankRowRemoval, NothingIsDeletedWhileFillsAreOwed) {
  const std::vector<CellStyle> before = Styles();
  inQuestion = [&] { MakeBusy("Interior.*"); };
  const BlankRowResult result = Remove();
  EXPECT_EQ(result.found, 2);
  EXPECT_EQ(result.failed, 2);
  EXPECT_EQ(result.deleted, 0);
  EXPECT_EQ(ColumnA(), kWhole);
  engine.Faults().Clear();
  EXPECT_TRUE(preview.Restore());
  EXPECT_TRUE(Styles() == before);
}

TEST_F(BlankRowRemoval, FillsOfCellsThatAreGoneAreOwedNoLonger) {
  inQuestion = [&] {
    engine.Faults().Fail(
        {.member = "Interior.*", .error = {DISP_E_EXCEPTION, static_cast<SCODE>(0x800A01A8)}});
  };
  EXPECT_TRUE(Remove(false).silent);
  EXPECT_TRUE(preview.Restore());
}

TEST_F(BlankRowRemoval, ASelectionThatCannotBeReadWidensNothing) {
  Select("A5:B10");
  for (const char* member : {"Window.Selection", "Range.Rows", "Range.Row", "Range.Count"}) {
    for (const long after : {0L, 1L}) {
      SCOPED_TRACE(Concat(Widen(member), L' ', after).c_str());
      engine.Faults().Fail({.member = member, .times = 1, .on = devhost::memory::kOnGet, .after = after});
      const BlankRowResult result = Remove(false);
      engine.Faults().Clear();
      EXPECT_TRUE(result.error == kUnreadable || result.found == 1) << result.found;
    }
  }
}

TEST_F(BlankRowRemoval, AUsedRangeThatChangedDuringTheQuestionCostsNoRow) {
  inQuestion = [&] { engine.Set(L"Sheet1", "A12", 1.0); };
  EXPECT_EQ(Remove().error, kUnreadable);
  EXPECT_EQ(ColumnA(), kWhole);
}

TEST_F(BlankRowRemoval, RowsThatAllGotContentAreNotFound) {
  inQuestion = [&] {
    engine.Set(L"Sheet1", "B3", 1.0);
    engine.Set(L"Sheet1", "B7", 1.0);
  };
  EXPECT_EQ(Remove().found, 0);
}

TEST_F(BlankRowRemoval, AWorkbookThatIsTranslatedKeepsItsRows) {
  const std::wstring key = target.WorkbookKey();
  ASSERT_TRUE(WorkbookBusyTable::TryClaimWorkbook(key, this));
  EXPECT_EQ(Remove().error, L"正在翻译，请稍候再试");
  WorkbookBusyTable::ReleaseWorkbook(key, this);
  inQuestion = [&] { EXPECT_TRUE(WorkbookBusyTable::TryClaimWorkbook(key, this)); };
  EXPECT_EQ(Remove().error, L"正在翻译，请稍候再试");
  WorkbookBusyTable::ReleaseWorkbook(key, this);
  EXPECT_EQ(ColumnA(), kWhole);
}

TEST_F(BlankRowRemoval, TheActiveCellAndARefusedSelectionComeBack) {
  Select("A2:B3");
  ASSERT_EQ(InvokeByName(engine.RangeObject(L"Sheet1", "B3").Get(), L"Activate", {}, nullptr), S_OK);
  inQuestion = [&] { MakeBusy("Range.Select"); };
  EXPECT_TRUE(Remove(false).silent);
  EXPECT_EQ(Selected(), "$3:$3");
  engine.Faults().Clear();
  EXPECT_TRUE(preview.Restore());
  EXPECT_EQ(Selected(), "$A$2:$B$3");
  const ComPtr<IDispatch> shown = engine.WindowObject(book->windows.front());
  EXPECT_EQ(GetStringProperty(GetDispProperty(shown.Get(), L"ActiveCell").Get(), L"Address"), L"$B$3");
}

TEST_F(BlankRowRemoval, AnExceptionInTheQuestionLeavesNothingBehind) {
  const std::vector<CellStyle> before = Styles();
  Select("A5");
  // The preview outlives the call.
  inQuestion = [] { throw std::bad_alloc(); };
  EXPECT_THROW(static_cast<void>(Remove()), std::bad_alloc);
  EXPECT_TRUE(Styles() == before);
  EXPECT_EQ(Selected(), "$A$5");
  EXPECT_TRUE(engine.Host().displayAlerts);
}

}  // namespace
}  // namespace qv::test
