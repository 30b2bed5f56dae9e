#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "engines/memory/memory_engine.h"
#include "host/grid_paint.h"
#include "host/line_breaks.h"
#include "host/sheet_tabs.h"

namespace qv::devhost {
namespace {

constexpr COLORREF kYellow = RGB(255, 255, 0);

/// Memory to paint in, 400 by 200 pixels.
class Canvas {
 public:
  Canvas() : dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), 400, -200, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    bitmap_.Reset(CreateDIBSection(dc_.Get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    selected_ = std::make_unique<Selected>(dc_.Get(), bitmap_.Get());
  }

  [[nodiscard]] HDC Get() const { return dc_.Get(); }
  [[nodiscard]] COLORREF At(int x, int y) const { return GetPixel(dc_.Get(), x, y); }
  /// How many pixels of the rectangle the condition holds for.
  template <typename Condition>
  [[nodiscard]] int Count(const RECT& area, Condition&& holds) const {
    int count = 0;
    for (int y = area.top; y < area.bottom; ++y) {
      for (int x = area.left; x < area.right; ++x)
        count += holds(At(x, y)) ? 1 : 0;
    }
    return count;
  }

 private:
  UniqueMemoryDc dc_;
  UniqueBitmap bitmap_;
  std::unique_ptr<Selected> selected_;
};

bool IsDark(COLORREF color) {
  return GetRValue(color) < 110 && GetGValue(color) < 110 && GetBValue(color) < 110;
}
bool IsRed(COLORREF color) {
  return GetRValue(color) > 150 && GetGValue(color) < 110 && GetBValue(color) < 110;
}

/// Columns of 64 and rows of 20 pixels from the corner on, as an engine without formats has them.
class GridPaint : public testing::Test {
 protected:
  GridPaint() { engine.AddWorkbook(L"Book.xlsx"); }

  ComPtr<IDispatch> Range(const char* address) { return engine.RangeObject(L"", address); }

  void Paint() {
    GridPane pane;
    pane.grid = engine.Grid(engine.Windows().front().id, {1, 1, 10, 6});
    // Far from what is looked at.
    pane.grid.selection = {{10, 6, 1, 1}};
    pane.clip = {0, 0, 400, 200};
    pane.Place(1, 1, 96);
    PaintPane(canvas.Get(), fonts, pane);
  }

  [[nodiscard]] static RECT CellRect(int row, int column) {
    return {64 * (column - 1), 20 * (row - 1), 64 * column - 1, 20 * row - 1};
  }
  [[nodiscard]] int Dark(int row, int column) const { return canvas.Count(CellRect(row, column), IsDark); }

