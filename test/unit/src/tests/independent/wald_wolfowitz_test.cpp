#include "tests/independent/wald_wolfowitz.h"

#include "support/group_run.h"

namespace {

AlgorithmElement Result(const Sample& first, const Sample& second) {
  return RunOnSamples("IWaldWolfowitzRuns", {first, second});
}

struct WaldWolfowitzCase {
  const char* catches;
  Sample first, second;
  double runs, standardError, z, asymptotic;
  std::optional<double> exact;
  const char* decision;
};

// The formulas in Python: binomial coefficients in whole numbers, norm.cdf of SciPy 1.17.1.
const WaldWolfowitzCase kCases[] = {
    {"groups apart, few runs", Ascending(1, 4), Ascending(5, 5), 2, 1.3833221775543036,
     -2.128531221591622, 0.01664653208490575, 2.0 / 126.0, "reject"},
    {"the last N with an exact value", Ascending(0, 15), Ascending(50, 15), 2, 2.6909811055347133,
     -5.016757632461144, 2.627539621007251e-07, 1.28934500757877e-08, "reject"},
    {"the first without", Ascending(0, 15), Ascending(50, 16), 2, 2.7341445290860764,
     -5.114532468558357, 1.5725949467380646e-07, std::nullopt, "reject"},
};

TEST(WaldWolfowitzTest, WithoutTiesBothCountsHaveTheFiguresOfTheFormulas) {
  for (const WaldWolfowitzCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result = Result(row.first, row.second);
    ExpectFigures(result, {{"InterGroupTies", 0.0},
                           {"MinimumRuns/TestStatistic", row.runs},
                           {"MinimumRuns/StandardError", row.standardError},
                           {"MinimumRuns/StandardTestStatistic", row.z, 1e-13},
                           {"MinimumRuns/AsymptoticSig1Tailed", row.asymptotic, 1e-12},
                           {"MinimumRuns/ExactSig1Tailed", row.exact, 1e-13},
                           {"MaximumRuns/TestStatistic", row.runs},
                           {"MaximumRuns/StandardError", row.standardError},
                           {"MaximumRuns/StandardTestStatistic", row.z, 1e-13},
                           {"MaximumRuns/AsymptoticSig1Tailed", row.asymptotic, 1e-12},
                           {"MaximumRuns/ExactSig1Tailed", row.exact, 1e-13}});
    EXPECT_EQ(result.Messages(), Messages{});
    EXPECT_EQ(result.Decision(), row.decision);
    EXPECT_EQ(Result(row.second, row.first).Text("MaximumRuns/AsymptoticSig1Tailed"),
              result.Text("MaximumRuns/AsymptoticSig1Tailed"));
  }
}

// The extremes by going through every order of the ties in Python; figures as above.
TEST(WaldWolfowitzTest, TiesLeaveTwoCountsOfWhichTheLargestDecides) {
  const AlgorithmElement result = Result(kTiedFirst, kTiedSecond);
  EXPECT_EQ(result.Messages(), (Messages{{220616, "warning", {"3"}}}));
  ExpectFigures(result, {{"InterGroupTies", 3},
                         {"MinimumRuns/TestStatistic", 10},
                         {"MinimumRuns/ExactSig1Tailed", 0.5095477278139817},
                         {"MaximumRuns/TestStatistic", 14},
                         {"MaximumRuns/StandardTestStatistic", 1.4330287605527776},
                         {"MaximumRuns/AsymptoticSig1Tailed", 0.924075190837481},
                         {"MaximumRuns/ExactSig1Tailed", 0.9742038147610903}});
  // Ten ties at one value: as few as 2 runs, as many as 20.
  const AlgorithmElement tied = Result(Sample(10, 1.0), Sample(10, 1.0));
  EXPECT_LT(*tied.Number("MinimumRuns/ExactSig1Tailed"), 0.05);
  EXPECT_EQ(tied.Number("MaximumRuns/ExactSig1Tailed"), 1.0);
  EXPECT_EQ(tied.Decision(), "retain");
}

TEST(WaldWolfowitzTest, TheElementHoldsItsTablesInOrder) {
  const AlgorithmElement result = Result({0, 1, 1, 4}, {2, -3, 0});
  EXPECT_EQ(result.Outline(),
            "Condition(ConditionKey %0 %1) WarningMessages(Message(code type paramNum %0)) "
            "Group0(GroupIndex N Interval[]) Group1(GroupIndex N Interval[]) "
            "StatisticsResult(TotalN InterGroupTies "
            "MinimumRuns(TestStatistic StandardError StandardTestStatistic AsymptoticSig1Tailed "
            "ExactSig1Tailed) MaximumRuns(TestStatistic StandardError StandardTestStatistic "
            "AsymptoticSig1Tailed ExactSig1Tailed))");
  EXPECT_EQ(result.Text("TotalN"), "7");
}

}  // namespace
