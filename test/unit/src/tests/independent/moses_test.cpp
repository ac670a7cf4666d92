#include "support/group_run.h"

namespace {

TestSettings Trimming(int outliers) {
  return GroupedEntry().Put("userSpecifyNumberOfOutliers", "true", "NumberOfOutliers", outliers);
}

AlgorithmElement Result(const Sample& first, const Sample& second,
                        const TestSettings& entry = GroupedEntry()) {
  return RunOnSamples("IMoses", {first, second}, entry);
}

// The ranks of the controls are 1 3 5 5 7.5 10.5 12 13 17 (SciPy 1.17.1, rankdata); p(h) in
// Python's fractions.
TEST(MosesTest, FiguresAgreeWithTheFormula) {
  const AlgorithmElement result = Result(kTiedFirst, kTiedSecond);
  ExpectFigures(result, {{"NumberOfOutliers", 1},
                         {"ObservedControlSpan", 17},
                         {"ExactSig1TailedObserved", 0.541795665634675},
                         {"TestStatistic", 11},
                         {"ExactSig1Tailed", 0.24221134902249453}});
  EXPECT_EQ(result.Decision(), "retain");
  ExpectFigures(Result(kTiedFirst, kTiedSecond, Trimming(2)),
                {{"NumberOfOutliers", 2},
                 {"TestStatistic", 8},  // ranks 5 to 12
                 {"ExactSig1Tailed", 0.4299833293641343},
                 {"ExactSig1TailedObserved", 0.541795665634675}});
  EXPECT_EQ(Result(kTiedFirst, kTiedSecond, Trimming(0)).Text("TestStatistic"), "17");
}

TEST(MosesTest, HalfARankIsRoundedUp) {
  EXPECT_EQ(Result({1, 2, 3}, {3}).Text("ObservedControlSpan"), "4");  // ranks 1 to 3.5
}

TEST(MosesTest, AsManyAreTrimmedAsATwentiethOfTheControls) {
  const auto outliers = [](int controls) {
    return Result(Sample(static_cast<std::size_t>(controls), 1.0), {2}).Text("NumberOfOutliers");
  };
  EXPECT_EQ(outliers(3), "1");
  EXPECT_EQ(outliers(39), "1");
  EXPECT_EQ(outliers(40), "2");
}

TEST(MosesTest, TrimmingUnitsOfOneRecordTakesPartOfItsWeight) {
  const AlgorithmElement result =
      RunEntry(GroupedVariables(), {{1, 0, 3}, {2, 1, 2}, {3, 0, 4}}, "IMoses", Trimming(3));
  ExpectTexts(result, {{"ObservedControlSpan", "7"},  // ranks 2 and 7.5, 6.5 rounded up
                       {"TestStatistic", "1"},        // the fourth unit alone
                       {"ExactSig1Tailed", "1"}});
}

TEST(MosesTest, ANumberOfOutliersThatCannotBeIsRefused) {
  const TestSettings absent = GroupedEntry().Put("userSpecifyNumberOfOutliers", "true");
  ExpectMessages("IMoses", GroupedVariables(), GroupedRows({kTiedFirst, kTiedSecond}),
                 {{"absent", absent, Error(220516)},
                  {"negative", Trimming(-1), Error(220516)},
                  {"one control is left", Trimming(4), {}},
                  {"none is left", Trimming(5), Error(220516)},
                  {"not read without the flag", GroupedEntry().Put("NumberOfOutliers", 100), {}}});
  ExpectMessages("IMoses", GroupedVariables(), GroupedRows({{1, 2}, {3}}),
                 {{"none is left by default either", GroupedEntry(), Error(220516)}});
}

TEST(MosesTest, TheElementHoldsItsTablesInOrder) {
  const AlgorithmElement result = Result({0, 1, 1, 4}, {2, -3, 0});
  EXPECT_EQ(result.Outline(),
            "Condition(ConditionKey %0 %1) Group0(GroupIndex N MeanOfRank Interval[]) "
            "Group1(GroupIndex N MeanOfRank Interval[]) StatisticsResult(TotalN NumberOfOutliers "
            "ObservedControlSpan ExactSig1TailedObserved TestStatistic ExactSig1Tailed)");
  ExpectTexts(result, {{"Group0/N", "4"},
                       {"Group0/MeanOfRank", "4.625"},
                       {"Group1/N", "3"},
                       {"Group1/MeanOfRank", "3.16666666666667"}});
}

}  // namespace
