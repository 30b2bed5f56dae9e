#include "late_bound.h"

namespace qv::devhost {
namespace {

using memory::Area;
using memory::kGeneralFailure;

class StructureTest : public MemoryEngineTest {
 protected:
  [[nodiscard]] Answer Whole(const char* address, const wchar_t* lines, const wchar_t* method) {
    return CallMethod(Get(Range(address), lines).value.Object(), method);
  }
  [[nodiscard]] std::vector<Area> Merges() { return engine.Sheet().Merges(); }
};

TEST_F(StructureTest, WhatBelongsToRowsMovesWithThem) {
  engine.Set(L"", "B5", L"text");
  engine.SetFormula(L"", "B6", L"=1", 1.0);
  engine.Merge(L"", "C4:D6");
  engine.Sheet().SetRowHeight(5, 30);
  engine.Sheet().HideRow(6, true);
  const auto chart = engine.AddChart(L"", L"t");
  chart->top = 100;

  EXPECT_EQ(Whole("A2:A3", L"EntireRow", L"Insert").hr, S_OK);
  EXPECT_NE(engine.Sheet().Find(7, 2), nullptr);
  EXPECT_TRUE(engine.Sheet().HasFormula(8, 2));
  EXPECT_FALSE(engine.Sheet().HasFormula(6, 2));
  EXPECT_EQ(Merges(), std::vector<Area>({{6, 3, 8, 4}}));
  EXPECT_EQ(engine.Sheet().RowHeight(7), 30);
  EXPECT_TRUE(engine.Sheet().IsRowHidden(8));
  EXPECT_EQ(chart->top, 130);

  EXPECT_EQ(Whole("A2:A3", L"EntireRow", L"Delete").hr, S_OK);
  EXPECT_EQ(Merges(), std::vector<Area>({{4, 3, 6, 4}}));
  EXPECT_EQ(engine.Sheet().RowHeight(5), 30);
  EXPECT_EQ(chart->top, 100);
}

TEST_F(StructureTest, AMergeLosesTheLinesThatGoAndGrowsAroundThoseThatCome) {
  const struct {
    const char* place;
    const wchar_t* method;
    std::vector<Area> left;
  } cases[] = {
      {"C1", L"Insert", {{2, 2, 4, 5}}},    {"B1", L"Insert", {{2, 3, 4, 5}}},
      {"C1", L"Delete", {{2, 2, 4, 3}}},    {"A1:B1", L"Delete", {{2, 1, 4, 2}}},
      {"C1:G1", L"Delete", {{2, 2, 4, 2}}}, {"A1:D1", L"Delete", {}},
      {"E1:F1", L"Delete", {{2, 2, 4, 4}}},
  };
  for (const auto& [place, method, left] : cases) {
    engine.Sheet().UnMerge(memory::kWholeSheet);
    engine.Merge(L"", "B2:D4");
    EXPECT_EQ(Whole(place, L"EntireColumn", method).hr, S_OK);
    EXPECT_EQ(Merges(), left) << place;
  }
}

TEST_F(StructureTest, OnlyWholeLinesMoveAndNothingOfAProtectedSheet) {
  EXPECT_EQ(CallMethod(Range("A1:B2"), L"Delete").exception, kGeneralFailure);
  engine.Sheet().isProtected = true;
  EXPECT_EQ(Whole("A1", L"EntireRow", L"Delete").exception, kGeneralFailure);
  EXPECT_EQ(Whole("A1", L"EntireRow", L"Insert").exception, kGeneralFailure);
}

TEST_F(StructureTest, DuplicatesAreRemovedFromListsThatCountFromZeroOnly) {
  for (const ULONG low : {0UL, 1UL}) {
    engine.Set(L"", "A1", L"x");
    engine.Set(L"", "A2", L"X");
    SAFEARRAYBOUND bound{1, static_cast<LONG>(low)};
    Variant columns;
    columns.Put()->parray = SafeArrayCreate(VT_VARIANT, 1, &bound);
    columns.Get().vt = VT_ARRAY | VT_VARIANT;
    LONG index = static_cast<LONG>(low);
    Variant first(1);
    EXPECT_HRESULT_SUCCEEDED(SafeArrayPutElement(columns->parray, &index, &first.Get()));
    const Answer answer = CallMethod(Range("A1:A2"), L"RemoveDuplicates", {columns, Variant(2)});
    EXPECT_EQ(SUCCEEDED(answer.hr), low == 0);
    EXPECT_EQ(engine.Sheet().Find(2, 1) == nullptr, low == 0);
  }
}

TEST_F(StructureTest, AProtectedStructureKeepsItsSheets) {
  const ComPtr<IDispatch> book = Get(Application(), L"ActiveWorkbook").value.Object();
  EXPECT_EQ(CallMethod(book, L"Protect", {Variant(L""), Variant(true)}).hr, S_OK);
  EXPECT_TRUE(Get(book, L"ProtectStructure").value.IsTrue());
  const ComPtr<IDispatch> sheets = Get(book, L"Worksheets").value.Object();
  EXPECT_EQ(CallMethod(sheets, L"Add").exception, kGeneralFailure);
  EXPECT_EQ(Put(engine.SheetObject(), L"Name", Variant(L"New")).exception, kGeneralFailure);
  EXPECT_EQ(CallMethod(book, L"Unprotect").hr, S_OK);
  EXPECT_EQ(CallMethod(sheets, L"Add").hr, S_OK);
}

}  // namespace
}  // namespace qv::devhost
