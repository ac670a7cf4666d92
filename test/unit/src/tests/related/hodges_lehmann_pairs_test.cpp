#include "support/entry_run.h"

namespace {

AlgorithmElement Result(const Rows& rows, double confidence, const Texts& names) {
  const TestSettings settings = Entry("missingTreatment", "analysis", "confidenceLevel", confidence,
                                      "RHodgesLehmannEstimatePairs", Entry("variableName", names));
  const QDVarList variables = VariableListBuilder().Continuous("x").Continuous("y").Build();
  return AlgorithmElement::AllOf(RunDocument(variables, rows, settings)).at(0);
}

Rows PairsOf(const std::vector<double>& differences) {
  Rows rows;
  for (const double d : differences) rows.push_back({0.0, d});
  return rows;
}

struct EstimateCase {
  const char* catches;
  std::vector<double> differences;
  double confidence;
  double estimate, lower, upper;
};

// Hollander and Wolfe (1999), examples 3.3 and 3.4: estimate -0.46, interval from -0.786 to -0.010.
const std::vector<double> kScores{0.878 - 1.83, 0.647 - 0.5, 0.598 - 1.62, 2.05 - 2.48, 1.06 - 1.68,
                                  1.29 - 1.88,  1.06 - 1.55, 3.14 - 3.06,  1.29 - 1.3};
const std::vector<double> kSeven{1, 1, 2, 2, 2, 7, -3};
const std::vector<double> kTied{1, -1, 1, -1, 1, 5, 1, 1, 1, 2, 1, 5};
const std::vector<double> kSmall{-0.75, -0.75, -0.75, -0.5, -0.25, -0.25, -0.25,
                                 -0.25, 0.25,  0.25,  0.25, 0.25,  0.75,  0.75};
const std::vector<double> kTwelveOfOneSize{-1, 1, -1, 1, -1, 1, -1, 1, -1, 1, -1, 1};
const std::vector<double> kOneZero{-3, -2, -1, 0, 1, 2, 2, 3, 3};
using Differences = std::vector<double>;

// By listing and sorting the averages in Python, ranks of the interval with SciPy 1.11.4's
// norm.ppf.
const EstimateCase kCases[] = {
    {"an odd number of averages; ranks beyond both ends", Differences{1, 2, 3}, 0.95, 2, 1, 3},
    {"an even number of averages", Differences{0.5, 1.5, 2.5, 4}, 0.95, 2.125, 0.5, 4},
    {"a zero moves all differences and back", Differences{0, 1, 4, -2}, 0.95, 0.75, -2, 4},
    {"an interval on values between the ends", kSeven, 0.95, 1.5, -1, 4.5},
    {"many ties narrow it by a rank on either side", kTied, 0.9, 1, 1, 2},
    {"small differences tie with those of the other sign", kSmall, 0.95, 0, -0.375, 0.25},
    {"raised for one zero, sizes tie by sign", kOneZero, 0.95, 0.5, -1.5, 2.5},
    {"a rank between with t^3 - t over 48 and over 49", kTwelveOfOneSize, 0.8896, 0, 0, 0},
    {"full confidence takes the ends", kSeven, 1.0, 1.5, -3, 7},
    {"depression scores", kScores, 0.95, -0.46, -0.786, -0.01},
};

TEST(HodgesLehmannPairsTest, EstimateAndIntervalAreThoseOfTheListedAverages) {
  for (const EstimateCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    ExpectFigures(Result(PairsOf(row.differences), row.confidence, {"x", "y"}),
                  {{"Estimate", row.estimate}, {"Lower", row.lower}, {"Upper", row.upper}});
  }
}

TEST(HodgesLehmannPairsTest, NoPairIsShownAsMissing) {
  EXPECT_EQ(Result({{1, 2}}, 0.95, {"x"}).Text("%0"), "__MISSING__");
}

}  // namespace
