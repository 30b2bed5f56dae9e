#include "workbook/unit_list.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace qv {
namespace {

bool NoOtherLetters(wchar_t) {
  return false;
}

UnitList NewList() {
  return {L"Data", &NoOtherLetters};
}

std::vector<std::wstring> Ids(UnitList& list) {
  std::vector<std::wstring> ids;
  for (const CellUnit& unit : list.TakeUnits())
    ids.push_back(unit.UnitId());
  return ids;
}

TEST(UnitList, FillsEveryFieldOfACellUnit) {
  UnitList list = NewList();
  list.AddText(3, 2, L"Hello  ");
  list.AddText(3, 3, L"42");
  const std::vector<CellUnit> units = list.TakeUnits();
  ASSERT_EQ(units.size(), 1U);
  EXPECT_EQ(units[0].row, 3);
  EXPECT_EQ(units[0].col, 2);
  EXPECT_EQ(units[0].UnitId(), L"R3C2");
  EXPECT_EQ(units[0].sourceText, L"Hello");
  EXPECT_EQ(units[0].WorkText(), L"Hello");
  EXPECT_EQ(units[0].SheetName(), L"Data");
  EXPECT_EQ(units[0].kind, UnitKind::kCell);
  EXPECT_TRUE(units[0].translation.empty());
  EXPECT_FALSE(units[0].written);
}

TEST(UnitList, WarnsAboutTheFirstCharacterTooMany) {
  UnitList list = NewList();
  list.AddText(1, 1, std::wstring(20000, L'a'));
  list.AddText(7, 28, std::wstring(20001, L'a'));
  // Only what is left after the cut counts.
  list.AddText(8, 1, std::wstring(20000, L'b') + L"   \nlast");
  EXPECT_EQ(list.TakeWarnings(),
            std::vector<std::wstring>{L"内容过长（超过 20000 字符）：AB7，请拆分后再翻译"});
  EXPECT_EQ(Ids(list), (std::vector<std::wstring>{L"R1C1", L"R8C1"}));
}

TEST(UnitList, AppendingKeepsTheFirstOfEqualCells) {
  UnitList list = NewList();
  const auto append = [&list](std::initializer_list<std::pair<int, int>> cells) {
    UnitList area = NewList();
    for (const auto& [row, col] : cells)
      area.AddText(row, col, L"text");
    list.Append(std::move(area));
  };
  append({{5, 1}, {5, 2}});
  append({{1, 2}, {5, 2}, {2, 1}});
  append({{2, 1}, {1, 5}});
  EXPECT_EQ(Ids(list), (std::vector<std::wstring>{L"R5C1", L"R5C2", L"R1C2", L"R2C1", L"R1C5"}));
}

}  // namespace
}  // namespace qv
