#include "tests/independent/hodges_lehmann_groups.h"

#include <cmath>
#include <random>

#include "kit/statistics/mann_whitney.h"
#include "support/group_run.h"

namespace {

constexpr const char* kEntry = "IHodgesLehmannEstimateGroups";

AlgorithmElement RunAt(double confidenceLevel, const Rows& rows) {
  const TestSettings settings = Entry("confidenceLevel", confidenceLevel, kEntry, GroupedEntry());
  return AlgorithmElement::AllOf(RunDocument(GroupedVariables(), rows, settings)).front();
}

struct EstimateCase {
  const char* catches;
  Sample first, second;
  double confidence, estimate, lower, upper;
};

// The sorted list of differences in Python, with the standard error from NumPy 2 and the quantile
// from SciPy 1.17.1, norm.ppf.
const EstimateCase kCases[] = {
    {"an even number of differences", kTiedFirst, kTiedSecond, 0.95, 2, -1, 5.5},
    {"a wider interval", kTiedFirst, kTiedSecond, 0.99, 2, -2.5, 7},
    {"a narrow one", kTiedFirst, kTiedSecond, 0.5, 2, 1, 3},
    {"no ties", kUntiedFirst, kUntiedSecond, 0.95, 2.4999999999999996, -3.3000000000000003,
     6.8999999999999995},
    {"the interval ends at the extremes", {1, 2}, {5, 9}, 0.95, 5.5, 3, 8},
    {"an odd number of differences", {1}, {2, 4, 8}, 0.95, 3, 1, 7},
    {"a single difference", {1}, {4}, 0.95, 3, 3, 3},
    {"all values tied: no spread", {2, 2}, {2, 2}, 0.95, 0, 0, 0},
    {"certainty takes everything", kTiedFirst, kTiedSecond, 1.0, 2, -8.5, 11},
};

TEST(HodgesLehmannGroupsTest, FiguresAreThoseOfTheSortedDifferences) {
  for (const EstimateCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    ExpectFigures(RunAt(row.confidence, GroupedRows({row.first, row.second})),
                  {{"Estimate", row.estimate}, {"Lower", row.lower}, {"Upper", row.upper}});
    ExpectFigures(
        RunAt(row.confidence, GroupedRows({row.second, row.first})),
        {{"Estimate", 0.0 - row.estimate}, {"Lower", 0.0 - row.upper}, {"Upper", 0.0 - row.lower}});
  }
}

/// Every difference, as often as the product of its weights says, ascending.
Sample ListedDifferences(const Rows& rows) {
  Sample all;
  for (const std::vector<double>& from : rows) {
    for (const std::vector<double>& to : rows) {
      if (from[1] != 0.0 || to[1] != 1.0) continue;
      all.insert(all.end(), static_cast<std::size_t>(from[2] * to[2]), to[0] - from[0]);
    }
  }
  std::sort(all.begin(), all.end());
  return all;
}

/// Sum of t^3 - t over the values, t being their weight.
double TieSum(const Rows& rows) {
  double sum = 0.0;
  double t = 0.0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    t += rows[i][2];
    if (i + 1 < rows.size() && rows[i + 1][0] == rows[i][0]) continue;
    sum += t * t * t - t;
    t = 0.0;
  }
  return sum;
}

TEST(HodgesLehmannGroupsTest, WeightedDifferencesAreSelectedAsFromTheirList) {
  std::mt19937 random(19630201);
  for (int round = 0; round < 200; ++round) {
    Rows rows{{1, 0, 1}, {2, 1, 1}};
    for (std::size_t i = random() % 12; i > 0; --i) {
      rows.push_back({0.1 * static_cast<double>(random() % 20), static_cast<double>(random() % 2),
                      static_cast<double>(random() % 4)});
    }
    rows = SortedBy(0, rows);
    const Sample listed = ListedDifferences(rows);
    double n1 = 0.0;
    double n2 = 0.0;
    for (const std::vector<double>& row : rows) (row[1] == 0.0 ? n1 : n2) += row[2];
    const std::size_t total = listed.size();
    const double z = 1.6448536269514722;  // the normal quantile of 0.95
    const double reach = z * std::sqrt(MannWhitneyVariance(n1, n2, TieSum(rows)));
    const double expected = n1 * n2 / 2.0;
    const auto lower = static_cast<std::size_t>(std::max(0.0, std::floor(expected - reach)));
    const auto upper = std::min(total, static_cast<std::size_t>(std::ceil(expected + reach)));
    SCOPED_TRACE(testing::PrintToString(rows));
    ExpectFigures(RunAt(0.9, rows),
                  {{"Estimate", (listed[(total - 1) / 2] + listed[total / 2]) / 2.0},
                   {"Lower", listed[lower]},
                   {"Upper", listed[std::max<std::size_t>(upper, 1) - 1]}});
  }
}

TEST(HodgesLehmannGroupsTest, ProductsOfWeightsBeyond64BitsAreCounted) {
  const AlgorithmElement result =
      RunAt(0.95, {{0, 0, 2e9}, {10, 0, 2e9}, {20, 0, 2e9}, {1, 1, 2e9}, {3, 1, 2e9}, {7, 1, 2e9}});
  EXPECT_THAT(result.Number("Estimate"), IsCloseTo(-7));
}

TEST(HodgesLehmannGroupsTest, TheElementIsAnIntervalWithoutDecision) {
  const AlgorithmElement result = RunOnSamples(kEntry, {kTiedFirst, kTiedSecond});
  EXPECT_EQ(result.Type(), "confidence_interval");
  EXPECT_EQ(result.Decision(), "(absent)");
  EXPECT_EQ(result.Outline(),
            "Condition(ConditionKey %0 %1) StatisticsResult(Estimate) Asymptotic(Lower Upper)");
}

}  // namespace
