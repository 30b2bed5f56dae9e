#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "late_bound.h"

namespace qv::devhost {
namespace {

class EngineWindows : public MemoryEngineTest {
 protected:
  /// "caption" of every window, the active one in brackets.
  std::vector<std::wstring> Captions() {
    std::vector<std::wstring> captions;
    for (const WindowInfo& window : engine.Windows())
      captions.push_back(window.active ? L"[" + window.caption + L"]" : window.caption);
    return captions;
  }

  std::wstring CaptionOf(const ComPtr<IDispatch>& window) {
    return Get(window, L"Caption").value.Get().bstrVal;
  }

  int first = engine.Windows().front().id;
};

using Texts = std::vector<std::wstring>;

TEST_F(EngineWindows, NumberTheirCaptionsOnlyWhileThereAreSeveral) {
  EXPECT_EQ(Captions(), (Texts{L"[Book.xlsx]"}));
  const int second = engine.NewWindow();
  EXPECT_EQ(Captions(), (Texts{L"Book.xlsx:1", L"[Book.xlsx:2]"}));
  engine.ActivateWindow(first);
  EXPECT_EQ(Captions(), (Texts{L"[Book.xlsx:1]", L"Book.xlsx:2"}));
  engine.CloseWindow(first);
  EXPECT_EQ(Captions(), (Texts{L"[Book.xlsx]"}));
  EXPECT_EQ(engine.Windows().front().id, second);
  EXPECT_EQ(engine.Windows().front().workbook, L"Book.xlsx");
}

TEST_F(EngineWindows, TakeTheirWorkbookAlongWhenTheLastOneCloses) {
  engine.AddWorkbook(L"Other.xlsx");
  const ComPtr<IDispatch> window = engine.WindowObject(first);
  engine.CloseWindow(first);
  EXPECT_EQ(Captions(), (Texts{L"[Other.xlsx]"}));
  EXPECT_EQ(Get(window, L"Caption").hr, RPC_E_DISCONNECTED);
  const auto workbooks = Follow(Application(), {L"Workbooks"});
  EXPECT_EQ(Get(workbooks, L"Count").value.Get().lVal, 1);
  EXPECT_EQ(Get(workbooks, L"Item", {Variant(L"Book.xlsx")}).hr, DISP_E_BADINDEX);
  EXPECT_THROW(engine.ActivateWindow(first), std::runtime_error);
  EXPECT_THROW(static_cast<void>(engine.Grid(first, {1, 1, 1, 1})), std::runtime_error);
}

TEST_F(EngineWindows, AreFoundByNumberFromTheFrontAndByCaption) {
  const int second = engine.NewWindow();
  const auto windows = Follow(Application(), {L"Windows"});
  EXPECT_EQ(Get(windows, L"Count").value.Get().lVal, 2);
  EXPECT_EQ(CaptionOf(Get(windows, L"Item", {Variant(1L)}).value.Object()), L"Book.xlsx:2");
  const auto found = Get(windows, L"Item", {Variant(L"book.XLSX:1")}).value.Object();
  ASSERT_HRESULT_SUCCEEDED(CallMethod(found, L"Activate").hr);
  EXPECT_EQ(CaptionOf(Get(windows, L"Item", {Variant(1L)}).value.Object()), L"Book.xlsx:1");
  EXPECT_EQ(CaptionOf(engine.WindowObject(second)), L"Book.xlsx:2");
}

TEST_F(EngineWindows, AnswerTheHandlesThatTheyWereGiven) {
  const auto hwnd = [](const ComPtr<IDispatch>& object) { return Get(object, L"Hwnd").value.Get().lVal; };
  const auto handle = [](INT_PTR number) { return reinterpret_cast<HWND>(number); };
  const auto window = engine.WindowObject(first);
  const long own = hwnd(window);
  engine.SetWindowHandle(first, handle(0x1234));
  EXPECT_EQ(hwnd(window), 0x1234);
  engine.SetApplicationHandle(handle(0x5678));
  EXPECT_EQ(hwnd(Application()), 0x5678);
  EXPECT_EQ(hwnd(window), 0x1234);
  engine.SetWindowHandle(first, nullptr);
  engine.SetApplicationHandle(nullptr);
  EXPECT_EQ(hwnd(window), own);
  EXPECT_EQ(hwnd(Application()), own);
}

TEST_F(EngineWindows, KeepSheetSelectionAndScrollingToThemselves) {
  engine.AddWorkbook(L"Two.xlsx", L"C:\\Books", {L"A", L"B"});
  const int one = engine.Windows().back().id;
  const int two = engine.NewWindow();
  engine.ActivateSheet(two, L"b");
  engine.SelectCells(two, {2, 3, 4, 1});
  engine.ShowArea(two, {10, 2, 5, 3});
  EXPECT_EQ(engine.Grid(one, {1, 1, 1, 1}).activeSheet, 0u);
  const GridSnapshot shown = engine.Grid(two, {1, 1, 1, 1});
  EXPECT_EQ(shown.activeSheet, 1u);
  EXPECT_EQ(shown.selection, (std::vector<GridArea>{{2, 3, 4, 1}}));
  EXPECT_EQ(shown.scrollRow, 10);
  const auto visible = Get(engine.WindowObject(two), L"VisibleRange").value.Object();
  EXPECT_STREQ(Get(visible, L"Address").value.Get().bstrVal, L"$B$10:$D$14");
  EXPECT_THROW(engine.ActivateSheet(two, L"none"), std::runtime_error);
  EXPECT_THROW(engine.SelectCells(two, {1048576, 1, 2, 1}), std::runtime_error);
}

TEST_F(EngineWindows, OfAnOpenFileAreFoundAgain) {
  const auto path = std::filesystem::temp_directory_path() / L"engine-windows.json";
  std::ofstream(path) << R"({"sheets":[{"name":"One"}]})";
  const int opened = engine.OpenWindow(path.wstring());
  engine.ActivateWindow(first);
  EXPECT_EQ(engine.OpenWindow(path.wstring()), opened);
  EXPECT_EQ(Captions(), (Texts{L"Book.xlsx", L"[engine-windows.json]"}));
  engine.CloseWindow(opened);
  EXPECT_NE(engine.OpenWindow(path.wstring()), opened);
  std::filesystem::remove(path);
}

TEST_F(EngineWindows, RaiseTheRevisionWithChangesAndNotWithReads) {
  const auto grows = [&](auto&& action) {
    const auto before = engine.Revision();
    action();
    return engine.Revision() > before;
  };
  const auto range = Range("A1");
  EXPECT_TRUE(grows([&] { static_cast<void>(Put(range, L"Value2", Variant(L"x"))); }));
  EXPECT_TRUE(grows([&] { static_cast<void>(CallMethod(range, L"Select")); }));
  EXPECT_TRUE(grows([&] { engine.Set(L"", "A2", 1.0); }));
  EXPECT_TRUE(grows([&] { engine.NewWindow(); }));
  EXPECT_FALSE(grows([&] { static_cast<void>(Get(range, L"Value2")); }));
  EXPECT_FALSE(grows([&] { static_cast<void>(engine.Grid(first, {1, 1, 9, 9})); }));
}

TEST_F(EngineWindows, ShowWhatTheSheetHolds) {
  memory::Sheet& sheet = engine.Sheet();
  engine.Set(L"", "A1", L"Hello\nHola");
  const auto second = Get(Range("A1"), L"Characters", {Variant(7L), Variant(4L)}).value.Object();
  static_cast<void>(Put(Follow(second, {L"Font"}), L"Color", Variant(0x8C6E5AL)));
  engine.Set(L"", "B1", 12.5);
  engine.Set(L"", "C1", true);
  static_cast<void>(Put(Follow(Range("A2"), {L"Interior"}), L"Color", Variant(0x0000FFL)));
  engine.Set(L"", "C4", L"wide");
  engine.Merge(L"", "C4:D6");
  sheet.HideRow(3, true);
  sheet.HideColumn(2, true);
  engine.AddChart(L"", L"Sales")->top = 30;

  const GridSnapshot grid = engine.Grid(first, {1, 1, 8, 6});
  EXPECT_EQ(grid.rowHeights, (std::vector<double>{15, 15, 0, 15, 15, 15, 15, 15}));
  EXPECT_EQ(grid.columnWidths[1], 0);
  const auto at = [&](int row, int column) -> const GridCell& {
    for (const GridCell& cell : grid.cells) {
      if (cell.row == row && cell.column == column) return cell;
    }
    throw std::runtime_error("not there");
  };
  ASSERT_EQ(at(1, 1).runs.size(), 2u);
  EXPECT_EQ(at(1, 1).runs[1].start, 6);
  EXPECT_EQ(at(1, 1).runs[1].length, 4);
  EXPECT_EQ(at(1, 1).runs[1].font.color, 0x8C6E5Au);
  EXPECT_EQ(at(1, 2).content, GridContent::kNumber);
  EXPECT_EQ(at(1, 3).content, GridContent::kLogical);
  EXPECT_EQ(grid.styles.at(at(2, 1).style).fill, 0x0000FFu);
  EXPECT_EQ(at(4, 3).rows * at(4, 3).columns, 6);
  EXPECT_THROW(at(5, 4), std::runtime_error);
  EXPECT_EQ(grid.shapes.at(0).title, L"Sales");
  EXPECT_GT(grid.usedRows, 6);

  // The merge's last cell alone: its first one is there, and how much lies outside.
  const GridSnapshot part = engine.Grid(first, {6, 4, 1, 1});
  ASSERT_EQ(part.cells.size(), 1u);
  EXPECT_EQ(part.cells[0].row, 4);
  EXPECT_EQ(part.cells[0].outside.top, 30);
  EXPECT_EQ(part.cells[0].outside.left, grid.columnWidths[2]);
  EXPECT_EQ(part.cells[0].outside.bottom, 0);
  EXPECT_EQ(engine.Grid(first, {1048576, 16384, 9, 9}).area, (GridArea{1048576, 16384, 1, 1}));
}

}  // namespace
}  // namespace qv::devhost
