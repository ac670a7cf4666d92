#include "support/group_run.h"

namespace {

AlgorithmElement Result(const Samples& groups, const TestSettings& entry = ComparedEntry()) {
  return RunOnSamples("IMedian", groups, entry);
}

TestSettings CutAt(double median, const char* comparison = "none") {
  return ComparedEntry(comparison).Put("userSpecifyMedian", true, "median", median);
}

TEST(MedianTest, TheTableIsCutAtTheCommonMedian) {
  const AlgorithmElement result = Result(kRising);
  EXPECT_EQ(result.RowNames("TwoClassComparison/Content"), "0;1;2");
  EXPECT_EQ(result.ColumnNames("TwoClassComparison/Content"), "lessOrEqual;greater");
  EXPECT_EQ(result.Rows("TwoClassComparison/Content"), (Texts{"5;0", "4;2", "0;4"}));
  // SciPy 1.17.1: stats.median_test(a, b, c, ties="below", correction=False)
  ExpectFigures(result, {{"StatisticsResult/Median", 6},
                         {"TestStatistic", 9.444444444444443},
                         {"AsymptoticSig2Tailed", 0.008895389037043958, 1e-13},
                         {"DegreeOfFreedom", 2},
                         {"TotalN", 15},
                         {"YatesTestStatistic", std::nullopt}});
  // Expected counts 3, 3.6, 2.4 and 2, 2.4, 1.6 are all below 5.
  EXPECT_EQ(result.Messages(), (Messages{{222311, "helpMessage", {"6", "100", "1.6"}}}));
}

TEST(MedianTest, TwoGroupsHaveYatesAndFisher) {
  // SciPy 1.17.1: stats.chi2_contingency([[6, 1], [3, 4]], correction=...), stats.fisher_exact
  ExpectFigures(Result({{1, 2, 3, 4, 5, 6, 12, 13, 14}, {7, 8, 9, 10, 11}}),
                {{"TestStatistic", 2.8},
                 {"AsymptoticSig2Tailed", 0.09426430684121058, 1e-13},
                 {"YatesTestStatistic", 1.2444444444444445},
                 {"YatesAsymptoticSig2Tailed", 0.2646162170835855, 1e-13},
                 {"ExactSig2Tailed", 0.26573426573426573}});
}

TEST(MedianTest, TheExactValueIsGivenUpToThirtyAndDecides) {
  // 2 of 15 against 8 of 15 above 9: chi-square p 0.020, Fisher's p 0.050 (R 4.2.2: fisher.test).
  Samples groups{Sample(13, 1.0), Sample(7, 1.0)};
  for (Sample& group : groups) group.resize(15, 10.0);
  const AlgorithmElement thirty = Result(groups, CutAt(9.0));
  EXPECT_LT(*thirty.Number("AsymptoticSig2Tailed"), 0.05);
  EXPECT_GT(*thirty.Number("ExactSig2Tailed"), 0.05);
  EXPECT_EQ(thirty.Decision(), "retain");
  EXPECT_EQ(thirty.Text("Median"), "9");
  groups[1].push_back(10);
  const AlgorithmElement more = Result(groups, CutAt(9.0));
  EXPECT_FALSE(more.Has("ExactSig2Tailed"));
  EXPECT_EQ(more.Decision(), "reject");
}

TEST(MedianTest, PairsHaveMediansOfTheirOwn) {
  const AlgorithmElement result = Result(kRising, ComparedEntry("pairWise"));
  EXPECT_EQ(result.Rows("PairwiseInfo"), (Texts{"0;1;2", "2;6;10.5"}));
  // NumPy and SciPy 1.17.1: chi2_contingency of each pair's own table; times 3.
  EXPECT_THAT(
      result.Rows("PairwiseResult/Content"),
      testing::ElementsAre(IsRow("0;1;5.23809523809524;;;0.0220974552842272;0.0662923658526815"),
                           IsRow("0;2;9;;;0.00269979606326019;0.00809938818978057"),
                           IsRow("1;2;1.66666666666667;;;0.196705602458943;0.590116807376829")));
}

TEST(MedianTest, APairOnOneSideDoesNotDiffer) {
  const AlgorithmElement result =
      Result({{1, 2, 3, 4}, {1, 2, 3, 5}, {6, 7, 8, 9}}, CutAt(5.5, "pairWise"));
  EXPECT_EQ(result.Rows("PairwiseResult/Content").at(0), "0;1;0;;;1;1");
}

TEST(MedianTest, TheStepDownGoesByTheGroupsMedians) {
  const AlgorithmElement result =
      Result({kRising[2], kRising[0], kRising[1]}, ComparedEntry("stepWise"));
  EXPECT_EQ(result.Rows("StepwiseInfo"), (Texts{"1;2;0", "2;6;10.5"}));
  EXPECT_THAT(
      result.Rows("StepwiseResult/Content"),
      testing::ElementsAre(IsRow("1;2;1.66666666666667;;;0.196705602458943;0.196705602458943"),
                           IsRow("0;0;__MISSING__;;;__MISSING__;__MISSING__")));
  EXPECT_EQ(result.MessageCodes(), (Codes{222311, 220013}));
}

TEST(MedianTest, AMedianMustBeGivenWhereItIsAnnouncedAndPartTheValues) {
  ExpectMessages("IMedian", GroupedVariables(), GroupedRows({{1, 2}, {2, 2}}),
                 {{"no median", ComparedEntry().Put("userSpecifyMedian", true), Error(222302)},
                  {"no value above the median", ComparedEntry(), Error(222313)}});
  ExpectMessages("IMedian", GroupedVariables(), {{QDMV::gMissingValue, 0, 1}},
                 {{"no value", ComparedEntry(), Error(220003)}});
}

}  // namespace
