#include "kit/statistics/chi_square.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/matchers.h"

namespace {

struct FitCase {
  const char* catches;
  std::vector<std::int64_t> observed;
  std::vector<double> proportions;
  double chiSquare, sig;
  std::int64_t lowCells;
  double lowPercentage, smallest;
};

// SciPy 1.17.1: stats.chisquare(observed, expected)
const FitCase kCases[] = {
    {"equal proportions", {10, 20, 30, 40}, {1, 1, 1, 1}, 20.0, 0.00016974243555282632, 0, 0, 25},
    {"proportions are scaled", {10, 20, 30}, {2, 2, 4}, 10.0 / 3.0, 0.1888756028375618, 0, 0, 15},
    {"all expected counts low",
     {7, 3, 4, 5},
     {0.25, 0.25, 0.25, 0.25},
     1.8421052631578947,
     0.6058155006326809,
     4,
     100,
     4.75},
    {"5 is not low, and one cell in two is", {1, 9}, {1, 1}, 6.4, 0.01141203638600166, 0, 0, 5},
    {"an empty category, one of two low", {0, 8}, {1, 3}, 8.0 / 3.0, 0.10247043485974938, 1, 50, 2},
};

TEST(SurelySignificantChiSquareTest, LiesAboveTheQuantileAndNotFar) {
  for (const std::size_t samples : {2, 3, 11, 500, 100000}) {
    for (const double level : {1e-12, 0.01, 0.05, 0.9}) {
      const double bound = SurelySignificantChiSquare(level, samples);
      EXPECT_LT(ChiSquareOf(bound, samples).sig, level * 0.9) << samples << ' ' << level;
      const double df = static_cast<double>(samples) - 1.0;
      EXPECT_LT(bound, 3.0 * QDDistFun::IdfChi(1.0 - level, df) + 3.0) << samples << ' ' << level;
    }
  }
  EXPECT_EQ(SurelySignificantChiSquare(0.0, 3), std::numeric_limits<double>::infinity());
}

TEST(ChiSquareStatisticTest, GoodnessOfFitAgreesWithSciPy) {
  for (const FitCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const GoodnessOfFit fit = ChiSquareGoodnessOfFit(row.observed, row.proportions);
    EXPECT_THAT(fit.figures.statistic, IsCloseTo(row.chiSquare));
    EXPECT_THAT(fit.figures.sig, IsCloseTo(row.sig, 1e-13));
    EXPECT_EQ(fit.expected.lowCells, row.lowCells);
    EXPECT_EQ(fit.expected.LowPercentage(), row.lowPercentage);
    EXPECT_EQ(fit.expected.smallest, row.smallest);
  }
}

}  // namespace
