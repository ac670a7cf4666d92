#include "kit/statistics/exact_binomial.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

struct TailsCase {
  const char* catches;
  std::int64_t count, n;
  double p, less, greater, twoSided;
  double tolerance = 1e-12;
};

// Python 3.11 in fractions, p as the double that it is; with a billion trials mpmath 1.4.1 at 30
// digits, by the ratios of neighbours, to the accuracy that 1 - p has as a double.
const TailsCase kCases[] = {
    {"above n p", 7, 20, 0.3, 0.772271797418160494, 0.391990187799075994, 0.62949796667667767},
    {"at n p", 6, 20, 0.3, 0.608009812200924006, 0.583629170552518574, 1.0},
    {"none, with a far tail", 0, 10, 0.2, 0.107374182399999985, 1.0, 0.228248064000000005},
    {"all", 10, 10, 0.8, 1.0, 0.10737418240000006, 0.228248063999999981},
    {"outcomes of the same probability", 3, 10, 0.5, 0.171875, 0.9453125, 0.34375},
    {"a far tail of more outcomes", 1, 40, 0.1, 0.0804736960144772091, 0.985219117058565411,
     0.179990119980028327},
    {"far out", 30, 400, 0.25, 9.63322593434967698e-20, 1.0, 1.7652125280524679e-19},
    {"a billion", 300070000, 1000000000, 0.3, 0.999999318672960167, 6.8156321143287215e-7,
     1.3628955198919791e-6, 1e-10},
};

TEST(ExactBinomialTest, TailsAgreeWithFractions) {
  for (const TailsCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const auto tails = ExactBinomialTails(row.count, row.n, row.p);
    ASSERT_TRUE(tails);
    EXPECT_NEAR(tails->less, row.less, row.tolerance * row.less);
    EXPECT_NEAR(tails->greater, row.greater, row.tolerance * row.greater);
    EXPECT_NEAR(tails->twoSided, row.twoSided, row.tolerance * row.twoSided);
  }
  EXPECT_FALSE(ExactBinomialTails(0, 0, 0.5));
  EXPECT_FALSE(ExactBinomialTails(7, kMostExactTrials + 1, 0.5));
}

}  // namespace
