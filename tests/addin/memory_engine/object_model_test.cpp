#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "engines/memory/range_object.h"
#include "late_bound.h"

namespace qv::devhost {
namespace {

using memory::kGeneralFailure;

/// A 1-based matrix of one row of texts.
Variant RowOf(const std::vector<const wchar_t*>& texts) {
  SAFEARRAYBOUND bounds[2] = {{1, 1}, {static_cast<ULONG>(texts.size()), 1}};
  Variant matrix;
  matrix.Put()->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  matrix.Get().vt = VT_ARRAY | VT_VARIANT;
  for (size_t i = 0; i < texts.size(); ++i) {
    LONG index[2] = {1, static_cast<LONG>(i) + 1};
    Variant text(texts[i]);
    EXPECT_HRESULT_SUCCEEDED(SafeArrayPutElement(matrix->parray, index, &text.Get()));
  }
  return matrix;
}

Variant ElementAt(const Variant& matrix, LONG row, LONG col) {
  LONG index[2] = {row, col};
  Variant element;
  EXPECT_HRESULT_SUCCEEDED(SafeArrayGetElement(matrix->parray, index, element.Put()));
  return element;
}

TEST_F(MemoryEngineTest, ReadsABlockAsAOneBasedMatrixAndACellAsAValue) {
  engine.Set(L"", "B2", L"text");
  engine.Set(L"", "C2", 2.5);
  engine.Set(L"", "B3", true);
  engine.Set(L"", "C3", memory::ErrorValue{2042});
  const Variant block = Get(Range("A1:C3"), L"Value2").value;
  ASSERT_EQ(block.Type(), VT_ARRAY | VT_VARIANT);
  LONG lower = 0;
  LONG upper = 0;
  for (const UINT dimension : {1u, 2u}) {
    ASSERT_HRESULT_SUCCEEDED(SafeArrayGetLBound(block->parray, dimension, &lower));
    ASSERT_HRESULT_SUCCEEDED(SafeArrayGetUBound(block->parray, dimension, &upper));
    EXPECT_EQ(lower, 1);
    EXPECT_EQ(upper, 3);
  }
  EXPECT_EQ(ElementAt(block, 1, 1).Type(), VT_EMPTY);
  EXPECT_EQ(ElementAt(block, 2, 2).Text(), L"text");
  EXPECT_EQ(ElementAt(block, 2, 3)->dblVal, 2.5);
  EXPECT_TRUE(ElementAt(block, 3, 2).IsTrue());
  EXPECT_EQ(ElementAt(block, 3, 3).Type(), VT_ERROR);
  EXPECT_EQ(ElementAt(block, 3, 3)->scode, static_cast<SCODE>(0x800A07FA));
  EXPECT_EQ(Get(Range("B2"), L"Value2").value.Text(), L"text");
  EXPECT_EQ(Get(Range("A1"), L"Value2").value.Type(), VT_EMPTY);
}

TEST_F(MemoryEngineTest, TakesAMatrixOrOneValueForABlock) {
  ASSERT_HRESULT_SUCCEEDED(Put(Range("A1:C1"), L"Value2", RowOf({L"one", L"=1", L"3"})).hr);
  EXPECT_EQ(Get(Range("A1"), L"Value2").value.Text(), L"one");
  EXPECT_EQ(Get(Range("B1"), L"Formula").value.Text(), L"=1");
  EXPECT_EQ(Get(Range("C1"), L"Value2").value.Type(), VT_R8);
  ASSERT_HRESULT_SUCCEEDED(Put(Range("A2:B3"), L"Value2", Variant(L"same")).hr);
  EXPECT_EQ(Get(Range("B3"), L"Value2").value.Text(), L"same");
  // One refused element refuses all.
  const Answer refused = Put(Range("A5:B5"), L"Value2", RowOf({L"good", L"=not good"}));
  EXPECT_EQ(refused.hr, DISP_E_EXCEPTION);
  EXPECT_EQ(refused.exception, kGeneralFailure);
  EXPECT_EQ(Get(Range("A5"), L"Value2").value.Type(), VT_EMPTY);
}

TEST_F(MemoryEngineTest, AnswersOneValueOrNullForManyCells) {
  engine.SetFormula(L"", "A1", L"=B1", L"x");
  engine.Merge(L"", "C1:D2");
  ASSERT_HRESULT_SUCCEEDED(Put(Range("A1"), L"WrapText", Variant(true)).hr);
  struct Case {
    const char* address;
    const wchar_t* member;
    VARTYPE type;
    bool truth;
  };
  const Case cases[] = {
      {"A1", L"HasFormula", VT_BOOL, true},     {"A2:B3", L"HasFormula", VT_BOOL, false},
      {"A1:A2", L"HasFormula", VT_NULL, false}, {"C1:D2", L"MergeCells", VT_BOOL, true},
      {"A1:B2", L"MergeCells", VT_BOOL, false}, {"B1:C1", L"MergeCells", VT_NULL, false},
      {"A1", L"WrapText", VT_BOOL, true},       {"A1:A2", L"WrapText", VT_NULL, false},
      {"A1:D9", L"Locked", VT_BOOL, true},
  };
  for (const Case& each : cases) {
    const Variant value = Get(Range(each.address), each.member).value;
    EXPECT_EQ(value.Type(), each.type) << each.address;
    EXPECT_EQ(value.IsTrue(), each.truth) << each.address;
  }
  const ComPtr<IDispatch> area = Get(Range("D2"), L"MergeArea").value.Object();
  EXPECT_EQ(Get(area, L"Address").value.Text(), L"$C$1:$D$2");
}

TEST_F(MemoryEngineTest, StylesPartOfATextAndAnswersNullForTheMixture) {
  engine.Set(L"", "A1", L"Hello\nHola");
  const ComPtr<IDispatch> part = Get(Range("A1"), L"Characters", {Variant(7), Variant(4)}).value.Object();
  EXPECT_EQ(Get(part, L"Text").value.Text(), L"Hola");
  const ComPtr<IDispatch> font = Get(part, L"Font").value.Object();
  ASSERT_HRESULT_SUCCEEDED(Put(font, L"Color", Variant(9203290)).hr);
  ASSERT_HRESULT_SUCCEEDED(Put(font, L"Bold", Variant(true)).hr);
  EXPECT_EQ(Get(font, L"Color").value->dblVal, 9203290.0);

  const ComPtr<IDispatch> whole = Follow(Range("A1"), {L"Font"});
  EXPECT_EQ(Get(whole, L"Bold").value.Type(), VT_NULL);
  EXPECT_EQ(Get(whole, L"Size").value->dblVal, 11.0);
  const nlohmann::json runs = engine.Cell(L"", "A1").at("runs");
  ASSERT_EQ(runs.size(), 2u);
  EXPECT_EQ(runs[0].at("text"), "Hello\n");
  EXPECT_EQ(runs[1].at("start"), 7);
  EXPECT_EQ(runs[1].at("color"), 9203290);

  // Setting it for the cell makes it one font again, and so does a new value.
  ASSERT_HRESULT_SUCCEEDED(Put(whole, L"Bold", Variant(false)).hr);
  EXPECT_EQ(Get(whole, L"Bold").value.Type(), VT_BOOL);
  EXPECT_EQ(Get(whole, L"Color").value.Type(), VT_NULL);
  ASSERT_HRESULT_SUCCEEDED(Put(Range("A1"), L"Value2", Variant(L"new")).hr);
  EXPECT_EQ(Get(whole, L"Color").value->dblVal, 0.0);
}

TEST_F(MemoryEngineTest, KeepsLockedCellsOfAProtectedSheet) {
  engine.Set(L"", "A1", L"kept");
  ASSERT_HRESULT_SUCCEEDED(Put(Range("B1"), L"Locked", Variant(false)).hr);
  engine.Protect(L"", true);
  const Answer refused = Put(Range("A1"), L"Value2", Variant(L"new"));
  EXPECT_EQ(refused.hr, DISP_E_EXCEPTION);
  EXPECT_EQ(refused.exception, kGeneralFailure);
  EXPECT_EQ(Put(Range("A1:B1"), L"Value2", Variant(L"new")).exception, kGeneralFailure);
  EXPECT_HRESULT_SUCCEEDED(Put(Range("B1"), L"Value2", Variant(L"new")).hr);
  EXPECT_EQ(Put(Range("B1"), L"WrapText", Variant(true)).exception, kGeneralFailure);
  EXPECT_EQ(Put(Follow(Range("B1"), {L"EntireRow"}), L"RowHeight", Variant(30)).exception, kGeneralFailure);
  EXPECT_EQ(Get(Range("A1"), L"Value2").value.Text(), L"kept");
}

TEST_F(MemoryEngineTest, FitsRowsToTheLinesOfWrappedCells) {
  const ComPtr<IDispatch> row = Follow(Range("A2"), {L"EntireRow"});
  engine.Set(L"", "A2", L"one\ntwo\nthree");
  ASSERT_HRESULT_SUCCEEDED(CallMethod(row, L"AutoFit").hr);
  EXPECT_EQ(Get(row, L"RowHeight").value->dblVal, 15.0);
  ASSERT_HRESULT_SUCCEEDED(Put(Range("A2"), L"WrapText", Variant(true)).hr);
  ASSERT_HRESULT_SUCCEEDED(CallMethod(row, L"AutoFit").hr);
  EXPECT_EQ(Get(row, L"RowHeight").value->dblVal, 45.0);
  EXPECT_HRESULT_SUCCEEDED(Put(row, L"RowHeight", Variant(409.0)).hr);
  EXPECT_EQ(Put(row, L"RowHeight", Variant(409.5)).exception, kGeneralFailure);
  EXPECT_EQ(CallMethod(Range("A2"), L"AutoFit").exception, kGeneralFailure);
  EXPECT_EQ(Get(Range("A1:A2"), L"RowHeight").value.Type(), VT_NULL);
}

TEST_F(MemoryEngineTest, CountsAndNamesPlaces) {
  const ComPtr<IDispatch> block = Range("B2:D5");
  EXPECT_EQ(Get(Follow(block, {L"Rows"}), L"Count").value->lVal, 4);
  EXPECT_EQ(Get(Follow(block, {L"Columns"}), L"Count").value->lVal, 3);
  EXPECT_EQ(Get(block, L"Row").value->lVal, 2);
  EXPECT_EQ(Get(block, L"Column").value->lVal, 2);
  EXPECT_EQ(Get(Get(block, L"Item", {Variant(2), Variant(3)}).value.Object(), L"Address").value.Text(),
            L"$D$3");
  EXPECT_EQ(Get(Get(block, L"Cells", {Variant(4)}).value.Object(), L"Address").value.Text(), L"$B$3");
  EXPECT_EQ(Get(Follow(block, {L"EntireRow"}), L"Address").value.Text(), L"$2:$5");
  EXPECT_EQ(Get(Follow(Range("A1:B2,D4"), {L"Areas"}), L"Count").value->lVal, 2);
  const ComPtr<IDispatch> sheet = engine.SheetObject();
  EXPECT_EQ(Get(sheet, L"Cells", {Variant(0), Variant(1)}).exception, kGeneralFailure);
  const Variant corner(Range("C3").Get());
  const ComPtr<IDispatch> joined = Get(sheet, L"Range", {Variant(L"A1"), corner}).value.Object();
  EXPECT_EQ(Get(joined, L"Address").value.Text(), L"$A$1:$C$3");
  engine.Set(L"", "C7", 1.0);
  EXPECT_EQ(Get(Follow(sheet, {L"UsedRange"}), L"Address").value.Text(), L"$C$7");
}

TEST_F(MemoryEngineTest, JoinsRangesOfOneSheetAndTakesNoLongerAddressThanTheHost) {
  engine.AddWorkbook(L"Other.xlsx");
  const ComPtr<IDispatch> application = engine.Application();
  const Variant rows(engine.RangeObject(L"", "3:3,7:8").Get());
  const Variant corner(engine.RangeObject(L"", "B10").Get());
  const Answer joined = CallMethod(application, L"Union", {rows, corner});
  EXPECT_EQ(Get(joined.value.Object(), L"Address").value.Text(), L"$3:$3,$7:$8,$B$10");
  engine.AddWorkbook(L"Third.xlsx");
  const Variant foreign(engine.RangeObject(L"", "A1").Get());
  EXPECT_EQ(CallMethod(application, L"Union", {rows, foreign}).exception, kGeneralFailure);

  std::wstring longest = L"A1";
  while (longest.size() < 251)
    longest += L",A1";
  const ComPtr<IDispatch> sheet = engine.SheetObject();
  EXPECT_EQ(Get(sheet, L"Range", {Variant(longest + L",A10")}).hr, S_OK) << longest.size();
  EXPECT_EQ(Get(sheet, L"Range", {Variant(longest + L",A100")}).exception, kGeneralFailure);
}

TEST_F(MemoryEngineTest, KeepsAFillsPatternAndTellsAThemesColourFromAnother) {
  const ComPtr<IDispatch> interior = Follow(Range("A1:B1"), {L"Interior"});
  EXPECT_EQ(Put(interior, L"ThemeColor", Variant(5)).hr, S_OK);
  EXPECT_EQ(Put(interior, L"TintAndShade", Variant(0.5)).hr, S_OK);
  EXPECT_EQ(Get(interior, L"ThemeColor").value->lVal, 5);
  EXPECT_EQ(Put(Follow(Range("B1"), {L"Interior"}), L"Color", Variant(255)).hr, S_OK);
  EXPECT_EQ(Get(interior, L"ThemeColor").value.Type(), VT_NULL);
  EXPECT_EQ(Get(Follow(Range("B1"), {L"Interior"}), L"ThemeColor").exception, kGeneralFailure);
  EXPECT_EQ(Put(interior, L"Pattern", Variant(-4124)).hr, S_OK);
  EXPECT_EQ(Put(interior, L"Color", Variant(255)).hr, S_OK);
  EXPECT_EQ(Get(interior, L"Pattern").value->lVal, -4124);
}

TEST_F(MemoryEngineTest, AnswersTheTypedRangeWithPublishedNumbers) {
  engine.Set(L"", "A1", L"text");
  ComPtr<IDispatch> typed;
  ASSERT_HRESULT_SUCCEEDED(
      Range("A1")->QueryInterface(memory::kRangeIid, reinterpret_cast<void**>(typed.GetAddressOf())));
  DISPPARAMS none{};
  Variant value;
  ASSERT_HRESULT_SUCCEEDED(
      typed->Invoke(1388, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, value.Put(), nullptr, nullptr));
  EXPECT_EQ(value.Text(), L"text");
}

TEST_F(MemoryEngineTest, GivesChartsThroughAMethodAndTheirTitles) {
  engine.AddChart(L"", L"Sales");
  engine.AddChart(L"", L"");
  const ComPtr<IDispatch> sheet = engine.SheetObject();
  EXPECT_EQ(Get(sheet, L"ChartObjects").hr, DISP_E_MEMBERNOTFOUND);
  const ComPtr<IDispatch> charts = CallMethod(sheet, L"ChartObjects").value.Object();
  EXPECT_EQ(Get(charts, L"Count").value->lVal, 2);
  const ComPtr<IDispatch> first =
      Follow(CallMethod(charts, L"Item", {Variant(1)}).value.Object(), {L"Chart"});
  EXPECT_HRESULT_SUCCEEDED(Put(Follow(first, {L"ChartTitle"}), L"Text", Variant(L"Ventas")).hr);
  EXPECT_EQ(engine.Sheet().charts[0]->title, L"Ventas");
  const ComPtr<IDispatch> second =
      Follow(CallMethod(sheet, L"ChartObjects", {Variant(2)}).value.Object(), {L"Chart"});
  EXPECT_FALSE(Get(second, L"HasTitle").value.IsTrue());
  EXPECT_EQ(Get(second, L"ChartTitle").exception, kGeneralFailure);
}

TEST_F(MemoryEngineTest, KnowsWindowsByCaptionAndParentOnly) {
  const auto second = engine.AddWindow(workbook);
  const ComPtr<IDispatch> windows = Follow(Application(), {L"Windows"});
  EXPECT_EQ(Get(windows, L"Count").value->lVal, 2);
  const ComPtr<IDispatch> active = Follow(Application(), {L"ActiveWindow"});
  EXPECT_EQ(Get(active, L"Caption").value.Text(), L"Book.xlsx:2");
  EXPECT_EQ(Get(active, L"Workbook").hr, DISP_E_UNKNOWNNAME);
  EXPECT_EQ(Get(Follow(active, {L"Parent"}), L"FullName").value.Text(), L"C:\\Books\\Book.xlsx");
  engine.CloseWindow(second);
  EXPECT_EQ(Get(active, L"Caption").hr, RPC_E_DISCONNECTED);
  EXPECT_EQ(Get(Follow(Application(), {L"ActiveWindow"}), L"Caption").value.Text(), L"Book.xlsx");
}

TEST_F(MemoryEngineTest, AddsRenamesAndDeletesSheets) {
  const ComPtr<IDispatch> sheets = Follow(Application(), {L"ActiveWorkbook", L"Worksheets"});
  const Variant after(engine.SheetObject(L"Data").Get());
  const ComPtr<IDispatch> added = CallMethod(sheets, L"Add", {Variant::Missing(), after}).value.Object();
  EXPECT_EQ(Get(added, L"Index").value->lVal, 2);
  EXPECT_EQ(Put(added, L"Name", Variant(L"data")).exception, kGeneralFailure);
  EXPECT_EQ(Put(added, L"Name", Variant(L"a/b")).exception, kGeneralFailure);
  EXPECT_HRESULT_SUCCEEDED(Put(added, L"Name", Variant(L"More")).hr);
  // With alerts on the host asks, and nobody answers.
  EXPECT_FALSE(CallMethod(added, L"Delete").value.IsTrue());
  ASSERT_HRESULT_SUCCEEDED(Put(Application(), L"DisplayAlerts", Variant::Short(0)).hr);
  EXPECT_TRUE(CallMethod(added, L"Delete").value.IsTrue());
  EXPECT_EQ(Get(added, L"Name").hr, RPC_E_DISCONNECTED);
  EXPECT_EQ(CallMethod(engine.SheetObject(L"Data"), L"Delete").exception, kGeneralFailure);
}

TEST_F(MemoryEngineTest, SavesWhatItOpens) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path();
  const std::filesystem::path opened = folder / L"qv_memory_engine_in.json";
  const std::filesystem::path saved = folder / L"qv_memory_engine_out.json";
  const nlohmann::json description = nlohmann::json::parse(R"({"active":"One","readOnly":true,"sheets":[
    {"name":"One","frozenRows":1,"merges":["A1:B2"],"rowHeights":{"3":30.5},"cells":{"A1":"Title","A3":{"f":"=A4","v":2.0},
     "A4":{"v":"Hello","wrap":true,"runs":[{"start":1,"length":2},{"start":3,"length":3,"bold":true}]},"A5":{"e":2042}},
     "charts":[{"name":"Chart 1","title":"T","type":51,"left":0.0,"top":0.0,"width":360.0,"height":216.0}]},
    {"name":"Two","hidden":true,"protected":true,"cells":{}}]})");
  std::ofstream(opened) << description.dump();
  engine.Open(opened.wstring());
  const ComPtr<IDispatch> window = Follow(Application(), {L"ActiveWindow"});
  EXPECT_TRUE(Get(window, L"FreezePanes").value.IsTrue());
  EXPECT_EQ(Get(window, L"SplitRow").value->lVal, 1);
  EXPECT_THROW(engine.Save(opened.wstring()), std::runtime_error);
  engine.Save(saved.wstring());
  EXPECT_EQ(nlohmann::json::parse(std::ifstream(saved)), description);
  std::filesystem::remove(opened);
  std::filesystem::remove(saved);
}

