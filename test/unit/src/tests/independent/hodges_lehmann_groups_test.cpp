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
    {"a narrow one", kTiedFirst, kTiedSecond, 0.5, 2, 1, 3},
    {"no ties", kUntiedFirst, kUntiedSecond, 0.95, 2.4999999999999996, -3.3000000000000003,
     6.8999999999999995},
    {"the interval ends at the extremes", {1, 2}, {5, 9}, 0.95, 5.5, 3, 8},
    {"an odd number of differences", {1}, {2, 4, 8}, 0.95, 3, 1, 7},
    {"all values tied: no spread", {2, 2}, {2, 2}, 0.95, 0, 0, 0},
    {"certainty takes everything", kTiedFirst, kTiedSecond, 1.0, 2, -8.5, 11},
};

TEST(HodgesLehmannGroupsTest, FiguresAreThoseOfTheSortedDifferences) {
  for (const EstimateCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    ExpectFigures(RunAt(row.confidence, GroupedRows({row.first, row.second})),
                  {{"Estimate", row.estimate}, {"Lower", row.lower}, {"Upper", row.upper}});
  }
}

TEST(HodgesLehmannGroupsTest, ProductsOfWeightsBeyond64BitsAreCounted) {
  const AlgorithmElement result =
      RunAt(0.95, {{0, 0, 2e9}, {10, 0, 2e9}, {20, 0, 2e9}, {1, 1, 2e9}, {3, 1, 2e9}, {7, 1, 2e9}});
  EXPECT_THAT(result.Number("Estimate"), IsCloseTo(-7));
}

}  // namespace
