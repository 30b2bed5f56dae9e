#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "workbook/cell_text.h"

namespace qv {
namespace {

TEST(A1, ColumnsCountInLettersWithoutAZero) {
  struct Case {
    std::int32_t row;
    std::int32_t col;
    const wchar_t* address;
  };
  const Case cases[] = {
      {1, 1, L"A1"},    {3, 2, L"B3"},     {9, 26, L"Z9"},
      {9, 27, L"AA9"},  {9, 52, L"AZ9"},   {9, 53, L"BA9"},
      {9, 702, L"ZZ9"}, {9, 703, L"AAA9"}, {1048576, 16384, L"XFD1048576"},
      {3, 0, L"R3C0"},  {3, -1, L"R3C-1"}, {1, std::numeric_limits<std::int32_t>::max(), L"FXSHRXW1"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(A1Address(c.row, c.col), c.address);
}

TEST(A1, UnitIdsNameRowAndColumn) {
  EXPECT_EQ(UnitIdOf(3, 2), L"R3C2");
  EXPECT_EQ(UnitIdOf(1048576, 16384), L"R1048576C16384");
  EXPECT_EQ(UnitIdOf(std::numeric_limits<std::int32_t>::min(), 0), L"R-2147483648C0");
}

}  // namespace
}  // namespace qv
