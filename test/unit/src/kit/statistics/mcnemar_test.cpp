#include "kit/statistics/mcnemar.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "support/matchers.h"

namespace {

struct McNemarCase {
  const char* catches;
  std::int64_t b, c;
  double chiSquare, sig, exact;
};

// (|b - c| - 1)^2 / (b + c) and its tail by mpmath 1.4.1; SciPy 1.17.1: min(1, 2 binom.cdf(min(b,
// c), b + c, 0.5)).
const McNemarCase kCases[] = {
    {"more the one way", 20, 5, 7.84, 0.0051102606608558656, 0.004077315330505371},
    {"more the other", 6, 20, 6.5, 0.0107874492546703566, 0.009355306625366211},
    {"a difference of one is corrected away", 2, 1, 0.0, 1.0, 1.0},
    {"one side empty", 3, 0, 4.0 / 3.0, 0.248213078989923583, 0.25},
    {"equal sides are not corrected past 0", 7, 7, 0.0, 1.0, 1.0},
    {"no change", 0, 0, 0.0, 1.0, 1.0},
    {"millions", 1000300, 999700, 0.1794005, 0.671888948305006442, 0.6718889588687089},
};

TEST(McNemarStatisticTest, FiguresAgreeWithSciPy) {
  for (const McNemarCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const ChiSquareFigures figures = McNemar(row.b, row.c);
    EXPECT_THAT(figures.statistic, IsCloseTo(row.chiSquare));
    EXPECT_THAT(figures.sig, IsCloseTo(row.sig, 1e-13));
    EXPECT_THAT(McNemarExactSig(row.b, row.c), IsCloseTo(row.exact, 1e-11));
  }
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct ChangeCase {
  std::int64_t b, c;
  double midP, ratio, lower, upper;
};

// SciPy 1.17.1: 2 binom.cdf(m, n, 0.5) - binom.pmf(m, n, 0.5), and l / (1 - l) of binomtest(b, b +
// c).proportion_ci(0.95, "exact").
const ChangeCase kChanges[] = {
    {20, 5, 0.0024939179420471204, 4.0, 1.456776504314741, 13.638831336076601},
    {0, 7, 0.0078125, 0.0, 0.0, 0.6938139800965825},
    {7, 0, 0.0078125, kInfinity, 1.4413085188349697, kInfinity},
    {6, 1, 0.0703125, 6.0, 0.7279417951607635, 275.985532838841},
    {3, 3, 1.0, 1.0, 0.1339375881777302, 7.466164006724067},
    {1000300, 999700, 0.671373328455846, 1.000600180054016, 0.9978295512690091, 1.00337850249139},
};

TEST(McNemarStatisticTest, MidPAndOddsOfChangeAgreeWithSciPy) {
  for (const ChangeCase& row : kChanges) {
    SCOPED_TRACE(row.b);
    EXPECT_THAT(McNemarMidP(row.b, row.c), IsCloseTo(row.midP, 1e-11));
    const ChangeOdds odds = OddsOfChange(row.b, row.c, 0.95);
    EXPECT_THAT(odds.ratio, IsCloseTo(row.ratio));
    EXPECT_THAT(odds.lower, IsCloseTo(row.lower, 1e-11));
    EXPECT_THAT(odds.upper, IsCloseTo(row.upper, 1e-11));
  }
  EXPECT_EQ(OddsOfChange(20, 5, 1.0).upper, kInfinity);
}

}  // namespace
