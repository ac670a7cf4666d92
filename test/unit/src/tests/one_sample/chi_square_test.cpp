#include "tests/one_sample/chi_square.h"

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

QDVarList Variables() {
  return VariableListBuilder()
      .Nominal("letter", {"a", "b", "c", "d"})
      .NominalNumbers("grade", {1.0, 2.5})
      .Nominal("single", {"a"})
      .Continuous("x")
      .Weight("n")
      .Build();
}

/// Category codes 0, 1, ... of the first two variables, as often as their counts say.
Rows Counted(const std::vector<double>& counts) {
  Rows rows;
  for (std::size_t code = 0; code < counts.size(); ++code) {
    const auto value = static_cast<double>(code);
    rows.push_back({value, value < 2.0 ? value : -1.0, 0.0, 1.0, counts[code]});
  }
  return rows;
}

QDSettings Expected(const std::string& category, double value) {
  QDSettings item;
  item.AddNewSetting("categoryValue", category, "");
  item.AddNewSetting("expectedValue", value, "");
  return item;
}

TestSettings Entry(const char* name, const char* formation = "getFromData") {
  TestSettings entry;
  entry.Put("variableName", name).Put("classFormation", formation);
  return entry;
}

AlgorithmElement Result(const Rows& rows, const TestSettings& entry) {
  return RunEntry(Variables(), rows, "OChiSquare", entry.Get());
}

TEST(ChiSquareTest, EqualProportionsAgreeWithSciPy) {
  // SciPy 1.17.1: stats.chisquare([10, 20, 30, 40])
  const AlgorithmElement result = Result(Counted({10, 20, 30, 40}), Entry("letter"));
  EXPECT_THAT(result.Number("TestStatistic"), IsCloseTo(20.0));
  EXPECT_THAT(result.Number("AsymptoticSig2Tailed"), IsCloseTo(0.00016974243555282632, 1e-13));
  EXPECT_EQ(result.Text("DegreeOfFreedom"), "3");
  EXPECT_EQ(result.Decision(), "reject");
  EXPECT_EQ(result.Text("Condition/ConditionKey"), "DefaultEqualProbabilities_O_ChiSquare_1");
  EXPECT_EQ(result.RowNames("Content"), "0;1;2;3");
  EXPECT_EQ(result.Rows("Content").front(), "10;25");
}

TEST(ChiSquareTest, GivenProportionsAreScaledAndListsMayNameOtherValues) {
  // SciPy 1.17.1: stats.chisquare([10, 20, 30], [15, 15, 30]); the list stands in its own order.
  TestSettings entry = Entry("letter", "custom");
  entry.Put("custom",
            std::vector<QDSettings>{Expected("c", 4), Expected("a", 2), Expected("b", 2)});
  const AlgorithmElement result = Result(Counted({10, 20, 30, 99}), entry);
  EXPECT_THAT(result.Number("TestStatistic"), IsCloseTo(3.3333333333333335));
  EXPECT_THAT(result.Number("AsymptoticSig2Tailed"), IsCloseTo(0.1888756028375618, 1e-13));
  EXPECT_EQ(result.Text("Condition/ConditionKey"), "UserSpecifiesProbabilities_O_ChiSquare_1");
  EXPECT_EQ(result.Rows("Content"), (Texts{"30;30", "10;15", "20;15"}));

  TestSettings other = Entry("grade", "givenExpectedValue");
  other.Put("custom", std::vector<QDSettings>{Expected("2.50", 1), Expected("7", 1)});
  const AlgorithmElement unknown = Result(Counted({10, 20}), other);
  EXPECT_EQ(unknown.RowNames("Content"), "1;-1");
  EXPECT_EQ(unknown.Rows("Content"), (Texts{"20;10", "0;10"}));
  EXPECT_EQ(unknown.Text("ValsNotInTheCategoreis/0"), "7");
}

TEST(ChiSquareTest, SmallExpectedCountsAreAlwaysTold) {
  EXPECT_EQ(Result(Counted({5, 5, 5, 5}), Entry("letter")).Messages(),
            (Messages{{220211, "helpMessage", {"0", "0", "5"}}}));
  EXPECT_EQ(Result(Counted({7, 3, 4, 5}), Entry("letter")).Messages(),
            (Messages{{220211, "helpMessage", {"4", "100", "4.75"}}}));
}

TEST(ChiSquareTest, EachFailureHasItsCode) {
  const auto given = [](std::vector<QDSettings> list) {
    TestSettings entry = Entry("letter", "givenExpectedValue");
    entry.Put("custom", list);
    return entry;
  };
  QDSettings noValue;
  noValue.AddNewSetting("categoryValue", "a", "");
  QDSettings noCategory;
  noCategory.AddNewSetting("expectedValue", 1.0, "");
  TestSettings noFormation;
  noFormation.Put("variableName", "letter");
  TestSettings textForNumber = Entry("grade", "givenExpectedValue");
  textForNumber.Put("custom", std::vector<QDSettings>{Expected("low", 1), Expected("1", 1)});

  std::vector<std::pair<TestSettings, AlgorithmElement::Message>> cases;
  const auto add = [&](TestSettings entry, std::int32_t code, Texts params) {
    cases.emplace_back(std::move(entry), AlgorithmElement::Message{code, "error", params});
  };
  add(TestSettings(), 220203, {});
  add(Entry("nobody"), 220204, {"nobody"});
  add(Entry("x"), 220204, {"x"});
  add(Entry("single"), 220209, {"single"});
  add(std::move(noFormation), 220201, {"letter"});
  add(Entry("letter", "givenExpectedValue"), 220201, {"letter"});
  add(given({}), 220212, {"letter"});
  add(given({Expected("a", 1)}), 220209, {"letter"});
  add(given({Expected("a", 1), Expected("b", 0)}), 220212, {"letter"});
  add(given({Expected("a", 1), noValue}), 220212, {"letter"});
  add(given({Expected("a", 1), noCategory}), 220212, {"letter"});
  add(std::move(textForNumber), 220212, {"grade"});
  for (const auto& [entry, message] : cases) {
    const AlgorithmElement result = Result(Counted({1, 2}), entry);
    EXPECT_EQ(result.Messages(), Messages{message});
    EXPECT_EQ(result.Decision(), "unknown");
  }
  EXPECT_EQ(Result({{-1, -1, -1, 1, 1}}, Entry("letter")).MessageCodes(),
            std::vector<std::int32_t>{220003});
}

TEST(ChiSquareTest, ExpectedValuesMustMatchTheCategories) {
  TestSettings settings;
  settings.Put("variableIndex", 0).Put("measureLevel", 3).Put("classFormation", "list");
  settings.Put("givenCategoryList", std::vector<double>{0, 1});
  settings.Put("expectedValue", std::vector<double>{1});
  NPARChiSquare test(settings.Release());
  EXPECT_THAT(test.BeginPass(), HasCode(220212));
  NPARChiSquare empty(TestSettings().Release());
  EXPECT_THAT(empty.BeginPass(), HasCode(220201));
}

}  // namespace
