#include "kit/statistics/runs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/matchers.h"

namespace {

struct RunsCase {
  const char* catches;
  std::int64_t runs;
  double n1, n2;
  double mean, standardError, z, sig;
};

// mpmath 1.4.1 at 40 digits, from the formulas; without correction they agree with statsmodels
// 0.15.0, runstest_1samp(x, correction=False).
const RunsCase kCases[] = {
    {"few runs, N = 49 is corrected", 4, 24, 25, 25.4897959183673469, 3.46187662320150493,
     -6.06312650707818048, 1.33500575014205088e-9},
    {"N = 50 is not", 30, 25, 25, 26.0, 3.49927106111882585, 1.14309521329881645,
     0.252999061474684289},
    {"just over half a run", 26, 24, 25, 25.4897959183673469, 3.46187662320150493,
     0.00294755785469056, 0.997648192501132954},
    {"half a run counts as none", 25, 24, 25, 25.4897959183673469, 3.46187662320150493, 0.0, 1.0},
    {"a million of each kind", 999000, 1e6, 1e6, 1000001.0, 707.106604409741742,
     -1.4156281298427218, 0.156884410848865055},
    {"only one number of runs is possible", 2, 1, 1, 2.0, 0.0, 0.0, 1.0},
};

TEST(RunsStatisticTest, TheApproximationAgreesWithTheFormulas) {
  for (const RunsCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const RunsApproximation approximation(row.n1, row.n2);
    EXPECT_THAT(approximation.mean, IsCloseTo(row.mean));
    const NormalFigures figures = approximation.FiguresOf(row.runs);
    EXPECT_THAT(figures.standardError, IsCloseTo(row.standardError));
    EXPECT_NEAR(figures.z, row.z, 1e-13);  // beside the mean z has the digits of its difference
    EXPECT_THAT(figures.sig, IsCloseTo(row.sig, 1e-12));
  }
}

int RunsIn(const std::string& units) {
  int runs = 0;
  for (std::size_t i = 0; i < units.size(); ++i) runs += i == 0 || units[i] != units[i - 1];
  return runs;
}

TEST(RunsStatisticTest, TheLowerTailIsTheShareOfAllOrders) {
  for (std::size_t n1 = 1; n1 <= 5; ++n1) {
    for (std::size_t n2 = 1; n2 <= 5; ++n2) {
      std::vector<double> counts(n1 + n2 + 1, 0.0);
      std::string order = std::string(n1, 'a') + std::string(n2, 'b');
      double all = 0.0;
      do {
        ++counts[static_cast<std::size_t>(RunsIn(order))];
        ++all;
      } while (std::next_permutation(order.begin(), order.end()));
      double upTo = 0.0;
      for (std::size_t r = 0; r < counts.size(); ++r) {
        upTo += counts[r];
        EXPECT_NEAR(RunsLowerTail(static_cast<std::int64_t>(n1), static_cast<std::int64_t>(n2),
                                  static_cast<std::int64_t>(r)),
                    upTo / all, 1e-15)
            << n1 << ' ' << n2 << ' ' << r;
      }
    }
  }
}

// F. S. Swed, C. Eisenhart, Ann. Math. Stat. 14 (1943), table I, m = n = 10 and m = 5, n = 8.
TEST(RunsStatisticTest, TheLowerTailIsThatPublished) {
  EXPECT_NEAR(RunsLowerTail(10, 10, 6), 0.019, 0.0005);
  EXPECT_NEAR(RunsLowerTail(10, 10, 7), 0.051, 0.0005);
  EXPECT_NEAR(RunsLowerTail(5, 8, 4), 0.054, 0.0005);
  EXPECT_NEAR(RunsLowerTail(15, 15, 30), 1.0, 1e-15);
}

struct ExactRunsCase {
  std::int64_t n1, n2, runs;
  double less, greater, twoSided;
};

// Python 3.11 in integers: f(2i), f(2i + 1) of math.comb over comb(n1 + n2, n1).
const ExactRunsCase kExactRuns[] = {
    {5, 8, 3, 0.010101010101010101, 0.998445998445998446, 0.010101010101010101},
    {8, 5, 11, 1.0, 0.016317016317016317, 0.026418026418026418},
    {8, 8, 9, 0.595182595182595183, 0.595182595182595183, 1.0},
    {1, 40, 3, 1.0, 0.951219512195121951, 1.0},
    {24, 26, 35, 0.997120489850357266, 0.00675769259492203171, 0.0098795891473947217},
    {400, 600, 300, 3.03686131972803465e-33, 1.0, 3.11019964635376771e-33},
    {1000, 1000, 1400, 1.0, 2.46533521262599197e-73, 4.93067042525198394e-73},
};

TEST(RunsStatisticTest, ExactTailsAgreeWithIntegers) {
  for (const ExactRunsCase& row : kExactRuns) {
    SCOPED_TRACE(testing::Message() << row.n1 << ' ' << row.n2 << ' ' << row.runs);
    const auto tails = ExactRunsTails(row.n1, row.n2, row.runs);
    ASSERT_TRUE(tails);
    EXPECT_NEAR(tails->less, row.less, 1e-12 * row.less);
    EXPECT_NEAR(tails->greater, row.greater, 1e-12 * row.greater);
    EXPECT_NEAR(tails->twoSided, row.twoSided, 1e-12 * row.twoSided);
  }
  // 2 of C(1000, 500) orders, math.comb in Python 3.11.
  EXPECT_NEAR(ExactRunsTails(500, 500, 2)->less, 7.399507995628054e-300, 1e-311);
  EXPECT_TRUE(ExactRunsTails(1, 99999, 2));
  EXPECT_FALSE(ExactRunsTails(2, 99999, 2));
  EXPECT_FALSE(ExactRunsTails(0, 5, 1));
}

}  // namespace
