#include "kit/statistics/mann_whitney_exact.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <numeric>
#include <vector>

namespace {

using Runs = std::vector<TiedUnits>;

Runs Repeated(std::size_t times, const Runs& some) {
  Runs runs;
  for (std::size_t i = 0; i < times; ++i) runs.insert(runs.end(), some.begin(), some.end());
  return runs;
}

Runs Joined(const std::vector<Runs>& parts) {
  Runs runs;
  for (const Runs& part : parts) runs.insert(runs.end(), part.begin(), part.end());
  return runs;
}

struct ExactCase {
  const char* catches;
  Runs runs;
  std::array<double, 4> sigs;  // two-sided, less, greater, point
};

// Python 3.11, whole numbers: the coefficient of x^n1 in the product over the runs of the sum over
// i of C(t, i) x^i q^(doubled U), over C(n, n1). The first is also SciPy 1.17.1's
// permutation_test(([1,2,2,3,3,3,4,5], [2,3,4,4,5,5,6]), U, permutation_type="independent",
// n_resamples=inf), for the two-sided value with |U - 28|.
const ExactCase kCases[] = {
    {"ties",
     {{1, 0}, {2, 1}, {3, 1}, {1, 2}, {1, 2}, {0, 1}},
     {0.099766899766899767, 0.96643356643356643, 0.055944055944055944, 0.022377622377622378}},
    {"the other group is the smaller one",
     {{0, 1}, {1, 2}, {1, 3}, {2, 1}, {2, 1}, {1, 0}},
     {0.099766899766899767, 0.055944055944055944, 0.96643356643356643, 0.022377622377622378}},
    {"two-sided is no doubled tail",
     {{0, 1}, {0, 1}, {3, 0}, {2, 1}},
     {0.39285714285714286, 0.21428571428571429, 0.89285714285714286, 0.10714285714285714}},
    {"a run without units, and nothing as far on the other side",
     {{3, 0}, {0, 0}, {0, 4}},
     {1.0 / 35, 1.0, 1.0 / 35, 1.0 / 35}},
    {"all tie", {{3, 4}}, {1.0, 1.0, 1.0, 1.0}},
    {"at the mean", {{1, 0}, {0, 2}, {1, 0}}, {1.0, 4.0 / 6, 4.0 / 6, 2.0 / 6}},
    {"the limit, with ties",
     Joined({Repeated(40, {{1, 0}, {0, 1}}),
             Repeated(10, {{3, 2}}),
             Repeated(10, {{0, 1}, {1, 0}}),
             Repeated(10, {{1, 1}}),
             {{10, 20}}}),
     {0.31072246879595218, 0.84493068065337565, 0.15536123439797609, 0.00029191505135173514}},
    {"the limit, unequal groups",
     Joined({Repeated(200, {{0, 5}}), {{1, 0}, {2, 3}, {5, 7}}, Repeated(5, {{0, 48}})}),
     {0.0019232361613042401, 0.00095763747699682841, 0.99904433769279109, 1.9751697879194354e-6}},
    {"the smallest tail",
     Joined({Repeated(100, {{1, 0}}), Repeated(100, {{0, 1}})}),
     {2.2087606931995026e-59, 1.0, 1.1043803465997513e-59, 1.1043803465997513e-59}},
};

TEST(MannWhitneyExactTest, AllDivisionsOfTheUnitsAreEquallyLikely) {
  for (const ExactCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const MannWhitneyExact exact = ConditionalMannWhitney(row.runs);
    const double sigs[] = {exact.sigs.twoSided, exact.sigs.less, exact.sigs.greater, exact.point};
    for (std::size_t i = 0; i < row.sigs.size(); ++i) {
      EXPECT_NEAR(sigs[i] / row.sigs[i], 1.0, 1e-12) << i;
    }
  }
}

TEST(MannWhitneyExactTest, TheDistributionWithoutTiesIsThatOfTheUntiedUnits) {
  // H. B. Mann, D. R. Whitney (1947): 1 1 2 3 3 3 3 2 1 1 of 20.
  const std::vector<double> counts{1, 1, 2, 3, 3, 3, 3, 2, 1, 1};
  const std::vector<double> three = MannWhitneyProbabilities(3, 3);
  ASSERT_EQ(three.size(), counts.size());
  for (std::size_t u = 0; u < counts.size(); ++u) EXPECT_DOUBLE_EQ(three[u], counts[u] / 20);
  EXPECT_EQ(MannWhitneyProbabilities(1, 10000), std::vector<double>(10001, 1.0 / 10001));

  const Runs apart = Joined({Repeated(100, {{1, 0}}), Repeated(100, {{0, 1}})});
  const std::vector<double> hundred = MannWhitneyProbabilities(100, 100);
  EXPECT_NEAR(std::accumulate(hundred.begin(), hundred.end(), 0.0), 1.0, 1e-12);
  EXPECT_DOUBLE_EQ(hundred.back(), ConditionalMannWhitney(apart).point);
}

}  // namespace
