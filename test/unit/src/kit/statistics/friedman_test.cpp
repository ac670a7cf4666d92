#include "kit/statistics/friedman.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/matchers.h"

namespace {

struct FriedmanCase {
  const char* catches;
  std::vector<double> rankSums;
  double n;
  DoubleDouble tieSum;
  double chiSquare, sig, kendallsW;
};

// Python's fractions and mpmath 1.4.1. Rounding first base: Hollander and Wolfe, table 7.1, where
// X = 11.1.
const FriedmanCase kCases[] = {
    {"rounding first base",
     {53, 47, 32},
     22,
     24,
     11.1428571428571429,
     0.00380504077551136184,
     0.253246753246753247},
    {"full agreement", {4, 8, 12}, 4, 0, 8, 0.0183156388887341803, 1},
    {"every record one tie", {12, 12, 12}, 6, 144, 0, 1, 0},
    // 1 - T / (n k (k^2 - 1)) keeps 8 digits of the correction.
    {"a hundred million records, one without ties",
     {200000001, 2e8, 199999999},
     1e8,
     2399999976,
     2,
     0.367879441171442322,
     1e-8},
    {"three million times as many",
     {6000000000000003, 6000000000000002, 6000000000000001},
     3000000000000001,
     72e15,
     2,
     0.367879441171442322,
     1.0 / 3000000000000001},
    {"and none with ties", {200100000, 2e8, 199900000}, 1e8, 0, 200, 3.72007597602083596e-44, 1e-6},
};

TEST(FriedmanTest, FiguresAgreeWithTheFormula) {
  for (const FriedmanCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const ChiSquareFigures figures = Friedman(row.rankSums, row.n, row.tieSum);
    EXPECT_THAT(figures.statistic, IsCloseTo(row.chiSquare));
    EXPECT_THAT(figures.sig, IsCloseTo(row.sig, 1e-12));
    EXPECT_THAT(KendallsW(figures.statistic, row.n, 3), IsCloseTo(row.kendallsW));
  }
  EXPECT_THAT(FriedmanPairStandardError(4, 10), IsCloseTo(0.577350269189625765));  // sqrt(1 / 3)
}

struct ConcordanceCase {
  const char* catches;
  std::vector<double> rankSums;
  double n, tieSum, f, sig, meanSpearman;
};

// Python's fractions and mpmath 1.4.1. Three rankings of four: the mean of SciPy 1.17.1's spearmanr
// over the three pairs, and f.sf(2.5, 3, 6).
const ConcordanceCase kConcordances[] = {
    {"ties", {53, 47, 32}, 22, 24, 7.121739130434783, 0.0021712983876075208, 0.21768707482993196},
    {"three rankings", {7, 4, 8, 11}, 3, 0, 2.5, 0.15649013194452378, 1.0 / 3.0},
    {"one disagrees", {1000001, 1999999, 3e6}, 1e6, 0, 999999000001.0, 0, 0.999999},
};

TEST(FriedmanTest, ImanDavenportAndMeanSpearmanAgreeWithTheFormula) {
  for (const ConcordanceCase& row : kConcordances) {
    SCOPED_TRACE(row.catches);
    const auto figures = FindConcordance(row.rankSums, row.n, row.tieSum);
    ASSERT_TRUE(figures && figures->imanDavenport);
    EXPECT_THAT(figures->meanSpearman, IsCloseTo(row.meanSpearman));
    EXPECT_THAT(figures->imanDavenport->f, IsCloseTo(row.f));
    EXPECT_THAT(figures->imanDavenport->sig, IsCloseTo(row.sig, 1e-12));
  }
}

}  // namespace
