#include "kit/statistics/marginal_homogeneity.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/matchers.h"

namespace {

// Python's fractions and mpmath 1.4.1: T = 66 for scores 1 to 3, E = 79.5, V = 13.25.
TEST(MarginalHomogeneityStatisticTest, FiguresAgreeWithTheFormulaWhereverTheScoresStart) {
  const std::vector<std::int64_t> table{20, 10, 5, 3, 30, 15, 0, 5, 40};
  for (const double start : {1.0, 1e9 + 1.0, 1e15 + 1.0}) {
    SCOPED_TRACE(start);
    const std::vector<double> scores{start, start + 1.0, start + 2.0};
    const MarginalHomogeneity result = TestMarginalHomogeneity(scores, table);
    EXPECT_THAT(result.statistic, IsCloseTo(66.0 + 38.0 * (start - 1.0)));
    EXPECT_THAT(result.figures.standardError, IsCloseTo(3.64005494464025914));
    EXPECT_THAT(result.figures.z, IsCloseTo(-3.70873522661460365));
    EXPECT_THAT(result.figures.sig, IsCloseTo(0.000208297099870014161, 1e-13));
  }
}

TEST(MarginalHomogeneityStatisticTest, AFilledDiagonalIsHomogeneous) {
  const std::vector<double> scores{1.0, 2.0};
  const std::vector<std::int64_t> table{3, 0, 0, 4};
  EXPECT_EQ(TestMarginalHomogeneity(scores, table).figures.z, 0.0);
  EXPECT_EQ(TestMarginalHomogeneity(scores, table).figures.sig, 1.0);
}

}  // namespace
