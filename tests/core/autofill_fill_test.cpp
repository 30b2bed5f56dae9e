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
  EXPECT_EQ(fills[0].value, (CellContent{L"say \"row\":9, é", Kind::kTyped}));
  EXPECT_DOUBLE_EQ(fills[0].confidence, 0.75);
  EXPECT_EQ(fills[1].action, L"clear");
  EXPECT_EQ(fills[2].value, (CellContent{L"12.5", Kind::kNumber}));
  EXPECT_EQ(fills[3].value, (CellContent{L"TRUE", Kind::kFlag}));
  EXPECT_EQ(fills[4].value, std::nullopt);
}

TEST(AutofillFills, WithoutACellAreDropped) {
  const auto fills = ParseAutofillFills(
      LR"([{"row":0,"col":1},{"row":1,"col":0},{"row":-1,"col":1},{"row":"2","col":2},{"row":1.5,"col":1},{"row":1,"col":1.01},)"
      LR"({"col":1},7,"x",null,[],{"row":1e1,"col":1.0}])");
  ASSERT_EQ(fills.size(), 1u);
  EXPECT_EQ(fills[0].row, 10);
  EXPECT_EQ(fills[0].col, 1);
  for (const wchar_t* json : {L"", L"{}", L"7", L"[", L"[{]", L"null", L"{\"row\":1,\"col\":1}"})
    EXPECT_TRUE(ParseAutofillFills(json).empty()) << ToUtf8(json);
}

TEST(AutofillFills, ChangeACellForTheTwoExactActionsOnly) {
  const CellContent x{L"x", Kind::kTyped};
  EXPECT_EQ(ContentOfFill({1, 1, L"fill", x, 0}), x);
  EXPECT_EQ(ContentOfFill({1, 1, L"fill", CellContent{}, 0}), CellContent{});
  EXPECT_EQ(ContentOfFill({1, 1, L"clear", x, 0}), CellContent{});
  EXPECT_EQ(ContentOfFill({1, 1, L"clear", std::nullopt, 0}), CellContent{});
  for (const wchar_t* action : {L"FILL", L"Clear", L"", L"fill ", L"filled"})
    EXPECT_EQ(ContentOfFill({1, 1, action, x, 0}), std::nullopt) << ToUtf8(action);
}

std::optional<CellContent> ContentOfValue(std::wstring_view value) {
  const auto fills =
      ParseAutofillFills(Concat(L"[{\"row\":1,\"col\":1,\"action\":\"fill\",\"value\":", value, L"}]"));
  return fills.empty() ? std::nullopt : ContentOfFill(fills[0]);
}

TEST(AutofillFills, TakeANumberAsOneHoweverItIsSpelled) {
  for (const auto& [value, number] :
       {std::pair(L"1e3", L"1000"), std::pair(L"1.5e3", L"1500"),
        std::pair(L"33.333333333333336", L"33.333333333333336"), std::pair(L"1e-15", L"1E-15"),
        std::pair(L"12345678901234567890", L"12345678901234567000"), std::pair(L"-0.5", L"-0.5")}) {
    const std::optional<CellContent> content = ContentOfValue(value);
    ASSERT_TRUE(content) << ToUtf8(value);
    EXPECT_EQ(content->kind, Kind::kNumber) << ToUtf8(value);
    EXPECT_EQ(NumberOfText(content->text), NumberOfText(number)) << ToUtf8(value);
  }
}

TEST(AutofillFills, WithoutAValueEmptyNoCell) {
  for (const wchar_t* value : {L"null", L"{}", L"[]", L"[\"x\"]", L"{\"value\":\"x\"}", L"1e999"})
    EXPECT_EQ(ContentOfValue(value), std::nullopt) << ToUtf8(value);
  EXPECT_EQ(ContentOfValue(L"\"\""), CellContent{}) << "an empty text is one";
}

TEST(AutofillFills, ShowInTheCellWhatTheySay) {
  const std::vector<std::pair<Kind, std::vector<const wchar_t*>>> kinds = {
      {Kind::kNumber,
       {L"0", L"42", L"-7", L"3.5", L"1.50", L"0.25", L"-0.5", L"123456789012345", L"33.333333333333336",
        L"0.000000000000001", L"-123456789012345.25"}},
      {Kind::kText,
       {L"007", L"-01", L"00.5", L"1234567890123456", L"-1234567890123456.5", L"110101199003077758", L"12E3",
        L"5e10", L"+49 30 1234", L"+5", L"- none -", L"-", L"@home", L"'s-Hertogenbosch"}},
      {Kind::kFormula, {L"=A1+1", L"="}},
      {Kind::kTyped,
       {L"Ann", L"2026-01-15", L"5%", L"1,234.5", L"TRUE", L"1.", L".5", L"1.2.3", L"E3", L"12E",
        L"0170-12345"}},
  };
  for (const auto& [kind, texts] : kinds) {
    for (const wchar_t* text : texts)
      EXPECT_EQ(ContentOfValue(Concat(L'"', text, L'"')), (CellContent{text, kind})) << ToUtf8(text);
  }
}

}  // namespace
}  // namespace qv
