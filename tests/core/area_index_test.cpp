#include "workbook/area_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace qv {
namespace {

constexpr std::int32_t kLastRow = 1048576;

TEST(AreaIndex, HoldsWhatOneOfTheRectanglesHolds) {
  std::mt19937 random(7);
  const auto pick = [&random](std::int32_t most) {
    return static_cast<std::int32_t>(random() % static_cast<unsigned>(most)) + 1;
  };
  for (int round = 0; round < 50; ++round) {
    std::vector<RangeGeometry> areas(static_cast<std::size_t>(round % 12));
    for (RangeGeometry& area : areas)
      area = {.rows = pick(4), .cols = pick(4), .firstRow = pick(12), .firstCol = pick(12)};
    // A whole column among small ones reaches below all that follow it.
    if (round % 3 == 0) areas.push_back({.rows = kLastRow, .cols = 1, .firstRow = 1, .firstCol = 5});
    const AreaIndex index(areas);
    for (std::int32_t row = 1; row <= 17; ++row) {
      for (std::int32_t col = 1; col <= 17; ++col) {
        const bool holds =
            std::ranges::any_of(areas, [&](const RangeGeometry& area) { return area.Holds(row, col); });
        ASSERT_EQ(index.Holds(row, col), holds) << round << ": " << row << ", " << col;
      }
    }
  }
}

TEST(AreaIndex, KnowsTheEdgesOfTheSheet) {
  EXPECT_FALSE(AreaIndex().Holds(1, 1));
  const RangeGeometry last = {.rows = 1, .cols = 1, .firstRow = kLastRow, .firstCol = 16384};
  const AreaIndex index({&last, 1});
  EXPECT_TRUE(index.Holds(kLastRow, 16384));
  EXPECT_FALSE(index.Holds(kLastRow - 1, 16384));
  EXPECT_FALSE(index.Holds(kLastRow, 16383));
}

}  // namespace
}  // namespace qv
