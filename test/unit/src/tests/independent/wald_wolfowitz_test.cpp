#include "support/group_run.h"

namespace {

AlgorithmElement Result(const Sample& first, const Sample& second) {
  return RunOnSamples("IWaldWolfowitzRuns", {first, second});
}

// The formulas in Python: binomial coefficients in whole numbers, norm.cdf of SciPy 1.17.1.
TEST(WaldWolfowitzTest, WithoutTiesBothCountsHaveTheFiguresOfTheFormulas) {
  const AlgorithmElement result = Result(Ascending(1, 4), Ascending(5, 5));
  for (const std::string count : {"MinimumRuns/", "MaximumRuns/"}) {
    ExpectFigures(result, {{(count + "TestStatistic").c_str(), 2},
                           {(count + "StandardError").c_str(), 1.3833221775543036},
                           {(count + "StandardTestStatistic").c_str(), -2.128531221591622, 1e-13},
                           {(count + "AsymptoticSig1Tailed").c_str(), 0.01664653208490575, 1e-12},
                           {(count + "ExactSig1Tailed").c_str(), 2.0 / 126.0, 1e-13}});
  }
  EXPECT_EQ(result.Text("InterGroupTies"), "0");
  EXPECT_EQ(result.Messages(), Messages{});
  EXPECT_EQ(result.Decision(), "reject");
  EXPECT_TRUE(Result(Ascending(0, 15), Ascending(50, 15)).Has("ExactSig1Tailed"));
  EXPECT_FALSE(Result(Ascending(0, 15), Ascending(50, 16)).Has("ExactSig1Tailed"));
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
