#include "tests/independent/jonckheere_terpstra.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
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
                        const QDVarList& variables = GroupedVariables(kThree)) {
  return RunEntry(variables, GroupedRows(groups), "IJonckheereTerpstra", entry.Get());
}

TEST(JonckheereStatisticTest, CountsAgreeWithAllPairsOneByOne) {
  std::mt19937 random(20261121);
  constexpr std::size_t kGroupCount = 11;
  std::vector<std::pair<double, std::size_t>> values;
  for (int i = 0; i < 400; ++i) {
    values.emplace_back(static_cast<double>(random() % 60), random() % kGroupCount);
  }
  double expected = 0.0;
  for (const auto& [x, earlier] : values) {
    for (const auto& [y, later] : values) {
      if (earlier < later) expected += x < y ? 1.0 : (x == y ? 0.5 : 0.0);
    }
  }
  std::sort(values.begin(), values.end());
  JonckheereCounts counts(kGroupCount);
  for (const auto& [x, group] : values) counts.Add(x, 1, group);
  counts.CloseRun();
  EXPECT_EQ(counts.Sums().statistic, expected);
}

TEST(JonckheereStatisticTest, APairCountsAsTwoGroupsDo) {
  JonckheereCounts counts(2);
  JonckheerePair pair;
  const struct {
    double x;
    std::int64_t weight;
    bool isLater;
  } values[] = {{1, 2, true},          {1.5, 3, false},      {2, 0, true}, {2 + 1e-15, 4, true},
                {2 + 9e-15, 1, false}, {2 + 2e-14, 2, true}, {3, 5, true}, {3, 1, false}};
  for (const auto& value : values) {
    counts.Add(value.x, value.weight, value.isLater ? 1 : 0);
    pair.Add(value.x, value.weight, value.isLater);
  }
  counts.CloseRun();
  pair.CloseRun();
  // By hand: 4 * (3 + 1/2), 2 * 4, 5 * (4 + 1/2); runs of 2, 3, 5, 2 and 6.
  EXPECT_EQ(pair.Sums().statistic, 14 + 8 + 22.5);
  EXPECT_EQ(pair.Sums().ties.pairs, 2 + 6 + 20 + 2 + 30);
  EXPECT_EQ(pair.Sums().ties.triples, 4 + 18 + 100 + 4 + 180);
  EXPECT_EQ(counts.Sums().statistic, pair.Sums().statistic);
  EXPECT_EQ(counts.Sums().ties.pairs, pair.Sums().ties.pairs);
  EXPECT_EQ(counts.Sums().ties.triples, pair.Sums().ties.triples);
}

struct StandardCase {
  const char* catches;
  JonckheereSums sums;
  std::vector<double> sizes;
  double standardError, z;
};

// By hand from the formula; without ties the variance is
// (N(N-1)(2N+5) - sum n(n-1)(2n+5)) / 72.
const StandardCase kStandardCases[] = {
    {"three values, no ties", {2.0, {}}, {2, 1}, std::sqrt(2.0 / 3.0), 1.0 / std::sqrt(2.0 / 3.0)},
    {"two values", {1.0, {}}, {1, 1}, 0.5, 1.0},
    {"two tied values", {0.5, {2, 4}}, {1, 1}, 0.0, 0.0},
    {"all of many tied", {0.5 * 7 * 9, {16 * 15, 16 * 16 * 15}}, {7, 9}, 0.0, 0.0},
};

TEST(JonckheereStatisticTest, TheVarianceIsCorrectedForTies) {
  for (const StandardCase& row : kStandardCases) {
    SCOPED_TRACE(row.catches);
    const JonckheereFigures figures = StandardizeJonckheere(row.sums, row.sizes);
    EXPECT_NEAR(figures.standardError, row.standardError, 1e-15);
    EXPECT_NEAR(figures.standardTestStatistic, row.z, 1e-15);
  }
}

