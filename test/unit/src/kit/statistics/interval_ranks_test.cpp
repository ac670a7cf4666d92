#include "kit/statistics/interval_ranks.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/matchers.h"

namespace {

// norm.ppf(0.975) of SciPy 1.17.1 is 1.959963984540054: of 9 and 10 values, 45 -+ 24.0046, of 9
// pairs, 22.5 -+ 16.544.
TEST(IntervalRanksTest, LimitsLieOutsideTheReach) {
  const IntervalRanks groups(45.0, 12.24744871391589, 0.95);
  EXPECT_EQ(groups.below, 20.0);
  EXPECT_EQ(groups.last, 70.0);
  const IntervalRanks pairs(22.5, 8.440971508067067, 0.95);
  EXPECT_EQ(pairs.below, 5.0);
  EXPECT_EQ(pairs.last, 40.0);
}

TEST(IntervalRanksTest, NoSpreadHasTheMeanAndCertaintyNoEnd) {
  EXPECT_EQ(IntervalRanks(2.5, 0.0, 0.95).below, 2.0);
  EXPECT_EQ(IntervalRanks(2.5, 0.0, 0.95).last, 3.0);
  EXPECT_EQ(IntervalRanks(45.0, 12.2, 1.0).below, -std::numeric_limits<double>::infinity());
  EXPECT_EQ(IntervalRanks(45.0, 12.2, 1.0).last, std::numeric_limits<double>::infinity());
}

}  // namespace
