#include "tools/blank_rows.h"

#include <gtest/gtest.h>

#include <set>

#include "addin/blank_rows_message.h"
#include "foundation/catalog.h"
#include "foundation/text.h"
#include "tools/fill_survey.h"

namespace qv {
namespace {

using Rows = std::vector<std::int32_t>;

TEST(BlankRows, SeveralSelectedRowsAreTheScopeAsFarAsTheyAreInUse) {
  struct Case {
    RowSpan selected;
    RowSpan scope;
  };
  const RangeGeometry used{10, 3, 4, 2};
  const Case cases[] = {{{5, 10}, {5, 10}},   {{1, 6}, {4, 6}},  {{12, 1000000}, {12, 13}},
                        {{1, 20}, {4, 13}},   {{7, 7}, {4, 13}}, {{0, -1}, {4, 13}},
                        {{14, 20}, {14, 13}}, {{1, 3}, {4, 3}},  {{13, 14}, {13, 13}}};
  for (const Case& c : cases)
    EXPECT_EQ(BlankRowScope(used, c.selected), c.scope) << c.selected.first << '-' << c.selected.last;
  const RangeGeometry lowest{1, 1, 1048576, 16384};
  EXPECT_EQ(BlankRowScope(lowest, {1, 1048576}), (RowSpan{1048576, 1048576}));
}

/// Blank rows of a sheet whose filled cells are given by their place in the used range.
Rows BlankOf(const RangeGeometry& used, const RowSpan& scope,
             const std::set<std::pair<std::int32_t, std::int32_t>>& filled) {
  return FindBlankRows(used, scope, [&](std::int32_t row, std::int32_t col) {
    return filled.contains({row, col});
  });
}

TEST(BlankRows, ARowIsBlankWhenNoCellOfItIsFilled) {
  const RangeGeometry used{6, 3, 11, 5};
  // Sheet rows 11, 12 and 16, in the first, second and last column.
  const std::set<std::pair<std::int32_t, std::int32_t>> filled = {{1, 1}, {2, 2}, {6, 3}};
  EXPECT_EQ(BlankOf(used, {11, 16}, filled), (Rows{13, 14, 15}));
  EXPECT_EQ(BlankOf(used, {14, 15}, filled), (Rows{14, 15}));
  EXPECT_EQ(BlankOf(used, {11, 12}, filled), Rows{});
  EXPECT_EQ(BlankOf(used, {17, 16}, filled), Rows{});
}

TEST(BlankRows, AnEmptySheetHasNoneAndOneFilledCellNeither) {
  const RangeGeometry one{1, 1, 1, 1};
  EXPECT_EQ(BlankOf(one, {1, 1}, {}), Rows{});
  EXPECT_EQ(BlankOf(one, {1, 1}, {{1, 1}}), Rows{});
  EXPECT_EQ(BlankOf({1, 2, 1, 1}, {1, 1}, {}), Rows{1});
}

TEST(BlankRows, NeighboursAreJoinedToSpans) {
  EXPECT_EQ(JoinRows(Rows{}), std::vector<RowSpan>{});
  EXPECT_EQ(JoinRows(Rows{3, 7, 8, 9, 11}), (std::vector<RowSpan>{{3, 3}, {7, 9}, {11, 11}}));
}

TEST(BlankRows, AddressesAreAsFewAsTheirLengthAllows) {
  const RangeGeometry blocks[] = {{1, 8, 3, 1}, {3, 1, 7, 28}};
  EXPECT_EQ(JoinAddresses(blocks), std::vector<std::wstring>{L"A3:H3,AB7:AB9"});
  const RowSpan rows[] = {{3, 3}, {7, 9}};
  EXPECT_EQ(JoinAddresses(rows), std::vector<std::wstring>{L"3:3,7:9"});
  // Sixteen parts of fifteen characters and their commas are 255; one more digit is too much.
  std::vector<RowSpan> longRows(16, RowSpan{1000000, 1000000});
  const std::vector<std::wstring> full = JoinAddresses(longRows);
  ASSERT_EQ(full.size(), 1U);
  EXPECT_EQ(full.front().size(), kMaxAddressLength);
  longRows.push_back({1, 1});
  EXPECT_EQ(JoinAddresses(longRows).back(), L"1:1");
}

/// A sheet whose fill is told cell by cell, and the questions that it was asked.
class FakeFills {
 public:
  explicit FakeFills(FillAnswer (*fillAt)(std::int32_t row, std::int32_t col)) : fillAt_(fillAt) {}

  FillAnswer operator()(const RangeGeometry& block) {
    ++asked;
    const FillAnswer first = fillAt_(block.firstRow, block.firstCol);
    for (std::int32_t row = block.firstRow; row < block.firstRow + block.rows; ++row) {
      for (std::int32_t col = block.firstCol; col < block.firstCol + block.cols; ++col) {
        const FillAnswer other = fillAt_(row, col);
        if (other.state != first.state || !(other.fill == first.fill)) return {FillState::kMixed, {}};
      }
    }
    return first;
  }

  int asked = 0;

