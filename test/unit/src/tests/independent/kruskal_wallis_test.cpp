#include "tests/independent/kruskal_wallis.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "report/result_writer.h"
#include "support/grouped_rows.h"
#include "support/matchers.h"
#include "support/row_matcher.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;
using Codes = std::vector<std::int32_t>;
using Messages = std::vector<AlgorithmElement::Message>;

const std::vector<std::vector<double>> kGroups{
    {1, 2, 2, 3, 5}, {4, 5, 6, 6, 8, 9}, {7, 10, 11, 12}};
const Texts kThree{"a", "b", "c"};

AlgorithmElement Result(const std::vector<std::vector<double>>& groups, const TestSettings& entry,
                        const Texts& categories = kThree) {
  return RunEntry(GroupedVariables(categories), GroupedRows(groups), "IKruskalWallis", entry.Get());
}

TEST(KruskalWallisTest, TheStatisticIsCorrectedForTies) {
  const AlgorithmElement result = Result(kGroups, GroupEntry());
  // SciPy 1.17.1: stats.kruskal(a, b, c)
  EXPECT_THAT(result.Number("StatisticsResult/TestStatistic"),
              IsCloseTo(10.681807301017361, 1e-13));
  EXPECT_THAT(result.Number("StatisticsResult/AsymptoticSig2Tailed"),
              IsCloseTo(0.004791538876816035, 1e-12));
  EXPECT_EQ(result.Text("StatisticsResult/DegreeOfFreedom"), "2");
  EXPECT_EQ(result.Decision(), "reject");
  EXPECT_EQ(result.Messages(), (Messages{{222111, "helpMessage", {}}}));
  EXPECT_EQ(result.Text("Condition/ConditionKey"),
            "DefaultAllDistinctValuesUsed_I_KruskalWallis_2");
  EXPECT_EQ(result.Text("Condition/%0"), "0");
  EXPECT_EQ(result.Text("Condition/%1"), "1");
}

TEST(KruskalWallisTest, TablesStandInTheirOrder) {
  const AlgorithmElement result = Result(kGroups, GroupEntry("pairWise"));
  EXPECT_THAT(result.ChildNames(),
              ElementsAre("StructuredTable Condition", "StructuredTable WarningMessages",
                          "StructuredTable StatisticsResult", "StructuredTable BoxPlotInfo",
                          "StructuredTable PairwiseResult"));
  EXPECT_THAT(result.ChildNames("BoxPlotInfo/Group0"),
              ElementsAre("Attribute GroupIndex", "Attribute MeanOfRank", "SimpleTable Box",
                          "SimpleTable Outliers"));
}

