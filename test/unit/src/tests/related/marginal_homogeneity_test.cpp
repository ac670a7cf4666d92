#include "tests/related/marginal_homogeneity.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/algorithm_element.h"
#include "support/matchers.h"
#include "support/run_all_passes.h"
#include "support/test_settings.h"
#include "support/variables.h"

namespace {

using Texts = std::vector<std::string>;
using Messages = std::vector<AlgorithmElement::Message>;

TestSettings Entry(const Texts& names) {
  TestSettings entry;
  entry.Put("variableName", names);
  return entry;
}

AlgorithmElement Result(const QDVarList& variables, const Rows& rows, const TestSettings& entry) {
  return RunEntry(variables, rows, "RMarginalHomogeneity", entry.Get());
}

/// A 3 by 3 table by its rows.
Rows Table(const std::vector<std::vector<double>>& cells) {
  Rows rows;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    for (std::size_t j = 0; j < cells[i].size(); ++j) {
      rows.push_back({static_cast<double>(i), static_cast<double>(j), cells[i][j]});
    }
  }
  return rows;
}

TEST(MarginalHomogeneityTest, FiguresAgreeWithTheFormula) {
  // Python: T = 66, E = 79.5, V = 13.25; SciPy 1.17.1 2 * norm.sf(abs((T - E) / sqrt(V)))
  const auto variables = VariableListBuilder()
                             .OrdinalNumbers("first", {1, 2, 3})
                             .OrdinalNumbers("second", {1, 2, 3})
                             .Weight("n")
                             .Build();
  const AlgorithmElement result =
      Result(variables, Table({{20, 10, 5}, {3, 30, 15}, {0, 5, 40}}), Entry({"first", "second"}));
  EXPECT_EQ(result.Text("TotalN"), "128");
  EXPECT_EQ(result.Text("TestStatistic"), "66");
  EXPECT_THAT(result.Number("StandardError"), IsCloseTo(3.640054944640259));
  EXPECT_THAT(result.Number("StandardTestStatistic"), IsCloseTo(-3.708735226614604));
  EXPECT_THAT(result.Number("AsymptoticSig2Tailed"), IsCloseTo(0.00020829709987001355, 1e-13));
  EXPECT_EQ(result.Decision(), "reject");
  EXPECT_EQ(result.Rows("Content"), (Texts{"20;10;5", "3;30;15", "0;5;40"}));
}

TEST(MarginalHomogeneityTest, CategoriesUniteInTheFirstFieldsOrder) {
  const auto variables = VariableListBuilder()
                             .Ordinal("first", {"low", "mid;dle"})
                             .Ordinal("second", {"high", "low"})
                             .Weight("n")
                             .Build();
  // low-high 4 (places 0 and 2), middle-low 2 (1 and 0): T = 2, E = (4 * 2 + 2 * 1) / 2 = 5,
  // V = 4 * 1 + 2 / 4 = 4.5
  const AlgorithmElement result =
      Result(variables, {{0, 0, 4}, {1, 1, 2}, {0, 1, 7}}, Entry({"first", "second"}));
  EXPECT_EQ(result.RowNames("Content"), "low;mid\\;dle;high");
  EXPECT_EQ(result.Rows("Content"), (Texts{"7;0;4", "2;0;0", "0;0;0"}));
  EXPECT_EQ(result.Text("TestStatistic"), "2");
  EXPECT_THAT(result.Number("StandardTestStatistic"), IsCloseTo(-3.0 / std::sqrt(4.5)));
}

TEST(MarginalHomogeneityTest, AFilledDiagonalIsHomogeneous) {
  const auto variables = VariableListBuilder()
                             .OrdinalNumbers("first", {1, 2})
                             .OrdinalNumbers("second", {1, 2})
                             .Weight("n")
                             .Build();
  const AlgorithmElement result =
      Result(variables, {{0, 0, 3}, {1, 1, 4}}, Entry({"first", "second"}));
  EXPECT_EQ(result.Text("StandardError"), "0");
  EXPECT_EQ(result.Text("StandardTestStatistic"), "0");
  EXPECT_EQ(result.Text("AsymptoticSig2Tailed"), "1");
}

TEST(MarginalHomogeneityTest, EachFailureHasItsCode) {
  const auto variables = VariableListBuilder()
                             .Ordinal("first", {"a", "b"})
                             .Ordinal("second", {"a", "b"})
                             .OrdinalNumbers("grade", {1, 2})
                             .Ordinal("empty", {})
                             .Continuous("x")
                             .Build();
  const std::vector<std::pair<Texts, AlgorithmElement::Message>> cases{
      {{"first"}, {221711, "error", {}}},
      {{"first", "second", "grade"}, {221711, "error", {}}},
      {{"nobody", "second"}, {221710, "error", {"nobody"}}},
      {{"first", "x"}, {221710, "error", {}}},
      {{"first", "grade"}, {221709, "error", {}}},
      {{"empty", "empty"}, {221710, "error", {}}},
  };
  const Rows rows{{0, 1, 0, -1, 2.0}};
  for (const auto& [names, message] : cases) {
    const AlgorithmElement result = Result(variables, rows, Entry(names));
    EXPECT_EQ(result.Messages(), Messages{message});
    EXPECT_EQ(result.Decision(), "unknown");
  }
  EXPECT_EQ(Result(variables, rows, TestSettings()).Messages(), (Messages{{221703, "error", {}}}));
  EXPECT_EQ(Result(variables, {{-1, -1, 0, 0, 0}}, Entry({"first", "second"})).MessageCodes(),
            std::vector<std::int32_t>{220003});
}

TEST(MarginalHomogeneityTest, ATableThatDoesNotFitFailsTheTestAlone) {
  TestSettings settings;
  settings.Put("variablePairFirstIndex", 0).Put("variablePairSecondIndex", 1);
  settings.Put("scoreList", std::vector<double>(20000, 1.0));
  NPARMargHomo test(settings.Release(), CategoryUnion());
  EXPECT_THAT(test.BeginPass(), HasCode(220002));
}

}  // namespace
