#include "kit/statistics/mann_whitney.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

#include "kit/ranks/ties.h"
#include "support/matchers.h"

namespace {

struct ApproximationCase {
  const char* catches;
  double u, n1, n2;
  DoubleDouble tieSum;
  double standardError, z, sig;
};

// mpmath 1.4.1 at 40 digits, from the formula; the first four are SciPy 1.17.1's mannwhitneyu(x, y,
// use_continuity=False, method="asymptotic").
const ApproximationCase kApproximations[] = {
    {"no ties", 14, 4, 5, 0, 4.08248290463863016, 0.979795897113271239, 0.327186877790305647},
    {"ties", 61, 9, 10, 42, 12.209788997702665, 1.3104239559758553, 0.19005245385413927},
    {"one against many", 363, 1, 400, 0, 115.75836902790226, 1.408105533697617,
     0.15909982270265588},
    {"all values equal", 6, 3, 4, 336, 0, 0, 1},
    {"a hundred million each", 4999499999500000, 1e8, 1e8, 0, 408248291484.483741,
     -1.22474609307459521, 0.220670901475221417},
    // N^3 - N - T is 3 (N - 1) N, 16 digits below N^3: the variance is n1 n2 / 4.
    {"all but one of them tied", 5000000050000000, 1e8, 1e8, TieTerm(199999999), 5e7, 1,
     0.317310507862914},
};

TEST(MannWhitneyStatisticTest, TheApproximationAgreesWithSciPy) {
  for (const ApproximationCase& row : kApproximations) {
    SCOPED_TRACE(row.catches);
    const NormalFigures figures = MannWhitneyApproximation(row.u, row.n1, row.n2, row.tieSum);
    EXPECT_THAT(figures.standardError, IsCloseTo(row.standardError));
    EXPECT_THAT(figures.z, IsCloseTo(row.z));
    EXPECT_THAT(figures.sig, IsCloseTo(row.sig, 1e-13));
  }
  EXPECT_EQ(MannWhitneyU(2, 3, 3), 6.0);  // the first group has the ranks 1 and 2
}

/// Counts every arrangement of a and b units by its U: pairs in which the unit of the first group
/// stands above that of the second.
std::vector<double> CountedFrequencies(int a, int b) {
  std::vector<double> counts(static_cast<std::size_t>(a * b) + 1, 0.0);
  for (unsigned places = 0; places < 1U << (a + b); ++places) {
    if (std::popcount(places) != a) continue;
    std::size_t u = 0;
    std::size_t below = 0;
    for (int place = 0; place < a + b; ++place) {
      if ((places >> place & 1U) != 0) {
        u += below;
      } else {
        ++below;
      }
    }
    ++counts[u];
  }
  return counts;
}

TEST(MannWhitneyStatisticTest, FrequenciesAreThoseOfAllArrangements) {
  for (int a = 1; a <= 6; ++a) {
    for (int b = 1; b <= 6; ++b) {
      EXPECT_EQ(MannWhitneyFrequencies(a, b), CountedFrequencies(a, b)) << a << ' ' << b;
    }
  }
}

TEST(MannWhitneyStatisticTest, AllFrequenciesOfTheLargestGroupsSumToTheBinomialCoefficient) {
  const std::vector<double> even = MannWhitneyFrequencies(20, 20);
  EXPECT_EQ(std::accumulate(even.begin(), even.end(), 0.0), 137846528820.0);  // C(40, 20)
  const std::vector<double> single = MannWhitneyFrequencies(400, 1);
  EXPECT_EQ(single, std::vector<double>(401, 1.0));
}

// H. B. Mann, D. R. Whitney, Ann. Math. Stat. 18 (1947), table I: P(U <= u) for u = 0, 1, ...
struct TableColumn {
  int m, n;
  std::vector<double> tails;
};
const TableColumn kTable[] = {
    {1, 3, {0.250, 0.500, 0.750}},
    {2, 3, {0.100, 0.200, 0.400, 0.600}},
    {3, 3, {0.050, 0.100, 0.200, 0.350, 0.500, 0.650}},
    {4, 4, {0.014, 0.029, 0.057, 0.100, 0.171, 0.243, 0.343, 0.443, 0.557}},
};

TEST(MannWhitneyStatisticTest, TailsAreThosePublished) {
  for (const TableColumn& column : kTable) {
    for (std::size_t u = 0; u < column.tails.size(); ++u) {
      const double twice = 2.0 * column.tails[u];
      EXPECT_NEAR(ExactMannWhitneyP(column.m, column.n, static_cast<double>(u)),
                  std::min(1.0, twice), 0.001)
          << column.m << ' ' << column.n << ' ' << u;
    }
  }
}

struct TailCase {
  const char* catches;
  std::int64_t a, b;
  double u, p;
};

// Frequencies of 3 and 3 units: 1 1 2 3 3 3 3 2 1 1 of 20; of 2 and 2: 1 1 2 1 1 of 6.
const TailCase kTails[] = {
    {"lower tail", 3, 3, 1.0, 0.2},
    {"upper tail", 3, 3, 8.0, 0.2},
    {"just above the middle the upper tail is the smaller", 3, 3, 5.0, 1.0},
    {"and just below it the lower", 3, 3, 4.0, 1.0},
    {"a doubled tail above 1 is cut", 2, 2, 2.0, 1.0},
    {"a lower tail stops at the integer below", 3, 3, 1.5, 0.2},
    {"an upper tail starts at the integer above", 3, 3, 7.5, 0.2},
    {"every value of U is as frequent as any other", 1, 4, 1.0, 0.8},
    {"below every value", 3, 3, -0.5, 0.0},
    {"above every value", 3, 3, 9.5, 0.0},
    // SciPy 1.17.1: mannwhitneyu(range(1, 21), [x + 0.5 for x in range(5, 25)], method="exact")
    {"the largest groups", 20, 20, 120.0, 0.030411256038764864},
};

TEST(MannWhitneyStatisticTest, TheSmallerTailIsDoubledAndCut) {
  for (const TailCase& row : kTails) {
    EXPECT_NEAR(ExactMannWhitneyP(row.a, row.b, row.u), row.p, 1e-13) << row.catches;
  }
}

TEST(MannWhitneyStatisticTest, TheOtherGroupFirstGivesTheSame) {
  for (double u = 0.0; u <= 35.0; u += 0.5) {
    const double p = ExactMannWhitneyP(5, 7, u);
    EXPECT_EQ(ExactMannWhitneyP(7, 5, u), p) << u;
    EXPECT_EQ(ExactMannWhitneyP(5, 7, 35.0 - u), p) << u;
  }
}

TEST(MannWhitneyStatisticTest, NoGroupHasNoDistribution) {
  EXPECT_TRUE(MannWhitneyFrequencies(0, 5).empty());
  EXPECT_TRUE(std::isnan(ExactMannWhitneyP(5, 0, 0.0)));
  EXPECT_TRUE(std::isnan(ExactMannWhitneyP(-1, -1, 0.0)));
  EXPECT_TRUE(std::isnan(ExactMannWhitneyP(3, 3, std::numeric_limits<double>::quiet_NaN())));
}

}  // namespace
