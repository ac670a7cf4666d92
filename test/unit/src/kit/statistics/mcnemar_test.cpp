#include "kit/statistics/mcnemar.h"

#include <gtest/gtest.h>

#include <cstdint>

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

}  // namespace
