#include "workbook/cell_access.h"

#include "addin/workbook/workbook_fixture.h"
#include "workbook/automation.h"

namespace qv::test {
namespace {

using devhost::memory::kGeneralFailure;
using devhost::memory::kHostBusy;
using devhost::memory::kOnGet;
using devhost::memory::kOnPut;

class CellAccess : public WorkbookTest {
 protected:
  void SetUp() override {
    WorkbookTest::SetUp();
    Pin();
  }
  CellWriteResult Put(std::wstring_view text, std::wstring_view sheet = L"Sheet1") {
    return PutCellValueDispatch(target, sheet, 3, 2, text);
  }
  nlohmann::json Value(const std::wstring& sheet = L"Sheet1") { return engine.Cell(sheet, "B3")["value"]; }
};

TEST_F(CellAccess, TextStaysTextWhateverItLooksLike) {
  for (const char* text : {"Hola",       "=Total", "=1+1",  "'tis", "-no",     "- item", "+plus",   "@home",
                           "a\nb",       "",       "12",    "-5",   "1/2",     "50%",    "1,234.5", "12:30",
                           "2024-01-02", "TRUE",   "false", "#N/A", "Room 12", "+1+2"}) {
    EXPECT_TRUE(Put(std::wstring(text, text + std::char_traits<char>::length(text))).Ok()) << text;
    const nlohmann::json cell = engine.Cell(L"Sheet1", "B3");
    EXPECT_EQ(cell["text"], text);
    EXPECT_FALSE(cell["value"].is_number() || cell["value"].is_boolean()) << text;
    EXPECT_EQ(cell["formula"], "") << text;
    EXPECT_EQ(GetStringProperty(engine.RangeObject(L"Sheet1", "B3").Get(), L"NumberFormat"), L"General")
        << text;
  }
}

TEST_F(CellAccess, AMisreadTextGivesTheCellItsOwnNumberFormatBack) {
  const ComPtr<IDispatch> cell = engine.RangeObject(L"Sheet1", "B3");
  const Variant format(L"0.00");
  ASSERT_EQ(PutDispProperty(cell.Get(), L"NumberFormat", &format), S_OK);
  EXPECT_TRUE(Put(L"1/2").Ok());
  EXPECT_EQ(Value(), "1/2");
  EXPECT_EQ(GetStringProperty(cell.Get(), L"NumberFormat"), L"0.00");
}

TEST_F(CellAccess, OnlyTextsThatMayBeMisreadAreReadBack) {
  EXPECT_TRUE(Put(L"Hola").Ok());
  EXPECT_TRUE(Put(L"line 1\nline 2").Ok());
  EXPECT_EQ(engine.Calls("Range.Value2"), 2U);
  EXPECT_EQ(engine.Calls("Range.NumberFormat"), 0U);
  EXPECT_EQ(engine.Calls("Range.HasFormula"), 0U);
  EXPECT_TRUE(Put(L"Room 12").Ok());
  EXPECT_EQ(engine.Calls("Range.Value2"), 4U);
}

TEST_F(CellAccess, ABusyHostDuringTheReadBackIsReported) {
  for (const char* member : {"Range.NumberFormat", "Range.HasFormula", "Range.Value2"}) {
    engine.Faults().Fail(
        {.member = member, .error = {DISP_E_EXCEPTION, kHostBusy}, .times = 1, .on = kOnGet});
    EXPECT_TRUE(Put(L"-5").IsBusy()) << member;
    engine.Faults().Clear();
  }
  engine.Faults().Fail({.member = "Range.NumberFormat", .error = {DISP_E_EXCEPTION, kHostBusy}, .times = 1});
  EXPECT_TRUE(Put(L"=Total").IsBusy());
  EXPECT_TRUE(Put(L"-5").Ok());
  EXPECT_EQ(Value(), "-5");
}

TEST_F(CellAccess, ACellFormattedAsTextNeedsNoApostrophe) {
  const ComPtr<IDispatch> cell = engine.RangeObject(L"Sheet1", "B3");
  const Variant format(L"@");
  ASSERT_EQ(PutDispProperty(cell.Get(), L"NumberFormat", &format), S_OK);
  EXPECT_TRUE(Put(L"=Total").Ok());
  EXPECT_EQ(Value(), "=Total");
}

TEST_F(CellAccess, ValueIsTriedWhereValue2IsRefused) {
  engine.Faults().Fail({.member = "Range.Value2", .on = kOnPut});
  const TraceTail trace;
  EXPECT_TRUE(Put(L"Hola").Ok());
  EXPECT_EQ(Value(), "Hola");
  EXPECT_TRUE(trace.Has(L"PutCellValueDispatch enter sheet=Sheet1 row=3 col=2 textLen=4\r\n"));
  EXPECT_TRUE(trace.Has(L"Excel PutCellValueDispatch ok sheet=Sheet1"));
}

TEST_F(CellAccess, ABusyHostIsReportedAtOnce) {
  engine.Faults().Fail(
      {.member = "Range.Value2", .error = {DISP_E_EXCEPTION, kHostBusy}, .times = 1, .on = kOnPut});
  const CellWriteResult result = Put(L"-Hola");
  EXPECT_TRUE(result.IsBusy());
  EXPECT_EQ(engine.Calls("Range.Value"), 0U);
  EXPECT_EQ(engine.Calls("Range.Value2"), 1U);
  EXPECT_TRUE(Put(L"Hola").Ok());
}

TEST_F(CellAccess, ABusyHostIsToldFromAMissingSheetOrCell) {
  for (const char* member : {"Workbook.*", "Worksheets.*", "Worksheet.Cells"}) {
    engine.Faults().Fail({.member = member, .error = {static_cast<HRESULT>(0x80010001), 0}});
    const CellTarget found = FindCell(target, L"Sheet1", 3, 2);
    EXPECT_EQ(found.cell, nullptr) << member;
    EXPECT_TRUE(found.status.IsBusy()) << member;
    EXPECT_EQ(found.status.hr, static_cast<HRESULT>(0x80010001)) << member;
    EXPECT_TRUE(PutCellText(found, L"Sheet1", 3, 2, L"Hola").IsBusy()) << member;
    engine.Faults().Clear();
  }
  engine.Faults().Fail({.member = "Window.ActiveSheet", .error = {DISP_E_EXCEPTION, kHostBusy}, .times = 1});
  EXPECT_EQ(FindCell(target, L"", 3, 2).status.exceptionCode, kHostBusy);
  const TraceTail trace;
  const CellWriteResult result = Put(L"Hola", L"Nowhere");
  EXPECT_FALSE(result.Ok());
  EXPECT_FALSE(result.IsBusy());
  EXPECT_TRUE(trace.Has(L"PutCellValueDispatch enter sheet=Nowhere row=3 col=2 textLen=4\r\n"));
  EXPECT_TRUE(trace.Has(L"PutCellValueDispatch: sheet lookup failed sheet=Nowhere pinnedBook=Book.xlsx\r\n"));
}

TEST_F(CellAccess, ManyTextsGoIntoACellThatIsFoundOnce) {
  const CellTarget found = FindCell(target, L"Sheet1", 3, 2);
  ASSERT_TRUE(found.status.Ok());
  EXPECT_EQ(GetStringProperty(found.sheet.Get(), L"Name"), L"Sheet1");
  const TraceTail trace;
  EXPECT_TRUE(PutCellText(found, L"Sheet1", 3, 2, L"Uno").Ok());
  EXPECT_TRUE(PutCellText(found, L"Sheet1", 3, 2, L"Dos").Ok());
  EXPECT_EQ(Value(), "Dos");
  EXPECT_EQ(engine.Calls("Worksheet.Cells"), 1U);
  EXPECT_TRUE(trace.Has(L"Excel PutCellValueDispatch ok sheet=Sheet1 row=3 col=2\r\n"));
}

TEST_F(CellAccess, AnEmptySheetNameMeansTheActiveSheet) {
  engine.ActivateSheet(L"Data");
  EXPECT_TRUE(Put(L"Hola", L"").Ok());
  EXPECT_EQ(Value(L"Data"), "Hola");
}

TEST_F(CellAccess, AProtectedSheetRefusesWithTheHostsCode) {
  engine.Protect(L"Sheet1", true);
  const TraceTail trace;
  const CellWriteResult result = Put(L"Hola");
  EXPECT_EQ(result.hr, DISP_E_EXCEPTION);
  EXPECT_EQ(result.exceptionCode, kGeneralFailure);
  EXPECT_FALSE(result.IsBusy());
  EXPECT_TRUE(trace.Has(L"Excel PutCellValueDispatch failed sheet=Sheet1 row=3 col=2 hr=0x80020009\r\n"));
}

TEST_F(CellAccess, AMissingCellIsLoggedWithItsPosition) {
  engine.Faults().Fail({.member = "Worksheet.Cells"});
  const TraceTail trace;
  EXPECT_FALSE(Put(L"Hola").Ok());
  EXPECT_EQ(GetCellDispatch(engine.SheetObject(L"Sheet1").Get(), 4, 5), nullptr);
  EXPECT_TRUE(trace.Has(L"PutCellValueDispatch: cell get failed row=3 col=2 hr=0x80020009 vt=0\r\n"));
  EXPECT_TRUE(trace.Has(L"GetCellDispatch failed row=4 col=5 hr=0x80020009 vt=0\r\n"));
  engine.Faults().Clear();
  engine.Faults().Hide("Worksheet.Cells");
  EXPECT_FALSE(Put(L"Hola").Ok());
  EXPECT_TRUE(trace.Has(L"PutCellValueDispatch: Cells get failed\r\n"));
}

TEST_F(CellAccess, ProtectionIsReadFromSheetWorkbookAndCell) {
  const ComPtr<IDispatch> sheet = engine.SheetObject(L"Sheet1");
  EXPECT_FALSE(IsSheetProtected(sheet.Get()));
  EXPECT_FALSE(IsWorkbookReadOnly(engine.Application()));
  engine.Protect(L"Sheet1", true);
  book->readOnly = true;
  const TraceTail trace;
  EXPECT_TRUE(IsSheetProtected(sheet.Get()));
  EXPECT_TRUE(IsWorkbookReadOnly(engine.Application()));
  EXPECT_TRUE(IsCellLocked(sheet.Get(), 3, 2));
  EXPECT_TRUE(trace.Has(L"IsCellLocked sheet=Sheet1 row=3 col=2 locked=1\r\n"));
  engine.Faults().Hide("Worksheet.ProtectContents");
  engine.Faults().Fail({.member = "Range.Locked"});
  EXPECT_FALSE(IsSheetProtected(sheet.Get()));
  EXPECT_FALSE(IsCellLocked(sheet.Get(), 3, 2));
  EXPECT_TRUE(trace.Has(L"IsCellLocked: get Locked failed\r\n"));
}

}  // namespace
}  // namespace qv::test
