#include "support/group_run.h"

namespace {

AlgorithmElement Result(const Sample& first, const Sample& second) {
  return RunOnSamples("IKolmogorovSmirnov", {first, second});
}

// SciPy 1.17.1: statistics of ks_2samp(larger, smaller, alternative="greater" and "less"), z from
// the larger, kstwobign.sf(z).
TEST(KSTwoSampleTest, FiguresAgreeWithSciPyAndTheSignGoesByTheLargerGroup) {
  ExpectFigures(Result(kUntiedFirst, kUntiedSecond),
                {{"Absolute", 0.6},
                 {"Positive", 0.2},
                 {"Negative", -0.6},
                 {"TestStatistic", 0.8944271909999159},
                 {"AsymptoticSig2Tailed", 0.4004710362084578, 1e-10}});
  // Of equal sizes group 1's function comes first.
  ExpectFigures(Result(Ascending(1, 20), Ascending(5.5, 20)),
                {{"Positive", 0.25}, {"Negative", 0}});
  ExpectFigures(Result(Ascending(5.5, 20), Ascending(1, 20)),
                {{"Positive", 0}, {"Negative", -0.25}});
  EXPECT_EQ(Result(Ascending(0, 50), Ascending(100, 50)).Decision(), "reject");
  // A group of one unit is one.
  ExpectFigures(Result({1}, {2, 3}), {{"Absolute", 1}, {"Positive", 0}, {"Negative", -1}});
}

TEST(KSTwoSampleTest, ACategoryInBothListsBelongsToTheFirst) {
  const auto run = [](const Texts& first, const Texts& second) {
    return RunOnSamples("IKolmogorovSmirnov", {{1, 2}, {3, 4}, {5}}, ListedEntry(first, second));
  };
  const AlgorithmElement both = run({"a", "b"}, {"b", "c"});
  ExpectTexts(both, {{"Group0/N", "4"},
                     {"Group1/N", "1"},
                     {"Group1/GroupIndex", "1;2"},
                     {"TestStatistic", run({"a", "b"}, {"c"}).Text("TestStatistic")}});
}

TEST(KSTwoSampleTest, TheElementHoldsItsTablesInOrder) {
  const AlgorithmElement result = Result({0, 1, 1, 4}, {2, -3, 0});
  EXPECT_EQ(result.Outline(),
            "Condition(ConditionKey %0 %1) StatisticsResult(MostExtremeDifferences(Absolute "
            "Positive Negative) TestStatistic AsymptoticSig2Tailed) Group0(GroupIndex N "
            "Interval[]) Group1(GroupIndex N Interval[])");
  EXPECT_EQ(result.Rows("Group0/Interval"), (Texts{"2;1;1", "1;4;0"}));
  EXPECT_EQ(result.Rows("Group1/Interval"), (Texts{"1;1;1", "-3;2;0"}));
}

}  // namespace