TEST_F(MemoryEngineTest, CountsLiveObjectsCallsAndForeignThreads) {
  {
    const ComPtr<IDispatch> cell = Range("A1");
    EXPECT_EQ(engine.LiveObjects(), 1);
    static_cast<void>(Get(cell, L"Value2"));
    static_cast<void>(Get(cell, L"value2"));
    EXPECT_EQ(engine.Calls("Range.Value2"), 2u);
    std::thread([&] { EXPECT_EQ(Get(cell, L"Value2").hr, RPC_E_WRONG_THREAD); }).join();
    EXPECT_EQ(engine.WrongThreadCalls(), 1);
  }
  EXPECT_EQ(engine.LiveObjects(), 0);
}

TEST_F(MemoryEngineTest, ReadsManyCellsInLittleMoreThanTheArrayCosts) {
  constexpr long kRows = 20000;
  constexpr long kColumns = 10;
  for (long row = 1; row <= kRows; ++row) {
    for (long col = 1; col <= kColumns; ++col)
      engine.Sheet().SetEntry(row, col, {L"text of a cell", L"", false, L""});
  }
  const ComPtr<IDispatch> all = engine.RangeObject(L"", "A1:J20000");
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  const Variant matrix = Get(all, L"Value2").value;
  const auto read = Clock::now();
  std::vector<Variant> bare;
  bare.reserve(kRows * kColumns);
  for (long i = 0; i < kRows * kColumns; ++i)
    bare.emplace_back(L"text of a cell");
  const auto filled = Clock::now();
  EXPECT_EQ(ElementAt(matrix, kRows, kColumns).Text(), L"text of a cell");
  // Generous, for a busy machine: what it must catch is growth beyond linear.
  EXPECT_LT((read - start).count(), (filled - read).count() * 20);
}

