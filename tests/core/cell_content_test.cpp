#include "workbook/cell_content.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>

namespace qv {
namespace {

TEST(NumberTexts, AreTheShortestThatReadBackAsTheSameNumber) {
  const std::pair<double, const wchar_t*> cases[] = {
      {0, L"0"},        {1200, L"1200"},         {100000, L"100000"},    {-2.5, L"-2.5"},
      {0.1, L"0.1"},    {0.000001, L"0.000001"}, {1e-7, L"1E-07"},       {1e20, L"100000000000000000000"},
      {1e21, L"1E+21"}, {1.5e300, L"1.5E+300"},  {45000.75, L"45000.75"}};
  for (const auto& [number, text] : cases)
    EXPECT_EQ(NumberText(number), text) << number;
}

TEST(NumberTexts, LoseNothing) {
  for (const double number :
       {0.1 + 0.2, 1.0 / 3, std::numeric_limits<double>::max(), 5e-324, -123456789.123456789}) {
    EXPECT_EQ(NumberOfText(NumberText(number)), number) << number;
  }
}

TEST(ErrorWords, AreKnownByTheirNumberOrTheirWholeCode) {
  EXPECT_EQ(ErrorWord(2042), L"#N/A");
  EXPECT_EQ(ErrorWord(static_cast<std::int32_t>(0x800A07D7)), L"#DIV/0!");
  EXPECT_EQ(ErrorWord(2045), L"#SPILL!");
  EXPECT_EQ(ErrorWord(2044), L"#VALUE!");
  EXPECT_EQ(ErrorWord(1), L"#VALUE!");
}

}  // namespace
}  // namespace qv