TEST(JonckheereTerpstraTest, ThePublishedExampleIsReproduced) {
  // Hollander and Wolfe, Nonparametric Statistical Methods: knowledge of performance; J = 79.
  const AlgorithmElement result = Result(
      {{40, 35, 38, 43, 44, 41}, {38, 40, 47, 44, 40, 42}, {48, 40, 45, 43, 46, 44}}, GroupEntry());
  EXPECT_EQ(result.Text("StatisticsResult/TestStatistic"), "79");
  // NumPy, from the formula with ties.
  EXPECT_THAT(result.Number("StandardError"), IsCloseTo(12.259150244037404, 1e-13));
  EXPECT_THAT(result.Number("StandardTestStatistic"), IsCloseTo(2.0392930588447173, 1e-13));
  EXPECT_EQ(result.Decision(), "reject");
  EXPECT_EQ(result.Messages(), Messages{});
}

TEST(JonckheereTerpstraTest, PairsAreJudgedOneSidedInTheDirectionOfTheWhole) {
  const AlgorithmElement result = Result(kGroups, GroupEntry("pairWise"));
  // NumPy and SciPy 1.17.1: norm.sf(z); times 3.
  EXPECT_THAT(
      result.Rows("PairwiseResult/Content"),
      testing::ElementsAre(
          IsRow("0;1;28.5;5.43975266817427;2.48173047995047;0.0065373062944122;0.0196119188832366"),
          IsRow("0;2;20;4.06543697255016;2.45976018507236;0.00695149408219215;0.0208544822465764"),
          IsRow("1;2;22;4.67618077780005;2.13849730692075;0.0162382012364391;0.0487146037093174")));
  EXPECT_EQ(result.Rows("PairwiseInfo"), (Texts{"0;1;2", "3.3;8.58333333333333;13"}));
}

TEST(JonckheereTerpstraTest, APairAgainstTheDirectionHasTheOtherTail) {
  NPARJonckTer test(TestSettings()
                        .Put("sigLevel", 0.5)  // the whole is not significant at less
                        .Put("variableIndex", 0)
                        .Put("groupVariableIndex", 1)
                        .Put("groupOrder", std::vector<double>{0, 2, 1})
                        .Put("pairWise", 1.0)
                        .Release());
  ASSERT_THAT(RunAllPasses(test, SortedBy(0, GroupedRows(kGroups))), IsOk());
  const AlgorithmElement result(test.WriteResults());
  // z of the last pair with the other sign, 1 - norm.sf.
  EXPECT_THAT(result.Rows("PairwiseResult/Content").at(2),
              IsRow("1;2;2;4.67618077780005;-2.13849730692075;0.983761798763561;1"));
}

TEST(JonckheereTerpstraTest, TheOrderIsThatOfTheValuesUnlessTheFieldIsOrdinal) {
  struct Case {
    const char* catches;
    QDVarList variables;
    const char* hypothesis;
    const char* order;
  };
  Case cases[] = {
      {"texts by their bytes", GroupedVariables({"c", "a", "b"}), nullptr, "1;2;0"},
      {"ordinal as listed", GroupedVariables({"c", "a", "b"}, true), nullptr, "0;1;2"},
      {"numbers by size",
       VariableListBuilder().Continuous("x").NominalNumbers("g", {10, 9, -1}).Build(), nullptr,
       "2;1;0"},
      {"reversed", GroupedVariables(kThree), "orderLargestToSmallest", "2;1;0"},
      {"any other word", GroupedVariables(kThree), "largestToSmallest", "0;1;2"},
  };
  for (Case& row : cases) {
    SCOPED_TRACE(row.catches);
    TestSettings entry = GroupEntry("stepWise");
    if (row.hypothesis != nullptr) entry.Put("orderOfHypotheses", row.hypothesis);
    const Groups rising{{1, 2, 3, 4, 5, 6}, {11, 12, 13, 14, 15, 16}, {21, 22, 23, 24, 25, 26}};
    Groups groups = rising;  // so that the trend is strict in the expected order
    for (int place = 0; place < 3; ++place) {
      const auto code = static_cast<std::size_t>(row.order[2 * place] - '0');
      groups[code] = rising[static_cast<std::size_t>(place)];
    }
    const AlgorithmElement result = Result(groups, entry, row.variables);
    EXPECT_EQ(result.Rows("StepwiseInfo").at(0), row.order);
    EXPECT_EQ(result.Text("TestStatistic"), "108");  // every pair in order
    EXPECT_EQ(result.MessageCodes(), (Codes{220013, 220013, 220013}));
  }
}

