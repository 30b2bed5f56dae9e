#include "tools/autofill_fill.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "foundation/text.h"

namespace qv {
namespace {

using Kind = CellContentKind;

TEST(AutofillFills, AreReadWithTheirNeighboursTexts) {
  const auto fills = ParseAutofillFills(
      LR"([{"row":2,"col":3,"action":"fill","value":"say \"row\":9, \u00e9","confidence":0.75},)"
      LR"( {"col":1,"row":1,"action":"clear"}, {"row":1,"col":2,"action":"fill","value":12.50},)"
      LR"( {"row":1,"col":2,"action":"fill","value":true}, {"row":1,"col":2,"action":"fill","value":null}])");
  ASSERT_EQ(fills.size(), 5u);
  EXPECT_EQ(fills[0].row, 2);
  EXPECT_EQ(fills[0].col, 3);
  EXPECT_EQ(fills[0].value, L"say \"row\":9, é");
  EXPECT_DOUBLE_EQ(fills[0].confidence, 0.75);
  EXPECT_EQ(fills[1].action, L"clear");
  EXPECT_EQ(fills[2].value, L"12.50");
  EXPECT_EQ(fills[3].value, L"TRUE");
  EXPECT_EQ(fills[4].value, L"");
}

TEST(AutofillFills, WithoutACellAreDropped) {
  const auto fills = ParseAutofillFills(
      LR"([{"row":0,"col":1},{"row":1,"col":0},{"row":-1,"col":1},{"row":"2","col":2},)"
      LR"({"col":1},7,"x",null,[],{"row":1,"col":1}])");
  ASSERT_EQ(fills.size(), 1u);
  EXPECT_EQ(fills[0].row, 1);
  for (const wchar_t* json : {L"", L"{}", L"7", L"[", L"[{]", L"null", L"{\"row\":1,\"col\":1}"})
    EXPECT_TRUE(ParseAutofillFills(json).empty()) << ToUtf8(json);
}

TEST(AutofillFills, ChangeACellForTheTwoExactActionsOnly) {
  EXPECT_EQ(ContentOfFill({1, 1, L"fill", L"x", 0}), (CellContent{L"x", Kind::kTyped}));
  EXPECT_EQ(ContentOfFill({1, 1, L"fill", L"", 0}), CellContent{});
  EXPECT_EQ(ContentOfFill({1, 1, L"clear", L"x", 0}), CellContent{});
  for (const wchar_t* action : {L"FILL", L"Clear", L"", L"fill ", L"filled"})
    EXPECT_EQ(ContentOfFill({1, 1, action, L"x", 0}), std::nullopt) << ToUtf8(action);
}

TEST(AutofillFills, ShowInTheCellWhatTheySay) {
  const std::vector<std::pair<Kind, std::vector<const wchar_t*>>> kinds = {
      {Kind::kNumber, {L"0", L"42", L"-7", L"3.5", L"1.50", L"0.25", L"-0.5", L"123456789012345"}},
      {Kind::kText,
       {L"007", L"-01", L"00.5", L"1234567890123456", L"110101199003077758", L"12E3", L"5e10", L"+49 30 1234",
        L"+5", L"- none -", L"-", L"@home", L"'s-Hertogenbosch"}},
      {Kind::kFormula, {L"=A1+1", L"="}},
      {Kind::kTyped,
       {L"Ann", L"2026-01-15", L"5%", L"1,234.5", L"TRUE", L"1.", L".5", L"1.2.3", L"E3", L"12E",
        L"0170-12345"}},
  };
  for (const auto& [kind, texts] : kinds) {
    for (const wchar_t* text : texts)
      EXPECT_EQ(ContentOfFill({1, 1, L"fill", text, 0}), (CellContent{text, kind})) << ToUtf8(text);
  }
}

}  // namespace
}  // namespace qv
