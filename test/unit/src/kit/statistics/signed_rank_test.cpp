#include "kit/statistics/signed_rank.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/matchers.h"

namespace {

struct SignedRankCase {
  const char* catches;
  double rankSum, n, tieSum;
  double standardError, z, sig;
};

const double kNan = std::numeric_limits<double>::quiet_NaN();

// mpmath 1.4.1 at 40 digits, from the formula; the first two are SciPy 1.17.1's wilcoxon(d,
// correction=False, mode="approx") of depression scores (Hollander and Wolfe, table 3.1) and of
// hours of sleep (Student, Biometrika 6 (1908)).
const SignedRankCase kCases[] = {
    {"no ties", 5, 9, 0, 8.44097150806706609, -2.07322107215682325, 0.0381517101734151255},
    {"one pair tied", 45, 9, 6, 8.43356389671650024, 2.66791125027938496, 0.00763244164820552657},
    {"all of one size", 44, 10, 990, 8.69626356546304316, 1.8973665961010276,
     0.0577795711235972437},
    {"a hundred million", 2500500e9, 1e8, 1e15, 288675136723.791999, 1.73196419225526294,
     0.0832799381273090857},
    {"no difference has no figures", 0, 0, 0, 0, kNan, kNan},
};

TEST(SignedRankTest, FiguresAgreeWithTheFormula) {
  for (const SignedRankCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const NormalFigures figures = WilcoxonSignedRank(row.rankSum, row.n, row.tieSum);
    EXPECT_THAT(figures.standardError, IsCloseTo(row.standardError));
    EXPECT_THAT(figures.z, IsCloseTo(row.z));
    EXPECT_THAT(figures.sig, IsCloseTo(row.sig, 1e-13));
  }
}

// SciPy 1.17.1: wilcoxon(d, zero_method="pratt", correction=False, method="approx",
// alternative="greater") of d = 0, 0, 1.5, -0.5, 2, 3, -1.5, 4, 5, 0.5, 7: statistic and
// zstatistic, and the two-sided p. The others by Python's fractions and mpmath 1.4.1: the sums of
// squares of 1 to N and of 1 to the zeros are subtracted there.
TEST(SignedRankTest, PrattCountsZerosAmongTheRanks) {
  const PrattFigures small = PrattSignedRank(40, 7, 9, 2, 12);
  EXPECT_EQ(small.statistic, 54.0);
  EXPECT_THAT(small.figures.z, IsCloseTo(2.0124611797498106));
  EXPECT_THAT(small.figures.sig, IsCloseTo(0.0441713449084426, 1e-13));
  const PrattFigures one = PrattSignedRank(1, 1, 1, 1e6, 0);
  EXPECT_EQ(one.statistic, 1000001.0);
  EXPECT_THAT(one.figures.standardError, IsCloseTo(500000.5));
  EXPECT_EQ(one.figures.z, 1.0);
  EXPECT_THAT(RankBiserial(40, 9), IsCloseTo(7.0 / 9.0));
}

}  // namespace