TEST(KruskalWallisTest, PairsAreComparedOnTheOverallRanks) {
  const AlgorithmElement result = Result(kGroups, GroupEntry("pairWise"));
  EXPECT_EQ(result.Rows("PairwiseInfo"), (Texts{"0;1;2", "3.3;8.58333333333333;13"}));
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
  const AlgorithmElement result = Result({{1, 2, 2, 3, 5}, {}, {4, 5, 6, 6, 8, 9}, {7, 10, 11, 12}},
                                         GroupEntry("pairWise"), {"a", "b", "c", "d"});
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

TEST(KruskalWallisTest, TheStepDownRanksItsRangesAnewAndJudgesThemUnadjusted) {
  // SciPy 1.17.1: stats.kruskal(a, b) and (b, c) are significant at 0.05, each of 2 = k - 1 groups.
  const AlgorithmElement apart = Result(kGroups, GroupEntry("stepWise"));
  EXPECT_EQ(apart.Rows("StepwiseInfo"), (Texts{"0;1;2", "3.3;8.58333333333333;13"}));
  EXPECT_THAT(apart.Rows("StepwiseResult/Content"),
              testing::ElementsAre(IsRow("0;0;__MISSING__;;;__MISSING__;__MISSING__"),
                                   IsRow("1;1;__MISSING__;;;__MISSING__;__MISSING__"),
                                   IsRow("2;2;__MISSING__;;;__MISSING__;__MISSING__")));
  EXPECT_EQ(apart.MessageCodes(), (Codes{222111, 220013, 220013, 220013}));
  // At 0.02 only the first two differ: kruskal(b, c) = 4.573170731707319, p = 0.03247640247287811.
  NPARKruskalWOneWay test(TestSettings()
                              .Put("sigLevel", 0.02)
                              .Put("variableIndex", 0)
                              .Put("groupVariableIndex", 1)
                              .Put("numberOfCategories", 3)
                              .Put("typeOfMultipleComparison", "stepWise")
                              .Release());
  ASSERT_THAT(RunAllPasses(test, SortedBy(0, GroupedRows(kGroups))), IsOk());
  const AlgorithmElement result(test.WriteResults());
  EXPECT_THAT(
      result.Rows("StepwiseResult/Content"),
      testing::ElementsAre(IsRow("1;2;4.57317073170732;;;0.0324764024728781;0.0324764024728781"),
                           IsRow("0;0;__MISSING__;;;__MISSING__;__MISSING__")));
}

TEST(KruskalWallisTest, EqualMeanRanksAreOrderedByTheirMedians) {
  // Groups a and b have the mean rank 3.5 both; the median of b is lower.
  const AlgorithmElement result =
      Result({{1, 4, 5.5}, {2, 3, 5.6}, {10, 11, 12, 13, 14}}, GroupEntry("stepWise"));
  ASSERT_EQ(result.Rows("StepwiseInfo").size(), 2U);
  EXPECT_EQ(result.Rows("StepwiseInfo")[0].substr(0, 3), "0;1") << result.Xml();
}

TEST(KruskalWallisTest, BoxPlotsHoldHingesOutliersAndCases) {
  const QDVarList variables =
      VariableListBuilder().Continuous("x").Nominal("g", {"a", "b"}).CaseId("id").Build();
  Rows rows;
  double id = 500;
  for (const double x : {1, 10, 11, 12, 13, 14, 15, 16, 30}) rows.push_back({x, 0, id++});
  for (const double x : {-5, 2}) rows.push_back({x, 1, id++});
  QDSettings settings;
  settings.AddNewSetting("IKruskalWallis", GroupEntry().Get(), "");
  settings.AddNewSetting("caseIDVariableName", "id", "");
  NPARPlanner planner(&settings, &variables);
  MemoryRecords records(rows);
  ASSERT_THAT(planner.Execute(records, 0), IsOk());
  std::ostringstream document;
  ASSERT_THAT(planner.WriteOutput(document, NPARRunInfo()), IsOk());
  const AlgorithmElement result = AlgorithmElement::AllOf(document.str()).at(0);
  EXPECT_EQ(result.RowNames("Group0/Box"), "");
  EXPECT_EQ(result.ColumnNames("Group0/Box"),
            "smallestNonOutlier;25perc;50perc;75perc;largestNonOutlier");
  EXPECT_THAT(result.Rows("Group0/Box"), ElementsAre("10;11;13;15;16"));
  EXPECT_EQ(result.RowNames("Group0/Outliers"), "Values;CaseID");
  EXPECT_EQ(result.ColumnNames("Group1/Outliers"), "1");
  EXPECT_THAT(result.Rows("Group0/Outliers"), ElementsAre("30;1", "508;500"));
  EXPECT_THAT(result.Rows("Group1/Outliers"), ElementsAre("", ""));
}

TEST(KruskalWallisTest, AWeightStandsForThatManyRecords) {
  const QDVarList variables =
      VariableListBuilder().Continuous("x").Nominal("g", kThree).Weight("w").Build();
  Rows weighted{{1, 0, 2.9}, {2, 0, 1}, {2, 1, 3}, {4, 1, 1}, {5, 2, 2}, {9, 2, 0.5}};
  const AlgorithmElement result =
      RunEntry(variables, weighted, "IKruskalWallis", GroupEntry().Get());
  const AlgorithmElement listed = Result({{1, 1, 2}, {2, 2, 2, 4}, {5, 5}}, GroupEntry());
  EXPECT_EQ(result.Text("TestStatistic"), listed.Text("TestStatistic"));
  EXPECT_EQ(result.Text("Group1/MeanOfRank"), listed.Text("Group1/MeanOfRank"));
}

TEST(KruskalWallisTest, AllValuesTiedGiveNoDifference) {
  const AlgorithmElement result = Result({{3, 3}, {3, 3}, {3, 3}}, GroupEntry("pairWise"));
  EXPECT_EQ(result.Text("TestStatistic"), "0");
  EXPECT_EQ(result.Text("AsymptoticSig2Tailed"), "1");
  EXPECT_EQ(result.Decision(), "retain");
  EXPECT_EQ(result.MessageCodes(), (Codes{222111, 222119}));
}

struct WarningCase {
  const char* catches;
  std::vector<std::vector<double>> groups;
  const char* comparison;
  Codes codes;
};

TEST(KruskalWallisTest, AComparisonFallsAwayWithItsOwnWarning) {
  const std::vector<std::vector<double>> two{{1, 2, 3, 4}, {5, 6, 7, 8}, {}};
  const std::vector<std::vector<double>> same{{1, 2}, {1, 2}, {1, 2}};
  const WarningCase cases[] = {
      {"two groups with data, pairwise", two, "pairWise", {222111, 222118}},
      {"two groups with data, stepwise", two, "stepWise", {222111, 222116}},
      {"not significant, pairwise", same, "pairWise", {222111, 222119}},
      {"not significant, stepwise", same, "stepWise", {222111, 222117}},
      {"nothing wanted", two, "none", {222111}},
  };
  for (const WarningCase& row : cases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result = Result(row.groups, GroupEntry(row.comparison));
    EXPECT_EQ(result.MessageCodes(), row.codes);
    EXPECT_FALSE(result.Has("PairwiseResult"));
    EXPECT_FALSE(result.Has("StepwiseResult"));
  }
}

TEST(KruskalWallisTest, FewerThanTwoGroupsWithDataFail) {
  const AlgorithmElement result = Result({{1, 2, 3}, {}, {}}, GroupEntry());
  EXPECT_EQ(result.Decision(), "unknown");
  EXPECT_EQ(result.Messages(), (Messages{{222112, "error", {}}}));
  EXPECT_FALSE(result.Has("StatisticsResult"));
}

TEST(KruskalWallisTest, RecordsOfNoCategoryArePassedOver) {
  Rows rows = SortedBy(0, GroupedRows(kGroups));
  for (const double code : {-3.0, 3.0, 1e9}) rows.push_back({100, code});
  NPARKruskalWOneWay test(TestSettings()
                              .Put("variableIndex", 0)
                              .Put("groupVariableIndex", 1)
                              .Put("numberOfCategories", 3)
                              .Release());
  ASSERT_THAT(RunAllPasses(test, rows), IsOk());
  EXPECT_THAT(AlgorithmElement(test.WriteResults()).Number("TestStatistic"),
              IsCloseTo(10.681807301017361, 1e-13));
}

TEST(KruskalWallisTest, AnEntryThatDoesNotFitNamesItsProblem) {
  const QDVarList variables =
      VariableListBuilder().Continuous("x").Nominal("g", kThree).Nominal("one", {"a"}).Build();
  struct Case {
    const char* variable;
    const char* group;
    const char* comparison;
    std::int32_t code;
    Texts parameters;
  };
  const Case cases[] = {
      {nullptr, "g", "none", 222103, {}},   {"x", nullptr, "none", 222103, {}},
      {"no", "g", "none", 222103, {"no"}},  {"x", "no", "none", 222103, {"no"}},
      {"g", "g", "none", 222109, {}},       {"x", "x", "none", 222110, {}},
      {"x", "g", nullptr, 222101, {}},      {"x", "one", "none", 222115, {}},
      {"no", "g", nullptr, 222103, {"no"}},
  };
  for (const Case& row : cases) {
    TestSettings entry;
    if (row.variable != nullptr) entry.Put("variableName", row.variable);
    if (row.group != nullptr) entry.Put("groupVariableName", row.group);
    if (row.comparison != nullptr) entry.Put("typeOfMultipleComparison", row.comparison);
    SCOPED_TRACE(row.code);
    const AlgorithmElement result = RunEntry(variables, {{1, 0, 0}}, "IKruskalWallis", entry.Get());
    EXPECT_EQ(result.Messages(), (Messages{{row.code, "error", row.parameters}}));
    EXPECT_EQ(result.Decision(), "unknown");
  }
}

}  // namespace
