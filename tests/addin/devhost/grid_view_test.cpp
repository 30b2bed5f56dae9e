#include "host/grid_view.h"

#include <gtest/gtest.h>

#include "engines/memory/memory_engine.h"

namespace qv::devhost {
namespace {

/// A view of 600 by 300 pixels on a workbook with 200 used rows, two visible sheets and a hidden one.
class GridViewTest : public testing::Test {
 protected:
  GridViewTest()
      : parent(CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 600, 300, nullptr, nullptr,
                               nullptr, nullptr)) {
    engine.AddWorkbook(L"Book.xlsx", L"C:\\Books", {L"One", L"Hidden", L"Two"});
    engine.Sheet(L"Hidden").visible = 0;
    engine.Set(L"", "B200", L"last");
    id = engine.Windows().front().id;
  }
  ~GridViewTest() override {
    view.reset();
    DestroyWindow(parent);
  }

  void Open() {
    view = GridView::Create(parent, engine, id);
    MoveWindow(view->Window(), 0, 0, 600, 300, TRUE);
  }

  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendMessageW(view->Window(), message, wParam, lParam);
  }
  /// The middle of a cell of an unscrolled view: headers of 36 by 21 pixels, then 64 by 20 a cell.
  [[nodiscard]] static LPARAM Cell(int row, int column) {
    return MAKELPARAM(36 + 64 * (column - 1) + 32, 21 + 20 * (row - 1) + 10);
  }
  void Click(LPARAM at, WPARAM keys = 0) {
    Send(WM_LBUTTONDOWN, MK_LBUTTON | keys, at);
    Send(WM_LBUTTONUP, keys, at);
  }
  [[nodiscard]] GridSnapshot Shown() { return engine.Grid(id, {1, 1, 1, 1}); }
  [[nodiscard]] GridArea Selected() { return Shown().selection.at(0); }
  void Wheel(int notches) { Send(WM_MOUSEWHEEL, MAKEWPARAM(0, notches * WHEEL_DELTA)); }

  MemoryEngine engine;
  int id = 0;
  HWND parent;
  std::unique_ptr<GridView> view;
};

TEST_F(GridViewTest, SelectsWithTheMouseThroughTheEngine) {
  Open();
  Click(Cell(3, 2));
  EXPECT_EQ(Selected(), (GridArea{3, 2, 1, 1}));
  Click(Cell(5, 4), MK_SHIFT);
  EXPECT_EQ(Selected(), (GridArea{3, 2, 3, 3}));
  // A drag is told when it ends; it may go up and to the left.
  Send(WM_LBUTTONDOWN, MK_LBUTTON, Cell(6, 4));
  Send(WM_MOUSEMOVE, MK_LBUTTON, Cell(4, 3));
  EXPECT_EQ(Selected(), (GridArea{3, 2, 3, 3}));
  Send(WM_LBUTTONUP, 0, Cell(4, 3));
  EXPECT_EQ(Selected(), (GridArea{4, 3, 3, 2}));
  Click(MAKELPARAM(10, 21 + 30));
  EXPECT_EQ(Selected(), (GridArea{2, 1, 1, 16384}));
  Click(MAKELPARAM(36 + 70, 10));
  EXPECT_EQ(Selected(), (GridArea{1, 2, 1048576, 1}));
}

TEST_F(GridViewTest, MovesWithTheKeysAndKeepsTheCellInView) {
  Open();
  for (const UINT key : {VK_DOWN, VK_DOWN, VK_RIGHT, VK_TAB, VK_LEFT, VK_UP})
    Send(WM_KEYDOWN, key);
  EXPECT_EQ(Selected(), (GridArea{2, 2, 1, 1}));
  EXPECT_EQ(Shown().scrollRow, 1);
  Send(WM_KEYDOWN, VK_NEXT);
  Send(WM_KEYDOWN, VK_NEXT);
  const int row = Selected().firstRow;
  EXPECT_GT(row, 20);
  EXPECT_GT(Shown().scrollRow, 1);
  EXPECT_LE(Shown().scrollRow, row);
  Send(WM_KEYDOWN, VK_PRIOR);
  Send(WM_KEYDOWN, VK_PRIOR);
  Send(WM_KEYDOWN, VK_PRIOR);
  EXPECT_EQ(Selected(), (GridArea{1, 2, 1, 1}));
  EXPECT_EQ(Shown().scrollRow, 1);
}