TEST_F(MemoryEngineTest, InsertsRowsAndMovesWhatIsBelow) {
  memory::Sheet& sheet = engine.Sheet();
  engine.Set(L"", "A1", L"above");
  engine.Set(L"", "A3", L"at");
  engine.SetFormula(L"", "B4", L"=A1", 1.0);
  engine.Merge(L"", "C2:D3");
  engine.Merge(L"", "C5:D6");
  sheet.SetRowHeight(3, 30);
  sheet.HideRow(4, true);
  const auto chart = engine.AddChart(L"", L"below");
  chart->top = sheet.HeightOf({1, 1, 2, 1});
  engine.InsertRows(L"", 3, 2);
  EXPECT_EQ(Get(Range("A1"), L"Value2").value.Text(), L"above");
  EXPECT_EQ(Get(Range("A3"), L"Value2").value.Type(), VT_EMPTY);
  EXPECT_EQ(Get(Range("A5"), L"Value2").value.Text(), L"at");
  EXPECT_TRUE(sheet.HasFormula(6, 2));
  EXPECT_FALSE(sheet.HasFormula(4, 2));
  EXPECT_EQ(sheet.MergeAt(3, 3), (memory::Area{2, 3, 5, 4}));
  EXPECT_EQ(sheet.MergeAt(7, 3), (memory::Area{7, 3, 8, 4}));
  EXPECT_EQ(sheet.RowHeight(3), memory::Sheet::kDefaultRowHeight);
  EXPECT_EQ(sheet.RowHeight(5), 30);
  EXPECT_TRUE(sheet.IsRowHidden(6));
  EXPECT_EQ(chart->top, 4 * memory::Sheet::kDefaultRowHeight);

  EXPECT_THROW(engine.InsertRows(L"", 1048576, 2), std::runtime_error);
  engine.Set(L"", "A1048576", L"last");
  EXPECT_THROW(engine.InsertRows(L"", 3, 1), std::runtime_error);
  engine.Protect(L"", true);
  EXPECT_THROW(engine.InsertRows(L"", 1, 1), std::runtime_error);
}

}  // namespace
}  // namespace qv::devhost
