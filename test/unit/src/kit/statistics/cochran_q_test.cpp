#include "kit/statistics/cochran_q.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/matchers.h"

namespace {

struct CochranCase {
  const char* catches;
  std::vector<std::int64_t> successes;
  double withinRecords;
  double q, sig;
};

// Python's fractions and mpmath 1.4.1; the first is statsmodels 0.15.0's cochrans_q of the twelve
// records 110 110 100 111 010 110 101 110 110 000 110 110.
const CochranCase kCases[] = {
    {"three fields", {10, 9, 2}, 20, 11.4, 0.00334596545747127277},
    {"two fields: the squared difference", {9, 3}, 12, 3.0, 0.0832645166635504019},
    {"no record with both", {7, 7, 7}, 0, 0.0, 1.0},
    {"counts whose squares pass 2^53",
     {60000123, 60000456, 59999001},
     48e6,
     0.14528325,
     0.92993403542592964},
};

TEST(CochranQStatisticTest, FiguresAgreeWithTheFormula) {
  for (const CochranCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const ChiSquareFigures figures = CochranQ(row.successes, row.withinRecords);
    EXPECT_THAT(figures.statistic, IsCloseTo(row.q));
    EXPECT_THAT(figures.sig, IsCloseTo(row.sig, 1e-13));
  }
  // sqrt(2 * 20 / (12^2 * 3 * 2))
  EXPECT_THAT(CochranPairStandardError(20, 12, 3), IsCloseTo(0.215165741455967605));
}

}  // namespace