TEST(JonckheereTerpstraTest, EmptyCategoriesLeaveNoTrace) {
  const AlgorithmElement result =
      Result({kGroups[0], {}, kGroups[1], kGroups[2]}, GroupEntry("pairWise"),
             GroupedVariables({"a", "b", "c", "d"}));
  EXPECT_THAT(result.Number("StandardTestStatistic"), IsCloseTo(3.568313283595009, 1e-13));
  EXPECT_EQ(result.Text("BoxPlotInfo/GroupCount"), "3");
  EXPECT_FALSE(result.Has("BoxPlotInfo/Group1"));
  EXPECT_FALSE(result.Has("BoxPlotInfo/Group0/MeanOfRank"));
  EXPECT_EQ(result.Rows("PairwiseInfo").at(0), "0;2;3");
}

TEST(JonckheereTerpstraTest, OtherCasesCarryTheirCodes) {
  struct Case {
    const char* catches;
    Groups groups;
    const char* comparison;
    Codes codes;
  };
  const Groups two{{1, 2, 3, 4}, {5, 6, 7, 8}, {}};
  const Groups same{{1, 2}, {1, 2}, {1, 2}};
  const Case cases[] = {
      {"two groups, pairwise", two, "pairWise", {222211}},
      {"two groups, stepwise", two, "stepWise", {222212}},
      {"not significant, pairwise", same, "pairWise", {222213}},
      {"not significant, stepwise", same, "stepWise", {222214}},
      {"one group", {{1, 2}, {}, {}}, "none", {222210}},
      {"nothing wanted", two, "none", {}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.catches);
    EXPECT_EQ(Result(row.groups, GroupEntry(row.comparison)).MessageCodes(), row.codes);
  }
}

TEST(JonckheereTerpstraTest, AllValuesTiedGiveNoTrend) {
  const AlgorithmElement result = Result({{3, 3, 3}, {3, 3}, {3, 3, 3, 3}}, GroupEntry());
  EXPECT_EQ(result.Text("StandardError"), "0");
  EXPECT_EQ(result.Text("StandardTestStatistic"), "0");
  EXPECT_EQ(result.Text("AsymptoticSig2Tailed"), "1");
}

TEST(JonckheereTerpstraTest, AnEntryThatDoesNotFitNamesItsProblem) {
  struct Case {
    const char* variable;
    const char* group;
    std::int32_t code;
    Texts parameters;
  };
  const Case cases[] = {
      {nullptr, "g", 222215, {}},  {"x", nullptr, 222216, {}}, {"no", "g", 222203, {"no"}},
      {"x", "no", 222203, {"no"}}, {"g", "g", 222218, {"1"}},  {"x", "x", 222217, {"0"}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.code);
    TestSettings entry;
    if (row.variable != nullptr) entry.Put("variableName", row.variable);
    if (row.group != nullptr) entry.Put("groupVariableName", row.group);
    const AlgorithmElement result = Result(kGroups, entry);
    EXPECT_EQ(result.Messages(), (Messages{{row.code, "error", row.parameters}}));
    EXPECT_EQ(result.Decision(), "unknown");
  }
}

TEST(JonckheereTerpstraTest, AGroupRangeIsNamedInTheCondition) {
  NPARJonckTer test(TestSettings().Put("userSpecifyGroupRange", 1.0).Release());
  static_cast<void>(test.BeginPass());
  EXPECT_EQ(AlgorithmElement(test.WriteResults()).Text("Condition/ConditionKey"),
            "CategoryListsAreSpecified_I_JonckheereTerpstra_2 ");
}

}  // namespace
