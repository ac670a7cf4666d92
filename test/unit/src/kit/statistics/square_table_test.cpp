#include "kit/statistics/square_table.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "support/matchers.h"

namespace {

using Table = std::vector<std::int64_t>;

// Vision of the right and the left eye, A. Stuart, Biometrika 40 (1953), by statsmodels 0.15.0:
// SquareTable(t, shift_zeros=False).homogeneity("stuart_maxwell") and .symmetry().
TEST(SquareTableTest, FiguresAgreeWithStatsmodels) {
  const Table vision{1520, 266, 124, 66, 234, 1512, 432, 78, 117, 362, 1772, 205, 36, 82, 179, 492};
  const auto overall = StuartMaxwell(vision, 4);
  ASSERT_TRUE(overall);
  EXPECT_THAT(overall->statistic, IsCloseTo(11.95656962298254, 1e-13));
  EXPECT_EQ(overall->degreeOfFreedom, 3);
  EXPECT_THAT(overall->sig, IsCloseTo(0.007533425054800591, 1e-12));
  const auto symmetry = Bowker(vision, 4);
  ASSERT_TRUE(symmetry);
  EXPECT_THAT(symmetry->statistic, IsCloseTo(19.106550215266772));
  EXPECT_EQ(symmetry->degreeOfFreedom, 6);
  EXPECT_THAT(symmetry->sig, IsCloseTo(0.003987419840428568, 1e-12));
}

// 3^2 / 5 + 4^2 / 8; e^-1.9.
TEST(SquareTableTest, EachConnectedPartAndPairHasItsDegreesOfFreedom) {
  const Table parts{9, 4, 0, 0, 0, 1, 8, 0, 0, 0, 0, 0, 7, 0, 6, 0, 0, 0, 5, 0, 0, 0, 2, 0, 3};
  for (const auto& figures : {StuartMaxwell(parts, 5), Bowker(parts, 5)}) {
    ASSERT_TRUE(figures);
    EXPECT_THAT(figures->statistic, IsCloseTo(3.8));
    EXPECT_EQ(figures->degreeOfFreedom, 2);
    EXPECT_THAT(figures->sig, IsCloseTo(0.149568619222635053, 1e-13));
  }
  EXPECT_FALSE(StuartMaxwell(Table{3, 0, 0, 4}, 2));
  EXPECT_FALSE(Bowker(Table{3, 0, 0, 4}, 2));
}

}  // namespace
