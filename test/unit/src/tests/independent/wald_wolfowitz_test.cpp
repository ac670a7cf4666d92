#include "tests/independent/wald_wolfowitz.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "support/matchers.h"
#include "support/two_group_run.h"

namespace {

AlgorithmElement Result(const Sample& first, const Sample& second) {
  return RunOnSamples("IWaldWolfowitzRuns", first, second);
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
    {"half a run counts as none",
     {1.1, 2.2, 3.7, 5.4},
     {0.4, 2.9, 6.3, 7.8, 9.1},
     5,
     1.3833221775543036,
     0,
     0.5,
     0.5,
     "retain"},
    {"groups apart, few runs",
     {1, 2, 3, 4},
     {5, 6, 7, 8, 9},
     2,
     1.3833221775543036,
     -2.128531221591622,
     0.01664653208490575,
     2.0 / 126.0,
     "reject"},
    {"only one number of runs is possible", {1}, {2}, 2, 0, 0, 0.5, 1.0, "retain"},
    {"the last N with an exact value", Ascending(0, 15), Ascending(50, 15), 2, 2.6909811055347133,
     -5.016757632461144, 2.627539621007251e-07, 1.28934500757877e-08, "reject"},
    {"the first without", Ascending(0, 15), Ascending(50, 16), 2, 2.7341445290860764,
     -5.114532468558357, 1.5725949467380646e-07, std::nullopt, "reject"},
    {"the last N that is corrected", Ascending(0, 24), Ascending(50, 25), 2, 3.461876623201505,
     -6.640847846595595, 1.5594193286284798e-11, std::nullopt, "reject"},
    {"the first that is not", Ascending(0, 25), Ascending(50, 25), 2, 3.499271061118826,
     -6.858571279792899, 3.4776312800492287e-12, std::nullopt, "reject"},
};

TEST(WaldWolfowitzTest, WithoutTiesBothCountsHaveTheFiguresOfTheFormulas) {
  for (const WaldWolfowitzCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result = Result(row.first, row.second);
    for (const std::string table : {"MinimumRuns", "MaximumRuns"}) {
      EXPECT_EQ(result.Number(table + "/TestStatistic"), row.runs);
      EXPECT_THAT(result.Number(table + "/StandardError"), IsCloseTo(row.standardError));
      EXPECT_THAT(result.Number(table + "/StandardTestStatistic"), IsCloseTo(row.z, 1e-13));
      EXPECT_THAT(result.Number(table + "/AsymptoticSig1Tailed"), IsCloseTo(row.asymptotic, 1e-12));
      EXPECT_THAT(result.Number(table + "/ExactSig1Tailed"), IsCloseTo(row.exact, 1e-13));
    }
    EXPECT_EQ(result.Text("InterGroupTies"), "0");
    EXPECT_THAT(result.Messages(), testing::IsEmpty());
    EXPECT_EQ(result.Decision(), row.decision);
    EXPECT_EQ(Result(row.second, row.first).Text("MaximumRuns/AsymptoticSig1Tailed"),
              result.Text("MaximumRuns/AsymptoticSig1Tailed"));
  }
}

// The extremes by going through every order of the ties in Python; figures as above.
TEST(WaldWolfowitzTest, TiesLeaveTwoCountsOfWhichTheLargestDecides) {
  const AlgorithmElement result =
      Result({-2, -1, 0, 0, 1, 3, 3.5, 4, 7}, {-1.5, 0, 1, 2, 3, 5, 6, 6, 8, 9});
  EXPECT_THAT(result.Messages(),
              testing::ElementsAre(AlgorithmElement::Message{220616, "warning", {"3"}}));
  EXPECT_EQ(result.Text("InterGroupTies"), "3");
  EXPECT_EQ(result.Text("MinimumRuns/TestStatistic"), "10");
  EXPECT_THAT(result.Number("MinimumRuns/ExactSig1Tailed"), IsCloseTo(0.5095477278139817));
  EXPECT_EQ(result.Text("MaximumRuns/TestStatistic"), "14");
  EXPECT_THAT(result.Number("MaximumRuns/StandardTestStatistic"), IsCloseTo(1.4330287605527776));
  EXPECT_THAT(result.Number("MaximumRuns/AsymptoticSig1Tailed"), IsCloseTo(0.924075190837481));
  EXPECT_THAT(result.Number("MaximumRuns/ExactSig1Tailed"), IsCloseTo(0.9742038147610903));
  // Ten ties at one value: as few as 2 runs, as many as 20.
  const AlgorithmElement tied = Result(Sample(10, 1.0), Sample(10, 1.0));
  EXPECT_LT(*tied.Number("MinimumRuns/ExactSig1Tailed"), 0.05);
  EXPECT_EQ(tied.Number("MaximumRuns/ExactSig1Tailed"), 1.0);
  EXPECT_EQ(tied.Decision(), "retain");
}

TEST(WaldWolfowitzTest, TheElementHoldsItsTablesInOrder) {
  const AlgorithmElement result = Result({0, 1, 1, 4}, {2, -3, 0});
  EXPECT_EQ(result.Name(), "IWaldWolfowitzRuns");
  EXPECT_EQ(result.Type(), "hypothesis_test");
  EXPECT_EQ(result.Classification(), "Independent_Samples");
  EXPECT_THAT(result.ChildNames(),
              testing::ElementsAre("StructuredTable Condition", "StructuredTable WarningMessages",
                                   "StructuredTable Group0", "StructuredTable Group1",
                                   "StructuredTable StatisticsResult"));
  EXPECT_THAT(result.ChildNames("Group0"),
              testing::ElementsAre("Attribute GroupIndex", "Attribute N", "SimpleTable Interval"));
  EXPECT_THAT(result.ChildNames("StatisticsResult"),
              testing::ElementsAre("Attribute TotalN", "Attribute InterGroupTies",
                                   "StructuredTable MinimumRuns", "StructuredTable MaximumRuns"));
  EXPECT_THAT(result.ChildNames("MinimumRuns"),
              testing::ElementsAre("Attribute TestStatistic", "Attribute StandardError",
                                   "Attribute StandardTestStatistic",
                                   "Attribute AsymptoticSig1Tailed", "Attribute ExactSig1Tailed"));
  EXPECT_EQ(result.Text("TotalN"), "7");
}

}  // namespace
