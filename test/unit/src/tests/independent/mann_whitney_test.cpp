#include "support/group_run.h"

namespace {

AlgorithmElement Result(const Sample& first, const Sample& second) {
  return RunOnSamples("IMannWhitneyU", {first, second});
}

// SciPy 1.17.1: mannwhitneyu(second, first, use_continuity=False, method=m).pvalue with m
// "asymptotic" and "exact"; z from its statistic and the formula of the standard error.
TEST(MannWhitneyTest, FiguresAgreeWithSciPy) {
  // Ties correct the standard error and leave the exact value.
  ExpectFigures(Result(kTiedFirst, kTiedSecond),
                {{"MannWhitneyU", 61},
                 {"TestStatistic", 61},
                 {"WilcoxonW", 116},
                 {"StandardError", 12.209788997702665},
                 {"StandardTestStatistic", 1.3104239559758553, 1e-13},
                 {"AsymptoticSig2Tailed", 0.19005245385413927, 1e-13},
                 {"ExactSig2Tailed", 0.2110242698477993, 1e-13}});
}

TEST(MannWhitneyTest, TheExactValueDecidesWhereThereIsOne) {
  // Asymptotic 0.0495, exact 0.1.
  EXPECT_EQ(Result(Ascending(1, 3), Ascending(4, 3)).Decision(), "retain");
  EXPECT_EQ(Result(Ascending(1, 20), Ascending(5.5, 21)).Decision(), "reject");
}

TEST(MannWhitneyTest, TheLimitOfTheExactValueIsOneOfSumsOfWeights) {
  const auto run = [](const Rows& rows) {
    return RunEntry(GroupedVariables(), rows, "IMannWhitneyU", GroupedEntry());
  };
  for (const auto& [second, has] : {std::pair(20, true), {21, false}}) {
    EXPECT_EQ(run({{1, 0, 20}, {2, 1, second * 1.0}}).Has("ExactSig2Tailed"), has);
  }
  for (const auto& [second, has] : {std::pair(400, true), {401, false}}) {
    EXPECT_EQ(run({{1, 0, 1}, {2, 1, second * 1.0}}).Has("ExactSig2Tailed"), has);
  }
}

TEST(MannWhitneyTest, WeightsFarBeyond32BitsKeepTheirSums) {
  const AlgorithmElement result = RunEntry(
      GroupedVariables(), {{1, 0, 2e9}, {2, 0, 2e9}, {3, 1, 2e9}, {4, 1, 2e9}, {5, 1, 2e9}},
      "IMannWhitneyU", GroupedEntry());
  ExpectTexts(
      result,
      {{"TotalN", "10000000000"}, {"Group0/N", "4000000000"}, {"AsymptoticSig2Tailed", "0"}});
  EXPECT_THAT(result.Number("MannWhitneyU"), IsCloseTo(2.4e19));
}

TEST(MannWhitneyTest, TheElementHoldsItsTablesInOrder) {
  const AlgorithmElement result = Result({0, 1, 1, 4}, {2, -3, 0});
  EXPECT_EQ(result.Outline(),
            "Condition(ConditionKey %0 %1) Group0(GroupIndex N MeanOfRank Interval[]) "
            "Group1(GroupIndex N MeanOfRank Interval[]) StatisticsResult(TotalN MannWhitneyU "
            "WilcoxonW TestStatistic StandardError StandardTestStatistic AsymptoticSig2Tailed "
            "ExactSig2Tailed)");
  // Ranks 2.5, 4.5, 4.5, 7 and 6, 1, 2.5.
  ExpectTexts(result, {{"Group0/GroupIndex", "0"},
                       {"Group0/MeanOfRank", "4.625"},
                       {"Group1/MeanOfRank", "3.16666666666667"}});
  // The zeros stand last, outside the bins.
  EXPECT_EQ(result.Rows("Group0/Interval"), (Texts{"2;1;1", "1;4;0"}));
  EXPECT_EQ(result.Rows("Group1/Interval"), (Texts{"1;1;1", "-3;2;0"}));
}

}  // namespace
