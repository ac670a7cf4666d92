#include "kit/statistics/sign_flip.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace {

using Ties = std::vector<std::int64_t>;

/// 500 units: runs of four tied ones, each followed by one that ties with none.
Ties FoursAndOnes() {
  Ties ties;
  for (int i = 0; i < 100; ++i) ties.insert(ties.end(), {4, 1});
  return ties;
}

struct SignedRankCase {
  const char* catches;
  Ties ties;
  std::int64_t twiceSum;
  double lower, point;
};

// Whole numbers of Python 3.11: p = 1, for each unit of twice the mid-rank r: p += p << (r * 512);
// the 512 bits at s are the outcomes of the sum s. The first is Hollander and Wolfe, table 3.1,
// whose P is .020.
const SignedRankCase kSignedRanks[] = {
    {"without ties", Ties(9, 1), 10, 10.0 / 512, 3.0 / 512},
    {"one unit", {1}, 0, 0.5, 0.5},
    {"a sum that cannot be", {1, 2, 3}, 9, 0.09375, 0.0},
    {"listed", {2, 3, 1, 4, 1, 2, 2, 1}, 60, 0.0239410400390625, 0.001495361328125},
    {"not listed", {2, 3, 1, 4, 1, 2, 2, 1, 1}, 60, 0.01256561279296875, 0.00077056884765625},
    {"one size", {500}, 100200, 4.4700332711266337e-6, 1.5442550112234927e-6},
    {"far out", FoursAndOnes(), 30000, 3.7151604952485661e-58, 6.1717312605666087e-60},
    {"the end", FoursAndOnes(), 0, 3.0549363634996047e-151, 3.0549363634996047e-151},
    {"the middle", FoursAndOnes(), 125250, 0.50015414043095077, 0.00030828086190153357},
};

void ExpectRelatively(double actual, double expected) {
  EXPECT_LE(std::abs(actual - expected), 1e-14 * expected) << actual << " for " << expected;
}

TEST(SignFlipTest, TailsOfSignedRanksAgreeWithCounting) {
  for (const SignedRankCase& row : kSignedRanks) {
    SCOPED_TRACE(row.catches);
    const auto distribution = SignFlipDistribution::OfTwiceMidRanks(row.ties);
    const ExactTails tails = distribution.TailsOf(row.twiceSum);
    ExpectRelatively(tails.less, row.lower);
    ExpectRelatively(tails.greater, 1.0 - row.lower + row.point);
    ExpectRelatively(tails.twoSided, std::min(1.0, 2.0 * row.lower));
    ExpectRelatively(distribution.At(row.twiceSum), row.point);
    const std::int64_t mirrored = distribution.Largest() - row.twiceSum;
    EXPECT_EQ(distribution.TailsOf(mirrored).greater, tails.less);
  }
}

// The 5 % points of R. L. McCornack, JASA 60 (1965).
TEST(SignFlipTest, PublishedPointsAreTheLastBelowTheirLevel) {
  for (const auto& [n, sum] : {std::pair{10, 8}, {20, 52}}) {
    const auto ranks = SignFlipDistribution::OfRanks(n);
    EXPECT_LE(2.0 * ranks.UpTo(sum), 0.05);
    EXPECT_GT(2.0 * ranks.UpTo(sum + 1), 0.05);
    EXPECT_EQ(ranks.UpTo(-1), 0.0);
    EXPECT_EQ(ranks.UpTo(ranks.Largest()), 1.0);
  }
}

}  // namespace
