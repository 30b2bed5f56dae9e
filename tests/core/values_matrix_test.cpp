#include "tools/values_matrix.h"

#include <gtest/gtest.h>

#include <string>

namespace qv {
namespace {

using Kind = CellContentKind;

TEST(ValuesMatrices, TakeEveryScalarAsWhatItIs) {
  const auto matrix =
      ParseValuesMatrix(LR"([["text","=A1+1","",12.50,-3e2,true,false,null],["a\"b\nc\u00e9"]])", false);
  ASSERT_TRUE(matrix);
  EXPECT_EQ((*matrix)[0], (std::vector<CellContent>{{L"text", Kind::kTyped},
                                                    {L"=A1+1", Kind::kFormula},
                                                    {L"", Kind::kText},
                                                    {L"12.50", Kind::kNumber},
                                                    {L"-3e2", Kind::kNumber},
                                                    {L"TRUE", Kind::kFlag},
                                                    {L"FALSE", Kind::kFlag},
                                                    {L"", Kind::kText}}));
  EXPECT_EQ((*matrix)[1], (std::vector<CellContent>{{L"a\"b\ncé", Kind::kTyped}}));
}

TEST(ValuesMatrices, KeepANumberBeyondEveryCellAsText) {
  EXPECT_EQ((*ParseValuesMatrix(L"[[1e999]]", false))[0][0], (CellContent{L"1e999", Kind::kTyped}));
}

TEST(ValuesMatrices, TakeAPlainListAsARowOrAColumn) {
  EXPECT_EQ(ParseValuesMatrix(LR"(["a",1])", false)->size(), 1u);
  EXPECT_EQ(ParseValuesMatrix(LR"(["a",1])", true)->size(), 2u);
  EXPECT_EQ(ParseValuesMatrix(LR"([["a",1]])", true)->size(), 1u);
}

TEST(ValuesMatrices, EndBehindTheirLimit) {
  std::wstring items = L"1";
  for (std::size_t i = 1; i < kMaxValues; ++i)
    items += L",1";
  EXPECT_EQ(CountOf(*ParseValuesMatrix(L"[" + items + L"]", false)), kMaxValues);
  EXPECT_EQ(CountOf(*ParseValuesMatrix(L"[[" + items + L",1,1,1]]", false)), kMaxValues + 1);
  EXPECT_EQ(ParseValuesMatrix(L"[[" + items + L"],[1],[2]]", false)->size(), 2u);
}

TEST(ValuesMatrices, MayHaveRowsOfDifferentLengthAndEmptyOnes) {
  const auto matrix = ParseValuesMatrix(L"[[],[1,2],[3]]", false);
  ASSERT_TRUE(matrix);
  EXPECT_EQ((*matrix)[0].size(), 0u);
  EXPECT_EQ((*matrix)[1].size(), 2u);
}

TEST(ValuesMatrices, AreRefusedWhenTheyAreNoneOrMalformed) {
  for (const std::wstring json :
       {L"", L"[]", L"5", L"\"text\"", L"{\"a\":[]}", L"[[1],2]", L"[[1],[[2]]]", L"[[{}]]", L"[[1]",
        L"[[1],]", L"[[01]]", L"[[1 2]]", L"[[nul]]", L"null"}) {
    EXPECT_FALSE(ParseValuesMatrix(json, false)) << ::testing::PrintToString(json);
  }
  EXPECT_FALSE(ParseValuesMatrix(std::wstring(300000, L'['), false));
}

}  // namespace
}  // namespace qv
