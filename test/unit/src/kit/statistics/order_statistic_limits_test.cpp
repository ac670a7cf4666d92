#include "kit/statistics/order_statistic_limits.h"

#include <gtest/gtest.h>

#include "support/matchers.h"

namespace {

struct MedianCase {
  const char* catches;
  std::int64_t n;
  double level;
  std::int64_t lower, upper;
  double attained;
};

// Hand counts of binomial(n, 1/2): the level is 1 - 2 P(B <= lower - 1).
const MedianCase kCases[] = {
    {"the outermost values miss the level", 5, 0.95, 1, 5, 1 - 2.0 / 32},
    {"the first n with the level", 6, 0.95, 1, 6, 1 - 2.0 / 64},
    {"the next ones would miss it", 8, 0.95, 1, 8, 1 - 2.0 / 256},
    {"the next ones have it", 9, 0.95, 2, 8, 1 - 2 * 10.0 / 512},
    {"a level that is met but for rounding", 9, 1 - 20.0 / 512, 2, 8, 1 - 20.0 / 512},
    {"two values", 2, 0.95, 1, 2, 0.5},
};

TEST(OrderStatisticLimitsTest, AreTheNarrowestThatHaveTheLevel) {
  for (const MedianCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const auto limits = MedianLimits(row.n, row.level);
    ASSERT_TRUE(limits);
    EXPECT_EQ(limits->lower, row.lower);
    EXPECT_EQ(limits->upper, row.upper);
    EXPECT_THAT(limits->attainedLevel, IsCloseTo(row.attained));
  }
  EXPECT_FALSE(MedianLimits(1, 0.95));  // one value encloses nothing
}

}  // namespace
