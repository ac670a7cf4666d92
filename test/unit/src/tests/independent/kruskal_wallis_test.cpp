#include "support/group_run.h"

namespace {

AlgorithmElement Result(const Samples& groups, const char* comparison = "none") {
  return RunOnSamples("IKruskalWallis", groups, ComparedEntry(comparison));
}

TEST(KruskalWallisTest, TheStatisticIsCorrectedForTies) {
  const AlgorithmElement result = Result(kRising);
  // SciPy 1.17.1: stats.kruskal(a, b, c)
  ExpectFigures(result, {{"TestStatistic", 10.681807301017361, 1e-13},
                         {"AsymptoticSig2Tailed", 0.004791538876816035, 1e-12},
                         {"DegreeOfFreedom", 2}});
  EXPECT_EQ(result.Decision(), "reject");
  EXPECT_EQ(result.Messages(), (Messages{{222111, "helpMessage", {}}}));
  ExpectTexts(result, {{"ConditionKey", "DefaultAllDistinctValuesUsed_I_KruskalWallis_2"},
                       {"Condition/%0", "0"},
                       {"Condition/%1", "1"}});
}

TEST(KruskalWallisTest, PairsAreComparedOnTheOverallRanks) {
  const AlgorithmElement result = Result(kRising, "pairWise");
  EXPECT_EQ(result.Outline("BoxPlotInfo/Group0"), "GroupIndex MeanOfRank Box[] Outliers[]");
  EXPECT_EQ(result.ChildNames(),
            (Texts{"StructuredTable Condition", "StructuredTable WarningMessages",
                   "StructuredTable StatisticsResult", "StructuredTable BoxPlotInfo",
                   "StructuredTable PairwiseResult"}));
  EXPECT_EQ(result.ColumnNames("PairwiseInfo"), "IndexOrder;Value");
  EXPECT_EQ(result.Rows("PairwiseInfo"), (Texts{"0;1;2", "3.3;8.58333333333333;13"}));
  EXPECT_EQ(result.ColumnNames("PairwiseResult/Content"),
            "Sample1;Sample2;TestStatistic;StandardError;StandardTestStatistic;Sig;AdjSig");
  // NumPy and SciPy 1.17.1 from Dunn's formula; the adjusted p is three times p.
  EXPECT_THAT(result.Rows("PairwiseResult/Content"),
              testing::ElementsAre(IsRow("0;1;-5.28333333333333;2.70074945506754;-1.9562471163032;"
                                         "0.050436050615136;0.151308151845408"),
                                   IsRow("0;2;-9.7;2.99195349467296;-3.24202900120955;0."
                                         "00118681944396915;0.00356045833190745"),
                                   IsRow("1;2;-4.41666666666667;2.87900859258712;-1.5340929089405;"
                                         "0.125006797568118;0.375020392704355")));
}

TEST(KruskalWallisTest, CategoriesWithoutDataCountOnlyInTheAdjustmentAndTheGroupCount) {
  const AlgorithmElement result = Result({kRising[0], {}, kRising[1], kRising[2]}, "pairWise");
  EXPECT_EQ(result.Text("StatisticsResult/DegreeOfFreedom"), "2");
  EXPECT_EQ(result.Text("BoxPlotInfo/GroupCount"), "4");
  EXPECT_FALSE(result.Has("BoxPlotInfo/Group1"));
  EXPECT_EQ(result.Rows("PairwiseInfo").front(), "0;2;3");
  const Texts rows = result.Rows("PairwiseResult/Content");
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_THAT(
      rows[1],
      IsRow("0;2;-9.7;2.99195349467296;-3.24202900120955;0.00118681944396915;0.0071209166638149"));
}

constexpr const char* kSingles[] = {"0;0;__MISSING__;;;__MISSING__;__MISSING__",
                                    "1;1;__MISSING__;;;__MISSING__;__MISSING__",
                                    "2;2;__MISSING__;;;__MISSING__;__MISSING__"};

TEST(KruskalWallisTest, TheStepDownRanksItsRangesAnewAndJudgesThemUnadjusted) {
  // SciPy 1.17.1: stats.kruskal(a, b) and (b, c) are significant at 0.05, each of 2 = k - 1 groups.
  const AlgorithmElement apart = Result(kRising, "stepWise");
  EXPECT_EQ(apart.ColumnNames("StepwiseInfo"), "IndexOrder;Value");
  EXPECT_EQ(apart.Rows("StepwiseInfo"), (Texts{"0;1;2", "3.3;8.58333333333333;13"}));
  EXPECT_EQ(apart.ColumnNames("StepwiseResult/Content"),
            "FirstPosition;LastPosition;TestStatistic;StandardError;StandardTestStatistic;Sig;"
            "AdjSig");
  EXPECT_EQ(apart.Rows("StepwiseResult/Content"), Texts(std::begin(kSingles), std::end(kSingles)));
  EXPECT_EQ(apart.MessageCodes(), (Codes{222111, 220013, 220013, 220013}));
  // At 0.02 only the first two differ: kruskal(b, c) = 4.573170731707319, p = 0.03247640247287811.
  const TestSettings settings =
      Entry("sigLevel", 0.02, "IKruskalWallis", ComparedEntry("stepWise"));
  const auto results =
      AlgorithmElement::AllOf(RunDocument(GroupedVariables(3), GroupedRows(kRising), settings));
  EXPECT_THAT(
      results.at(0).Rows("StepwiseResult/Content"),
      testing::ElementsAre(IsRow("1;2;4.57317073170732;;;0.0324764024728781;0.0324764024728781"),
                           kSingles[0]));
}

TEST(KruskalWallisTest, EqualMeanRanksAreOrderedByTheirMediansAndThenStand) {
  // Groups a and b have the mean rank 4.5 both, c and d 11; the medians are 5, 4, 11 and 11.
  const AlgorithmElement result = Result(
      {{1, 4, 6, 7}, {2, 3, 5, 8}, {10, 11, 12, 11}, {10, 11, 12, 11}, {20, 21, 22}}, "stepWise");
  ASSERT_EQ(result.Rows("StepwiseInfo").size(), 2U) << result.Xml();
  EXPECT_EQ(result.Rows("StepwiseInfo")[0], "1;0;2;3;4");
}

TEST(KruskalWallisTest, BoxPlotsHoldHingesOutliersAndCases) {
  const QDVarList variables =
      VariableListBuilder().Continuous("x").Nominal("g", {"a", "b"}).CaseId("id").Build();
  Rows rows;
  double id = 500;
  for (const double x : {1, 10, 11, 12, 13, 14, 15, 16, 30}) rows.push_back({x, 0, id++});
  for (const double x : {-5, 2}) rows.push_back({x, 1, id++});
  const TestSettings settings =
      Entry("IKruskalWallis", ComparedEntry(), "caseIDVariableName", "id");
  const AlgorithmElement result =
      AlgorithmElement::AllOf(RunDocument(variables, rows, settings)).at(0);
  EXPECT_EQ(result.RowNames("Group0/Box"), "");
  EXPECT_EQ(result.ColumnNames("Group0/Box"),
            "smallestNonOutlier;25perc;50perc;75perc;largestNonOutlier");
  EXPECT_EQ(result.Rows("Group0/Box"), Texts{"10;11;13;15;16"});
  EXPECT_EQ(result.RowNames("Group0/Outliers"), "Values;CaseID");
  EXPECT_EQ(result.ColumnNames("Group1/Outliers"), "1");
  EXPECT_EQ(result.Rows("Group0/Outliers"), (Texts{"30;1", "508;500"}));
  EXPECT_EQ(result.Rows("Group1/Outliers"), (Texts{"", ""}));
}

}  // namespace
