#include "kit/statistics/binomial.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/matchers.h"

namespace {

struct BinomialCase {
  const char* catches;
  std::int64_t count, n;
  double p;
  double standardError, z, sig;
  double lower, upper;
};

// mpmath 1.4.1 at 40 digits, z = (x - n p -+ 1/2) / sqrt(n p (1 - p)); SciPy 1.17.1 binom.cdf(x, n,
// p) and binom.sf(x - 1, n, p).
const BinomialCase kCases[] = {
    {"above the mean", 18, 25, 0.5, 2.5, 2.0, 0.0455002638963584144, 0.9926833510398865,
     0.021642625331878662},
    {"below it", 7, 25, 0.5, 2.5, -2.0, 0.0455002638963584144, 0.021642625331878662,
     0.9926833510398865},
    {"an uneven p", 2, 20, 0.3, 2.04939015319191965, -1.70782512765993297, 0.0876687951299293239,
     0.03548313229846864, 0.9923627402258},
    {"half a unit beside the mean counts as none", 1, 1, 0.5, 0.5, 0.0, 1.0, 1.0, 0.5},
    {"a million", 500900, 1000000, 0.5, 500.0, 1.799, 0.0720186807116906238, 0.9641485865565544,
     0.036009313838238806},
    {"a rare success", 60, 100000, 0.001, 9.99499874937460921, -3.95197648248545622,
     7.75083593508274779e-05, 1.072309721865002e-05, 0.9999937132948267},
};

TEST(BinomialStatisticTest, FiguresAgreeWithTheFormulaAndSciPy) {
  for (const BinomialCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const NormalFigures figures = BinomialApproximation(row.count, row.n, row.p);
    EXPECT_THAT(figures.standardError, IsCloseTo(row.standardError));
    EXPECT_THAT(figures.z, IsCloseTo(row.z));
    EXPECT_THAT(figures.sig, IsCloseTo(row.sig, 1e-13));
    const auto tails = TailsOfCount(row.count, row.n, row.p);
    ASSERT_TRUE(tails);
    EXPECT_THAT(tails->lower, IsCloseTo(row.lower, 1e-12));
    EXPECT_THAT(tails->upper, IsCloseTo(row.upper, 1e-12));
  }
  EXPECT_FALSE(TailsOfCount(1, 2, 1.5));
}

}  // namespace
