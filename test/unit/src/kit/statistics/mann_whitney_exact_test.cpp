#include "kit/statistics/mann_whitney_exact.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

namespace {

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

TEST(MannWhitneyExactTest, FrequenciesAreThoseOfAllArrangements) {
  for (int a = 1; a <= 6; ++a) {
    for (int b = 1; b <= 6; ++b) {
      EXPECT_EQ(MannWhitneyFrequencies(a, b), CountedFrequencies(a, b)) << a << ' ' << b;
    }
  }
}

TEST(MannWhitneyExactTest, AllFrequenciesOfTheLargestGroupsSumToTheBinomialCoefficient) {
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

TEST(MannWhitneyExactTest, TailsAreThosePublished) {
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

TEST(MannWhitneyExactTest, TheSmallerTailIsDoubledAndCut) {
  for (const TailCase& row : kTails) {
    EXPECT_NEAR(ExactMannWhitneyP(row.a, row.b, row.u), row.p, 1e-13) << row.catches;
  }
}

TEST(MannWhitneyExactTest, TheOtherGroupFirstGivesTheSame) {
  for (double u = 0.0; u <= 35.0; u += 0.5) {
    const double p = ExactMannWhitneyP(5, 7, u);
    EXPECT_EQ(ExactMannWhitneyP(7, 5, u), p) << u;
    EXPECT_EQ(ExactMannWhitneyP(5, 7, 35.0 - u), p) << u;
  }
}

TEST(MannWhitneyExactTest, NoGroupHasNoDistribution) {
  EXPECT_TRUE(MannWhitneyFrequencies(0, 5).empty());
  EXPECT_TRUE(std::isnan(ExactMannWhitneyP(5, 0, 0.0)));
  EXPECT_TRUE(std::isnan(ExactMannWhitneyP(-1, -1, 0.0)));
  EXPECT_TRUE(std::isnan(ExactMannWhitneyP(3, 3, std::numeric_limits<double>::quiet_NaN())));
}

}  // namespace
