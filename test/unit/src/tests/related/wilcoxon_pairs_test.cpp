#include <cmath>

#include "support/entry_run.h"

namespace {

AlgorithmElement Result(const Rows& rows, const Texts& names) {
  VariableListBuilder variables;
  variables.Continuous("x").Continuous("y");
  if (rows.front().size() > 2) variables.Weight("n");
  return RunEntry(variables.Build(), rows, "RWilcoxonSignedRanks", Entry("variableName", names));
}

// Student, Biometrika 6 (1908): extra hours of sleep.
const Rows kSleep{{0.7, 1.9}, {-1.6, 0.8}, {-0.2, 1.1}, {-1.2, 0.1}, {-0.1, -0.1},
                  {3.4, 4.4}, {3.7, 5.5},  {0.8, 1.6},  {0.0, 4.6},  {2.0, 3.4}};

// SciPy 1.11.4, wilcoxon(d, correction=False, mode="approx"), which leaves out zero differences;
// two differences tie but for rounding.
TEST(WilcoxonPairsTest, FiguresAgreeWithSciPy) {
  const AlgorithmElement result = Result(kSleep, {"x", "y"});
  ExpectFigures(result, {{"TestStatistic", 45},
                         {"StandardError", std::sqrt(71.25 - 6.0 / 48.0)},
                         {"StandardTestStatistic", 2.6679112502793854, 1e-12},
                         {"AsymptoticSig2Tailed", 0.007632441648205508, 1e-12}});
  EXPECT_EQ(result.Decision(), "reject");
}

TEST(WilcoxonPairsTest, DocumentHoldsCountsHistogramAndFigures) {
  const AlgorithmElement result =
      Result({{3, 1, 2}, {1, 1, 3}, {QDMV::gMissingValue, 4, 1}, {0, 1, 1}}, {"y", "x"});
  EXPECT_EQ(result.Outline(),
            "Condition(ConditionKey %0 %1) ContinuousDistribution(NegativeDifferences Ties "
            "PositiveDifferences Interval[]) StatisticsResult(TotalN TestStatistic StandardError "
            "StandardTestStatistic AsymptoticSig2Tailed)");
  ExpectTexts(result, {{"ConditionKey", "R_WilcoxonSignedRanks_2"},
                       {"Condition/%0", "1"},
                       {"Condition/%1", "0"},
                       {"NegativeDifferences", "1"},
                       {"Ties", "3"},
                       {"PositiveDifferences", "2"},
                       {"TotalN", "6"}});
  EXPECT_EQ(result.Rows("Interval"), (Texts{"1;2;3", "-1;2;0"}));
}

TEST(WilcoxonPairsTest, TheSameFieldTwiceIsNoErrorAndNoPairIsWrittenAsItStands) {
  const Rows rows{{1, 0}, {2, 0}};
  EXPECT_EQ(Result(rows, {"x", "x"}).Text("Ties"), "2");
  EXPECT_EQ(Result(rows, {"x"}).Text("%0"), "-1");
}

}  // namespace
