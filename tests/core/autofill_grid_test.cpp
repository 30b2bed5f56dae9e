#include "tools/autofill_grid.h"

#include <gtest/gtest.h>

#include <cwctype>
#include <initializer_list>
#include <string>
#include <vector>

namespace qv {
namespace {

/// A cell with this text holds a number.
constexpr wchar_t kNumber[] = L"#5";

bool IsAsciiLetter(wchar_t unit) {
  return unit < 0x80 && std::iswalpha(static_cast<wint_t>(unit)) != 0;
}

/// A grid of literals, whose first cell is B3.
AutofillGrid GridOf(const std::vector<std::vector<const wchar_t*>>& rows) {
  const RangeGeometry place{static_cast<std::int32_t>(rows.size()), static_cast<std::int32_t>(rows[0].size()),
                            3, 2};
  std::vector<AutofillGrid::Cell> cells;
  for (const auto& row : rows) {
    for (const wchar_t* text : row)
      cells.push_back(std::wstring_view(text) == kNumber ? AutofillGrid::Cell{{}, true}
                                                         : AutofillGrid::Cell{text, false});
  }
  return {place, std::move(cells), [](std::int32_t, std::int32_t) { return std::wstring(L"5"); },
          &IsAsciiLetter};
}

std::vector<std::wstring> Addresses(const AutofillGrid& grid) {
  std::vector<std::wstring> addresses;
  for (const AutofillField& field : grid.Fields(grid.Candidates()))
    addresses.push_back(field.address + L"=" + field.label);
  return addresses;
}

using List = std::vector<std::wstring>;

TEST(AutofillGrids, TakeALabelFromTheLeftElseFromAbove) {
  EXPECT_EQ(Addresses(GridOf({{L"Name", L"", L"Date"}, {L"", L"x", L""}})),
            (List{L"C3=Name", L"B4=Name", L"D4=x"}));
  EXPECT_EQ(Addresses(GridOf({{L"", L"Name"}, {L"", L""}})), (List{L"C4=Name"})) << "nothing from the right";
  EXPECT_EQ(Addresses(GridOf({{L"Name", L"", L""}})), (List{L"C3=Name"})) << "nothing from further away";
  EXPECT_EQ(Addresses(GridOf({{L"  Name:\n", L""}})), (List{L"C3=Name:"}));
}

TEST(AutofillGrids, TakeNoLabelFromWhatNamesNothing) {
  for (const wchar_t* text : {L"", L" ", kNumber, L"12.5", L"-", L"*"})
    EXPECT_TRUE(GridOf({{text, L""}}).Candidates().empty());
  for (const wchar_t* text : {L"____", L"e.g.: Ann"})
    EXPECT_EQ(Addresses(GridOf({{text, L""}})), (List{L"B3="})) << "the placeholder alone is a field";
  EXPECT_EQ(Addresses(GridOf({{L"x", L"Total"}, {kNumber, L""}})), (List{L"C4=Total"}))
      << "a number at the left";
}

TEST(AutofillGrids, KeepPlaceholdersWithoutALabel) {
  EXPECT_EQ(Addresses(GridOf({{L"____", L"例如：张三", L""}})), (List{L"B3=", L"C3="}));
  EXPECT_EQ(Addresses(GridOf({{L"Name", L"____"}, {kNumber, L"text"}})), (List{L"C3=Name"}));
}

TEST(AutofillGrids, LookForALabelAcrossThePlaceholdersBelowIt) {
  EXPECT_EQ(Addresses(GridOf({{L"Name", L"Town"}, {L"____", L"____"}, {L"e.g.: Ann", L""}, {L"--", L"--"}})),
            (List{L"B4=Name", L"C4=Town", L"B5=Name", L"B6=Name", L"C6="}))
      << "an empty cell ends the way";
  AutofillGrid locked = GridOf({{L"Name"}, {L"____"}, {L"____"}, {L"____"}});
  const std::vector<CellPlace> below{{6, 2}};
  EXPECT_EQ(locked.Fields(below)[0].label, L"Name") << "across those that are no fields";
  EXPECT_EQ(locked.Fields(below)[0].context.above, L"____");
}

TEST(AutofillGrids, BoundWhatAFieldSaysOfItsSurroundings) {
  const std::wstring text(32767, L'a');
  AutofillGrid wide = GridOf({{text.c_str(), L"", L""}, {L"", L"", L""}});
  wide.SetMergedAreas(std::vector<RangeGeometry>{{1, 2, 3, 2}});
  const std::vector<AutofillField> near = wide.Fields(wide.Candidates());
  ASSERT_EQ(near.size(), 3u);
  EXPECT_EQ(near[0].label.size(), 500u);
  EXPECT_EQ(near[0].context.left.size(), 500u);
  EXPECT_EQ(near[1].context.above.size(), 500u);

  std::vector<std::vector<const wchar_t*>> rows(22000, {text.c_str(), L""});
  const AutofillGrid tall = GridOf(rows);
  const std::vector<AutofillField> fields = tall.Fields(tall.Candidates());
  ASSERT_EQ(fields.size(), rows.size());
  EXPECT_EQ(fields.front().context.rowText.size(), 500u);
  EXPECT_EQ(fields.back().label.size(), kShortLabel);
  std::size_t sum = 0;
  for (const AutofillField& field : fields)
    sum += field.label.size() + field.context.left.size() + field.context.rowText.size();
  EXPECT_LE(sum, kMaxNearTexts + rows.size() * kShortLabel);
}

TEST(AutofillGrids, TellWhatStandsAroundAField) {
  const AutofillGrid grid = GridOf({{L"Year", kNumber, L"Sum"}, {L" Cost ", L" -- ", kNumber}});
  const std::vector<AutofillField> fields = grid.Fields(grid.Candidates());
  ASSERT_EQ(fields.size(), 1u);
  const AutofillField& field = fields[0];
  EXPECT_EQ(field.id, L"R4C3");
  EXPECT_EQ(field.kind, AutofillKind::kUnderlinePlaceholder);
  EXPECT_EQ(field.label, L"Cost");
  EXPECT_EQ(field.placeholderText, L"--");
  EXPECT_EQ(field.currentValue, L" -- ");
  EXPECT_EQ(field.context.left, L"Cost");
  EXPECT_EQ(field.context.above, L"5");
  EXPECT_EQ(field.context.rowText, L"Cost | -- | 5");
}

TEST(AutofillGrids, CutTheTextOfARowAtFiveHundredCharacters) {
  const auto rowText = [](const std::wstring& label) {
    const AutofillGrid grid = GridOf({{label.c_str(), L""}});
    return grid.Fields(grid.Candidates()).at(0).context.rowText;
  };
  EXPECT_EQ(rowText(std::wstring(500, L'a')).size(), 500u);
  EXPECT_EQ(rowText(std::wstring(501, L'a')).size(), 500u);
  const std::wstring face = L"\xD83D\xDE00";
  EXPECT_EQ(rowText(std::wstring(498, L'a') + face).size(), 500u);
  EXPECT_EQ(rowText(std::wstring(499, L'a') + face), std::wstring(499, L'a')) << "no half of a pair";
}

TEST(AutofillGrids, SeeOneCellInAMergedArea) {
  AutofillGrid label = GridOf({{L"Address", L"", L""}, {L"", L"", L""}});
  label.SetMergedAreas(std::vector<RangeGeometry>{{2, 2, 3, 2}});
  EXPECT_EQ(Addresses(label), (List{L"D3=Address", L"D4=Address"}));
  AutofillGrid input = GridOf({{L"Name", L"", L""}, {L"x", L"____", L"hidden"}});
  input.SetMergedAreas(std::vector<RangeGeometry>{{1, 2, 3, 3}, {1, 2, 4, 3}});
  EXPECT_EQ(Addresses(input), (List{L"C3=Name", L"C4=x"}));
  EXPECT_EQ(input.Fields(input.Candidates())[1].context.rowText, L"x | ____");
  AutofillGrid beyond = GridOf({{L"Name", L""}});
  beyond.SetMergedAreas(std::vector<RangeGeometry>{{9, 9, 3, 3}, {2, 2, 1, 1}});
  EXPECT_EQ(Addresses(beyond), (List{L"C3=Name"})) << "an area that reaches out of the range";
}

TEST(AutofillGrids, DoNotSeeHiddenLines) {
  AutofillGrid grid = GridOf({{L"Name", L"secret", L""}, {L"", L"", L""}, {L"Town", L"____", L""}});
  grid.SetHiddenLines({false, true, false}, {false, true, false});
  EXPECT_EQ(Addresses(grid), (List{L"D3=Name", L"D5=Town"})) << "labels come across them";
  EXPECT_EQ(grid.Fields(grid.Candidates())[0].context.rowText, L"Name");
  grid.SetHiddenLines({true, true, true}, {false, false, false});
  EXPECT_TRUE(grid.Candidates().empty());
}

TEST(AutofillGrids, KnowWhetherThereIsAnyData) {
  EXPECT_FALSE(GridOf({{L"", L""}}).HoldsData());
  EXPECT_TRUE(GridOf({{L"", kNumber}}).HoldsData());
  EXPECT_TRUE(GridOf({{L"", L" "}}).HoldsData());
}

}  // namespace
}  // namespace qv