TEST_F(GridViewTest, SelectsMergesAsAWholeAndStepsOverThem) {
  engine.Merge(L"", "B2:C3");
  Open();
  Click(Cell(3, 3));
  EXPECT_EQ(Selected(), (GridArea{2, 2, 2, 2}));
  Send(WM_KEYDOWN, VK_DOWN);
  EXPECT_EQ(Selected(), (GridArea{4, 2, 1, 1}));
  Send(WM_KEYDOWN, VK_UP);
  EXPECT_EQ(Selected(), (GridArea{2, 2, 2, 2}));
}

TEST_F(GridViewTest, ScrollsNoFurtherThanTheLastUsedCellNeeds) {
  Open();
  Wheel(-2);
  EXPECT_EQ(Shown().scrollRow, 7);
  for (int i = 0; i < 100; ++i)
    Wheel(-1);
  const int last = Shown().scrollRow;
  EXPECT_GT(last, 180);
  EXPECT_LT(last, 200);
  Wheel(100);
  EXPECT_EQ(Shown().scrollRow, 1);
  // Two columns are in use: sideways there is nothing to scroll.
  Send(WM_MOUSEWHEEL, MAKEWPARAM(MK_SHIFT, -WHEEL_DELTA));
  EXPECT_EQ(Shown().scrollColumn, 1);
}

TEST_F(GridViewTest, KeepsFrozenRowsInPlace) {
  engine.Sheet().frozenRows = 2;
  engine.NewWindow();
  id = engine.Windows().back().id;
  Open();
  Wheel(-1);
  EXPECT_EQ(Shown().scrollRow, 6);
  Click(Cell(1, 1));
  EXPECT_EQ(Selected(), (GridArea{1, 1, 1, 1}));
  Click(Cell(3, 1));
  EXPECT_EQ(Selected(), (GridArea{6, 1, 1, 1}));
}

TEST_F(GridViewTest, SwitchesSheetsByItsTabs) {
  Open();
  RECT client{};
  GetClientRect(view->Window(), &client);
  const auto tab = [&](int x) { return MAKELPARAM(x, client.bottom - 10); };
  for (int x = 60; x < 250 && Shown().activeSheet == 0; x += 10)
    Click(tab(x));
  EXPECT_EQ(Shown().sheets, (std::vector<std::wstring>{L"One", L"Two"}));
  EXPECT_EQ(Shown().activeSheet, 1u);
  Click(tab(60));
  EXPECT_EQ(Shown().activeSheet, 0u);
}

TEST_F(GridViewTest, FollowsAnotherCallersScrollingAndReadsOnlyAfterChanges) {
  Open();
  engine.ShowArea(id, {50, 1, 10, 8});
  EXPECT_TRUE(view->Refresh());
  // Nothing has raised the revision, so the old picture is still there.
  Click(Cell(1, 1));
  EXPECT_EQ(Selected().firstRow, 1);
  engine.ShowArea(id, {50, 1, 10, 8});
  engine.Set(L"", "A1", L"changed");
  EXPECT_TRUE(view->Refresh());
  Click(Cell(1, 1));
  EXPECT_EQ(Selected().firstRow, 50);
}

TEST_F(GridViewTest, OutlivesItsParentAndItsDocument) {
  Open();
  engine.CloseWindow(id);
  // What was not shown is tried again.
  EXPECT_FALSE(view->Refresh());
  EXPECT_FALSE(view->Refresh());
  Click(Cell(2, 2));
  EXPECT_NE(view->Window(), nullptr);
  DestroyWindow(parent);
  EXPECT_EQ(view->Window(), nullptr);
  EXPECT_TRUE(view->Refresh());
}

}  // namespace
}  // namespace qv::devhost