  MemoryEngine engine;
  FontCache fonts{96};
  Canvas canvas;
};

TEST_F(GridPaint, FillsCellsOverTheLinesAroundThem) {
  auto& sheet = engine.Sheet();
  sheet.ChangeStyle({2, 2, 2, 2}, [](memory::CellStyle& style) {
    style.fillPattern = 1;
    style.fillColor = static_cast<long>(kYellow);
  });
  Paint();
  EXPECT_EQ(canvas.At(70, 30), kYellow);
  EXPECT_EQ(canvas.At(127, 39), kYellow);
  EXPECT_EQ(canvas.At(63, 30), kYellow);
  EXPECT_EQ(canvas.At(62, 30), RGB(255, 255, 255));
  EXPECT_EQ(canvas.At(63, 10), theme::kLine);
}

TEST_F(GridPaint, ShowsTheSecondLineInItsOwnColor) {
  engine.Set(L"", "A1", L"HHHH\nHHHH");
  auto& sheet = engine.Sheet();
  sheet.ChangeStyle({1, 1, 1, 1}, [](memory::CellStyle& style) { style.wrap = true; });
  memory::FontStyle red;
  red.color = static_cast<long>(RGB(255, 0, 0));
  red.automaticColor = false;
  red.bold = true;
  sheet.SetRuns(1, 1, {{0, {}}, {5, red}});
  // Less than the two lines would like to have.
  sheet.SetRowHeight(1, 26);
  Paint();
  const RECT upper{0, 0, 63, 16};
  const RECT lower{0, 18, 63, 34};
  EXPECT_GT(canvas.Count(upper, IsDark), 0);
  EXPECT_EQ(canvas.Count(upper, IsRed), 0);
  EXPECT_GT(canvas.Count(lower, IsRed), 0);
  EXPECT_EQ(canvas.Count(lower, IsDark), 0);
}

TEST_F(GridPaint, LetsTextRunOverEmptyNeighboursOnly) {
  const std::wstring text(16, L'H');
  engine.Set(L"", "A1", text);
  engine.Set(L"", "A2", text);
  engine.Set(L"", "B2", L".");
  engine.Set(L"", "A3", text);
  engine.Sheet().ChangeStyle({3, 1, 3, 1}, [](memory::CellStyle& style) { style.wrap = true; });
  engine.Set(L"", "C4", text);
  engine.Sheet().ChangeStyle({4, 3, 4, 3},
                             [](memory::CellStyle& style) { style.horizontalAlignment = -4152; });
  Paint();
  EXPECT_GT(Dark(1, 2), 20);
  EXPECT_LT(Dark(2, 2), 10);
  EXPECT_EQ(Dark(3, 2), 0);
  EXPECT_GT(Dark(4, 2), 20);
  // The line between the two is gone where the text runs over it.
  EXPECT_NE(canvas.At(63, 2), theme::kLine);
  EXPECT_EQ(canvas.At(63, 22), theme::kLine);
}

TEST_F(GridPaint, StandsNumbersAtTheRightAndNeverCutsThem) {
  engine.Set(L"", "A1", 1.0);
  engine.Set(L"", "A2", 12345678901.0);
  engine.Set(L"", "A3", 3.14159265358979);
  Paint();
  // The general format rounds to the room that there is: as thin as figures are, and within the cell.
  EXPECT_GT(Dark(3, 1), Dark(1, 1) * 3);
  EXPECT_LT(Dark(3, 1), Dark(2, 1));
  EXPECT_EQ(Dark(3, 2), 0);
  EXPECT_EQ(canvas.Count({0, 0, 40, 19}, IsDark), 0);
  EXPECT_GT(canvas.Count({45, 0, 63, 19}, IsDark), 0);
  EXPECT_EQ(Dark(2, 2), 0);
  // Hashes: the number's own figures would leave more white than these.
  EXPECT_GT(Dark(2, 1), Dark(1, 1) * 4);
}

TEST_F(GridPaint, ShowsAMergeAsOneCell) {
  engine.Set(L"", "B2", L"x");
  engine.Merge(L"", "B2:C4");
  Paint();
  EXPECT_EQ(canvas.At(127, 50), RGB(255, 255, 255));
  EXPECT_EQ(canvas.At(100, 39), RGB(255, 255, 255));
  EXPECT_EQ(canvas.At(191, 50), theme::kLine);
  EXPECT_GT(canvas.Count(CellRect(4, 2), IsDark), 0);
}

TEST(LineBreaks, FollowWordsFeedsAndEastAsianText) {
  struct Case {
    std::wstring_view text;
    int width;
    std::vector<std::wstring_view> lines;
  };
  // Every unit is 10 wide.
  const Case cases[] = {
      {L"", 50, {L""}},
      {L"a\n\nb", 0, {L"a", L"", L"b"}},
      {L"one two", 0, {L"one two"}},
      {L"one two", 70, {L"one two"}},
      {L"one two", 69, {L"one", L"two"}},
      {L"one two ", 70, {L"one two "}},
      {L"well-known", 60, {L"well-", L"known"}},
      {L"unbreakable", 40, {L"unbr", L"eaka", L"ble"}},
      {L"ab", 5, {L"a", L"b"}},
      {L"\u6771\u4EAC\u652F\u5E97", 30, {L"\u6771\u4EAC\u652F", L"\u5E97"}},
      // A full stop does not begin a line.
      {L"\u6771\u4EAC\u652F\u3002", 30, {L"\u6771\u4EAC", L"\u652F\u3002"}},
      // A pair of surrogates stays together.
      {L"\xD83D\xDE00\xD83D\xDE00", 30, {L"\xD83D\xDE00", L"\xD83D\xDE00"}},
  };
  for (const Case& each : cases) {
    const std::vector<int> advances(each.text.size(), 10);
    std::vector<std::wstring_view> lines;
    for (const TextLine& line : BreakLines(each.text, advances, each.width))
      lines.push_back(each.text.substr(line.start, line.end - line.start));
    EXPECT_EQ(lines, each.lines) << testing::PrintToString(each.text);
  }
}

TEST(SheetTabsTest, ScrollToTheActiveTabAndBack) {
  const Canvas canvas;
  FontCache fonts(96);
  std::vector<std::wstring> names;
  for (int i = 0; i < 20; ++i)
    names.push_back(L"A sheet " + std::to_wstring(i));
  SheetTabs tabs;
  const RECT strip{0, 0, 300, 26};
  tabs.Arrange(canvas.Get(), fonts, names, 0, strip);
  EXPECT_EQ(tabs.HitTest({60, 10}).sheet, 0u);
  EXPECT_EQ(tabs.HitTest({10, 10}).scroll, -1);
  EXPECT_EQ(tabs.HitTest({40, 10}).scroll, 1);
  EXPECT_FALSE(tabs.HitTest({60, 30}).sheet);
  EXPECT_FALSE(tabs.Scroll(-1));
  EXPECT_TRUE(tabs.Scroll(1));
  EXPECT_EQ(tabs.HitTest({60, 10}).sheet, 1u);

  tabs.Arrange(canvas.Get(), fonts, names, 19, strip);
  bool found = false;
  for (int x = 55; x < 300; ++x)
    found = found || tabs.HitTest({x, 10}).sheet == 19u;
  EXPECT_TRUE(found);
  EXPECT_FALSE(tabs.Scroll(1));
}

}  // namespace
}  // namespace qv::devhost