 private:
  FillAnswer (*fillAt_)(std::int32_t row, std::int32_t col);
};

constexpr FillAnswer kNoFill{FillState::kUniform, {}};
constexpr FillAnswer kRed{FillState::kUniform, {CellFill::Kind::kColor, 255, 0}};
constexpr FillAnswer kHatched{FillState::kFixed, {}};

/// The survey as text: each group's fill and cells.
std::wstring Surveyed(FakeFills& fills, const std::vector<RowSpan>& runs, int questions = kMaxFillQuestions) {
  std::wstring text;
  for (const FillGroup& group : SurveyFills(runs, 1, 4, std::ref(fills), questions)) {
    text += Concat(group.fill.color, L'=');
    for (const std::wstring& address : JoinAddresses(group.blocks))
      text += address + L' ';
  }
  return text;
}

TEST(FillSurvey, OneQuestionIsEnoughWhereEverythingIsTheSame) {
  FakeFills fills([](std::int32_t, std::int32_t) { return kNoFill; });
  EXPECT_EQ(Surveyed(fills, {{2, 3}, {9, 9}, {12, 15}}), L"0=A2:D3,A9:D9,A12:D15 ");
  EXPECT_EQ(fills.asked, 1);
  EXPECT_EQ(Surveyed(fills, {}), L"");
}

TEST(FillSurvey, MixedRowsAreToldApartDownToTheirCells) {
  // Row 5 is red but for its last cell; row 9 is red; of row 12 only a hatched cell is not clear.
  FakeFills fills([](std::int32_t row, std::int32_t col) {
    if (row == 12 && col == 2) return kHatched;
    return row == 9 || (row == 5 && col < 4) ? kRed : kNoFill;
  });
  EXPECT_EQ(Surveyed(fills, {{4, 6}, {9, 9}, {12, 12}}),
            L"0=A4:D4,D5:D5,A6:D6,A12:A12,C12:D12 255=A5:B5,C5:C5,A9:D9 ");
}

TEST(FillSurvey, WhatIsBetweenTheRowsDoesNotMatterButForQuestions) {
  FakeFills fills([](std::int32_t row, std::int32_t) { return row % 2 == 0 ? kNoFill : kRed; });
  EXPECT_EQ(Surveyed(fills, {{2, 2}, {4, 4}, {6, 6}}), L"0=A2:D2,A4:D4,A6:D6 ");
  EXPECT_EQ(fills.asked, 5);
}

TEST(FillSurvey, StopsAskingAtItsLimitAndWhereTheHostDoesNotTell) {
  FakeFills striped([](std::int32_t row, std::int32_t) { return row % 2 == 0 ? kNoFill : kRed; });
  EXPECT_EQ(Surveyed(striped, {{2, 2}, {4, 4}, {6, 6}}, 2), L"0=A2:D2 ");
  FakeFills silent([](std::int32_t row, std::int32_t) {
    return row < 4 ? kNoFill : FillAnswer{FillState::kUnknown, {}};
  });
  EXPECT_EQ(Surveyed(silent, {{2, 2}, {4, 4}, {6, 6}}), L"0=A2:D2 ");
  EXPECT_EQ(silent.asked, 3);
}

BlankRowResult Result(std::int32_t found, std::int32_t deleted, std::int32_t failed) {
  return {.deleted = deleted, .found = found, .failed = failed, .silent = false, .error = {}};
}

TEST(BlankRowMessages, EachOutcomeHasItsTextAndIcon) {
  struct Case {
    BlankRowResult result;
    const wchar_t* text;
    unsigned icon;
  };
  const Case cases[] = {
      {{.found = 4, .silent = true, .error = L"无法解析表格内容。"}, L"无法解析表格内容。", 0x10},
      {Result(5, 3, 2), L"Deleted 3 blank rows.\n2 could not be deleted (the sheet may be protected).", 0x30},
      {Result(5, 0, 5),
       L"Found 5 blank rows, but none were deleted (5 failed).\n\nMake sure the sheet is not protected.",
       0x30},
      {Result(0, 0, 0),
       L"No blank rows were found.\n\nInside the used range, a row is removed only when every cell is empty "
       L"and has no formula. A multi-row selection limits the scan to those rows. A single cell or single "
       L"row "
       L"scans the whole used range.",
       0x40},
  };
  for (const Case& c : cases) {
    const auto message = BlankRowOutcome(L"en", c.result);
    ASSERT_TRUE(message) << ToUtf8(c.text);
    EXPECT_EQ(ToUtf8(message->text), ToUtf8(c.text));
    EXPECT_EQ(message->icon, c.icon);
  }
  EXPECT_EQ(BlankRowQuestion(L"en", 12), L"Found 12 blank rows. Delete them?");
  EXPECT_FALSE(BlankRowOutcome(L"en", Result(5, 5, 0)));
  EXPECT_FALSE(BlankRowOutcome(L"en", {.found = 5, .silent = true, .error = {}}));
}

TEST(BlankRowMessages, NoLanguageLeavesAPlaceholderOpen) {
  for (const wchar_t* language : {L"en", L"ar", L"de", L"es", L"fr", L"id", L"ja", L"ko", L"ms", L"ru", L"th",
                                  L"vi", L"zh-CN", L"zh-TW"}) {
    SCOPED_TRACE(ToUtf8(language));
    std::vector<std::wstring> texts = {BlankRowQuestion(language, 71)};
    for (const BlankRowResult& result : {Result(71, 71 - 13, 13), Result(71, 0, 71)})
      texts.push_back(BlankRowOutcome(language, result)->text);
    for (const std::wstring& text : texts) {
      EXPECT_EQ(text.find(L'{'), std::wstring::npos) << ToUtf8(text);
      EXPECT_NE(text.find_first_of(L"157"), std::wstring::npos) << ToUtf8(text);
    }
  }
}

}  // namespace
}  // namespace qv
