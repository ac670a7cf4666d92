#include <algorithm>
#include <random>

#include "support/group_run.h"
#include "tests/independent/jonckheere_statistic.h"

namespace {

AlgorithmElement Result(const Samples& groups, const char* comparison = "none") {
  return RunOnSamples("IJonckheereTerpstra", groups, ComparedEntry(comparison));
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

TEST(JonckheereTerpstraTest, ThePublishedExampleIsReproduced) {
  // Hollander and Wolfe, Nonparametric Statistical Methods: knowledge of performance; J = 79. The
  // others by NumPy, from the formula with ties.
  const AlgorithmElement result =
      Result({{40, 35, 38, 43, 44, 41}, {38, 40, 47, 44, 40, 42}, {48, 40, 45, 43, 46, 44}});
  ExpectFigures(result, {{"TestStatistic", 79},
                         {"StandardError", 12.259150244037404, 1e-13},
                         {"StandardTestStatistic", 2.0392930588447173, 1e-13}});
  EXPECT_EQ(result.Decision(), "reject");
  EXPECT_EQ(result.Messages(), Messages{});
}

TEST(JonckheereTerpstraTest, PairsAreJudgedOneSidedInTheDirectionOfTheWhole) {
  const AlgorithmElement result = Result(kRising, "pairWise");
  // NumPy and SciPy 1.17.1: norm.sf(z); times 3.
  EXPECT_THAT(
      result.Rows("PairwiseResult/Content"),
      testing::ElementsAre(
          IsRow("0;1;28.5;5.43975266817427;2.48173047995047;0.0065373062944122;0.0196119188832366"),
          IsRow("0;2;20;4.06543697255016;2.45976018507236;0.00695149408219215;0.0208544822465764"),
          IsRow("1;2;22;4.67618077780005;2.13849730692075;0.0162382012364391;0.0487146037093174")));
  EXPECT_EQ(result.Rows("PairwiseInfo"), (Texts{"0;1;2", "3.3;8.58333333333333;13"}));
}

// The runs of the whole are {0, 6e-15} and {1.2e-14}, so that the last two do not tie.
TEST(JonckheereTerpstraTest, PairsHaveTheTiesOfTheWhole) {
  const TestSettings settings =
      Entry("sigLevel", 0.9, "IJonckheereTerpstra", ComparedEntry("pairWise"));
  const auto results = AlgorithmElement::AllOf(
      RunDocument(GroupedVariables(3), GroupedRows({{-1, 0}, {6e-15}, {1.2e-14, 1}}), settings));
  EXPECT_EQ(results.at(0).Text("TestStatistic"), "7.5");  // 1.5 + 4 + 2
  EXPECT_THAT(results.at(0).Rows("PairwiseResult/Content"),
              testing::ElementsAre(testing::StartsWith("0;1;1.5;"), testing::StartsWith("0;2;4;"),
                                   testing::StartsWith("1;2;2;")));
}

TEST(JonckheereTerpstraTest, APairAgainstTheDirectionHasTheOtherTail) {
  const TestSettings settings =
      Entry("sigLevel", 0.5, "IJonckheereTerpstra",  // the whole is not significant at less
            ComparedEntry("pairWise").Put("orderOfHypotheses", "orderSmallestToLargest"));
  const auto results = AlgorithmElement::AllOf(
      RunDocument(GroupedVariables({"a", "c", "b"}), GroupedRows(kRising), settings));
  // z of the last pair with the other sign, 1 - norm.sf.
  EXPECT_THAT(results.at(0).Rows("PairwiseResult/Content").at(2),
              IsRow("1;2;2;4.67618077780005;-2.13849730692075;0.983761798763561;1"));
}

TEST(JonckheereTerpstraTest, TheOrderIsThatOfTheValuesUnlessTheFieldIsOrdinal) {
  auto numbers =
      VariableListBuilder().Continuous("x").NominalNumbers("g", {10, 9, -1}).Weight("n").Build();
  const struct {
    const char* catches;
    QDVarList variables;
    const char* hypothesis;
    const char* order;
  } cases[] = {
      {"texts by their bytes", GroupedVariables({"c", "a", "b"}), "", "1;2;0"},
      {"ordinal as listed", GroupedVariables({"c", "a", "b"}, true), "", "0;1;2"},
      {"numbers by size", std::move(numbers), "", "2;1;0"},
      {"reversed", GroupedVariables(3), "orderLargestToSmallest", "2;1;0"},
      {"any other word", GroupedVariables(3), "largestToSmallest", "0;1;2"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.catches);
    TestSettings entry = ComparedEntry("stepWise");
    if (*row.hypothesis != '\0') entry.Put("orderOfHypotheses", row.hypothesis);
    Samples groups(3);  // so that the trend is strict in the expected order
    for (int place = 0; place < 3; ++place) {
      groups[static_cast<std::size_t>(row.order[2 * place] - '0')] = Ascending(10 * place, 6);
    }
    const AlgorithmElement result =
        RunEntry(row.variables, GroupedRows(groups), "IJonckheereTerpstra", entry);
    EXPECT_EQ(result.Rows("StepwiseInfo").at(0), row.order);
    EXPECT_EQ(result.Text("TestStatistic"), "108");  // every pair in order
    EXPECT_EQ(result.MessageCodes(), (Codes{220013, 220013, 220013}));
  }
}

TEST(JonckheereTerpstraTest, EmptyCategoriesLeaveNoTrace) {
  const AlgorithmElement result = Result({kRising[0], {}, kRising[1], kRising[2]}, "pairWise");
  EXPECT_THAT(result.Number("StandardTestStatistic"), IsCloseTo(3.568313283595009, 1e-13));
  EXPECT_EQ(result.Text("BoxPlotInfo/GroupCount"), "3");
  EXPECT_FALSE(result.Has("BoxPlotInfo/Group1"));
  EXPECT_FALSE(result.Has("BoxPlotInfo/Group0/MeanOfRank"));
  EXPECT_EQ(result.Rows("PairwiseInfo").at(0), "0;2;3");
}

}  // namespace
