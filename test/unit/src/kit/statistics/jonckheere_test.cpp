#include "kit/statistics/jonckheere.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/matchers.h"

namespace {

struct JonckheereCase {
  const char* catches;
  double statistic;
  DoubleDouble tiedPairs, tiedTriples;
  std::vector<double> sizes;
  double standardError, z;
};

// Python's fractions and mpmath 1.4.1, from the formula. Knowledge of performance: Hollander and
// Wolfe, table 6.6, J = 79.
const JonckheereCase kCases[] = {
    {"knowledge of performance", 79, 22, 74, {6, 6, 6}, 12.2591502440374044, 2.03929305884471721},
    {"the same without ties", 79, 0, 0, {6, 6, 6}, 12.3693168768529816, 2.02113020863610811},
    {"three values", 2, 0, 0, {2, 1}, 0.816496580927726033, 1.22474487139158905},
    {"two values", 1, 0, 0, {1, 1}, 0.5, 1.0},
    {"two tied values", 0.5, 2, 4, {1, 1}, 0.0, 0.0},
    {"all of many tied", 0.5 * 7 * 9, 16 * 15, 16 * 16 * 15, {7, 9}, 0.0, 0.0},
    // (N^2 - sum n^2) / 4 is off by 1/4, and its variance by 2e-9 of itself.
    {"one beside a hundred million",
     50000001,
     0,
     0,
     {1, 1e8},
     28867513.7481564214,
     3.46410158049673896e-8},
    // n1 n2 / 4, as Mann and Whitney have it
    {"all but one of two millions tied",
     500000500000,
     DoubleDouble::Product(1999999.0, 1999998.0),
     DoubleDouble::Product(1999999.0 * 1999998.0, 1999999.0),
     {1e6, 1e6},
     5e5,
     1.0},
    {"and with ties", 3e7, 90, 900, {1e8, 1}, 28867513.7481564214, -0.692820316099347791},
};

TEST(JonckheereTest, FiguresAgreeWithTheFormula) {
  for (const JonckheereCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const NormalFigures figures =
        JonckheereTerpstra(row.statistic, row.tiedPairs, row.tiedTriples, row.sizes);
    EXPECT_THAT(figures.standardError, IsCloseTo(row.standardError));
    EXPECT_THAT(figures.z, IsCloseTo(row.z));
  }
}

}  // namespace
