#include "tests/independent/median.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/grouped_rows.h"
#include "support/matchers.h"
#include "support/row_matcher.h"

namespace {

using Texts = std::vector<std::string>;
using Codes = std::vector<std::int32_t>;
using Messages = std::vector<AlgorithmElement::Message>;
using Groups = std::vector<std::vector<double>>;

const Groups kGroups{{1, 2, 2, 3, 5}, {4, 5, 6, 6, 8, 9}, {7, 10, 11, 12}};
const Texts kThree{"a", "b", "c"};

AlgorithmElement Result(const Groups& groups, const TestSettings& entry,
                        const Texts& categories = kThree) {
  return RunEntry(GroupedVariables(categories), GroupedRows(groups), "IMedian", entry.Get());
}

TEST(MedianTest, TheTableIsCutAtTheCommonMedian) {
  const AlgorithmElement result = Result(kGroups, GroupEntry());
  EXPECT_EQ(result.Text("StatisticsResult/Median"), "6");
  EXPECT_EQ(result.RowNames("TwoClassComparison/Content"), "0;1;2");
  EXPECT_EQ(result.ColumnNames("TwoClassComparison/Content"), "lessOrEqual;greater");
  EXPECT_EQ(result.Rows("TwoClassComparison/Content"), (Texts{"5;0", "4;2", "0;4"}));
  // SciPy 1.17.1: stats.median_test(a, b, c, ties="below", correction=False)
  EXPECT_THAT(result.Number("StatisticsResult/TestStatistic"), IsCloseTo(9.444444444444443));
  EXPECT_THAT(result.Number("AsymptoticSig2Tailed"), IsCloseTo(0.008895389037043958, 1e-13));
  EXPECT_EQ(result.Text("DegreeOfFreedom"), "2");
  EXPECT_EQ(result.Text("TotalN"), "15");
  EXPECT_FALSE(result.Has("YatesTestStatistic"));
  // Expected counts 3, 3.6, 2.4 and 2, 2.4, 1.6 are all below 5.
  EXPECT_EQ(result.Messages(), (Messages{{222311, "helpMessage", {"6", "100", "1.6"}}}));
}

TEST(MedianTest, TwoGroupsHaveYatesAndFisher) {
  const AlgorithmElement result =
      Result({{1, 2, 3, 4, 5, 6, 7, 12}, {8, 9, 10, 11, 13, 14, 15}}, GroupEntry(), {"a", "b"});
  // SciPy 1.17.1: stats.chi2_contingency([[7, 1], [1, 6]], correction=...), stats.fisher_exact
  EXPECT_THAT(result.Number("StatisticsResult/TestStatistic"), IsCloseTo(8.040497448979592));
  EXPECT_THAT(result.Number("AsymptoticSig2Tailed"), IsCloseTo(0.004574297354299621, 1e-13));
  EXPECT_THAT(result.Number("YatesTestStatistic"), IsCloseTo(5.367904974489796));
  EXPECT_THAT(result.Number("YatesAsymptoticSig2Tailed"), IsCloseTo(0.02051059831547927, 1e-13));
  EXPECT_THAT(result.Number("ExactSig2Tailed"), IsCloseTo(0.0101010101010101));
}

TEST(MedianTest, TheExactValueIsGivenUpToThirtyAndDecides) {
  // 2 of 15 against 8 of 15 above 9: chi-square p 0.020, Fisher's p 0.050 (R 4.2.2: fisher.test).
  Groups groups{{}, {}};
  for (int i = 0; i < 15; ++i) {
    groups[0].push_back(i < 13 ? 1 : 10);
    groups[1].push_back(i < 7 ? 1 : 10);
  }
  TestSettings entry = GroupEntry();
  entry.Put("userSpecifyMedian", true).Put("median", 9.0);
  const AlgorithmElement thirty = Result(groups, entry, {"a", "b"});
  EXPECT_LT(*thirty.Number("AsymptoticSig2Tailed"), 0.05);
  EXPECT_GT(*thirty.Number("ExactSig2Tailed"), 0.05);
  EXPECT_EQ(thirty.Decision(), "retain");
  EXPECT_EQ(thirty.Text("Median"), "9");
  groups[1].push_back(10);
  const AlgorithmElement more = Result(groups, entry, {"a", "b"});
  EXPECT_FALSE(more.Has("ExactSig2Tailed"));
  EXPECT_EQ(more.Decision(), "reject");
}

TEST(MedianTest, PairsHaveMediansOfTheirOwn) {
  const AlgorithmElement result = Result(kGroups, GroupEntry("pairWise"));
  EXPECT_EQ(result.Rows("PairwiseInfo"), (Texts{"0;1;2", "2;6;10.5"}));
  // NumPy and SciPy 1.17.1: chi2_contingency of each pair's own table; times 3.
  EXPECT_THAT(
      result.Rows("PairwiseResult/Content"),
      testing::ElementsAre(IsRow("0;1;5.23809523809524;;;0.0220974552842272;0.0662923658526815"),
                           IsRow("0;2;9;;;0.00269979606326019;0.00809938818978057"),
                           IsRow("1;2;1.66666666666667;;;0.196705602458943;0.590116807376829")));
}

TEST(MedianTest, APairOnOneSideDoesNotDiffer) {
  TestSettings entry = GroupEntry("pairWise");
  entry.Put("userSpecifyMedian", true).Put("median", 5.5);
  const AlgorithmElement result = Result({{1, 2, 3, 4}, {1, 2, 3, 5}, {6, 7, 8, 9}}, entry);
  EXPECT_EQ(result.Rows("PairwiseResult/Content").at(0), "0;1;0;;;1;1");
}

TEST(MedianTest, TheStepDownGoesByTheGroupsMedians) {
  const AlgorithmElement result =
      Result({kGroups[2], kGroups[0], kGroups[1]}, GroupEntry("stepWise"));
  EXPECT_EQ(result.Rows("StepwiseInfo"), (Texts{"1;2;0", "2;6;10.5"}));
  EXPECT_THAT(
      result.Rows("StepwiseResult/Content"),
      testing::ElementsAre(IsRow("1;2;1.66666666666667;;;0.196705602458943;0.196705602458943"),
                           IsRow("0;0;__MISSING__;;;__MISSING__;__MISSING__")));
  EXPECT_EQ(result.MessageCodes(), (Codes{222311, 220013}));
}

TEST(MedianTest, WeightsCountAsRecords) {
  const QDVarList variables =
      VariableListBuilder().Continuous("x").Nominal("g", {"a", "b"}).Weight("w").Build();
  // Units 1 1 1 | 2 4 4: the middle ones are 1 and 2.
  const AlgorithmElement result =
      RunEntry(variables, {{4, 1, 2.9}, {1, 0, 3}, {2, 1, 1}}, "IMedian", GroupEntry().Get());
  EXPECT_EQ(result.Text("Median"), "1.5");
  EXPECT_EQ(result.Rows("TwoClassComparison/Content"), (Texts{"3;0", "0;3"}));
}

TEST(MedianTest, OtherCasesCarryTheirCodes) {
  struct Case {
    const char* catches;
    Groups groups;
    const char* comparison;
    Codes codes;
  };
  const Groups two{{1, 2, 3, 4, 5, 6}, {7, 8, 9, 10, 11, 12}, {}};
  const Groups same{{1, 2}, {1, 2}, {1, 2}};
  const Case cases[] = {
      {"two groups, pairwise", two, "pairWise", {222311, 222318}},
      {"two groups, stepwise", two, "stepWise", {222311, 222316}},
      {"not significant, pairwise", same, "pairWise", {222311, 222319}},
      {"not significant, stepwise", same, "stepWise", {222311, 222317}},
      {"one group", {{1, 2}, {}, {}}, "none", {222312}},
      {"no value", {{QDMV::gMissingValue}, {}, {}}, "none", {220003}},
      {"no value above the median", {{1, 2}, {2, 2}, {2, 2}}, "none", {222313}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.catches);
    EXPECT_EQ(Result(row.groups, GroupEntry(row.comparison)).MessageCodes(), row.codes);
  }
}

TEST(MedianTest, AnEntryThatDoesNotFitNamesItsProblem) {
  const QDVarList variables =
      VariableListBuilder().Continuous("x").Nominal("g", kThree).Nominal("one", {"a"}).Build();
  struct Case {
    const char* variable;
    const char* group;
    bool wantsMedian;
    std::int32_t code;
    Texts parameters;
  };
  const Case cases[] = {
      {nullptr, "g", false, 222303, {}},  {"no", "g", false, 222303, {"no"}},
      {"x", "no", false, 222303, {"no"}}, {"g", "g", false, 222309, {}},
      {"x", "x", false, 222310, {}},      {"x", "one", false, 222315, {}},
      {"x", "g", true, 222302, {}},       {"x", "one", true, 222315, {}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.code);
    TestSettings entry;
    if (row.variable != nullptr) entry.Put("variableName", row.variable);
    if (row.group != nullptr) entry.Put("groupVariableName", row.group);
    if (row.wantsMedian) entry.Put("userSpecifyMedian", true);
    const AlgorithmElement result = RunEntry(variables, {{1, 0, 0}}, "IMedian", entry.Get());
    EXPECT_EQ(result.Messages(), (Messages{{row.code, "error", row.parameters}}));
    EXPECT_EQ(result.Decision(), "unknown");
  }
}

}  // namespace
