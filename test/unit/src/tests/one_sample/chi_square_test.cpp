#include "support/entry_run.h"

namespace {

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
  return Entry("categoryValue", category, "expectedValue", value);
}

TestSettings On(const char* name, const char* formation = "getFromData") {
  return Entry("variableName", name, "classFormation", formation);
}

TestSettings Given(const char* name, const std::vector<QDSettings>& list,
                   const char* formation = "givenExpectedValue") {
  return On(name, formation).Put("custom", list);
}

AlgorithmElement Result(const Rows& rows, const TestSettings& entry) {
  return RunEntry(Variables(), rows, "OChiSquare", entry);
}

TEST(ChiSquareTest, EqualProportionsAgreeWithSciPy) {
  // SciPy 1.17.1: stats.chisquare([10, 20, 30, 40])
  const AlgorithmElement result = Result(Counted({10, 20, 30, 40}), On("letter"));
  ExpectFigures(result, {{"TestStatistic", 20.0},
                         {"AsymptoticSig2Tailed", 0.00016974243555282632, 1e-13},
                         {"DegreeOfFreedom", 3}});
  EXPECT_EQ(result.Decision(), "reject");
  EXPECT_EQ(result.Text("Condition/ConditionKey"), "DefaultEqualProbabilities_O_ChiSquare_1");
  EXPECT_EQ(result.RowNames("Content"), "0;1;2;3");
  EXPECT_EQ(result.Rows("Content").front(), "10;25");
}

TEST(ChiSquareTest, GivenProportionsAreScaledAndListsMayNameOtherValues) {
  // SciPy 1.17.1: stats.chisquare([10, 20, 30], [15, 15, 30]); the list stands in its own order.
  const AlgorithmElement result =
      Result(Counted({10, 20, 30, 99}),
             Given("letter", {Expected("c", 4), Expected("a", 2), Expected("b", 2)}, "custom"));
  ExpectFigures(result, {{"TestStatistic", 3.3333333333333335},
                         {"AsymptoticSig2Tailed", 0.1888756028375618, 1e-13}});
  EXPECT_EQ(result.Text("Condition/ConditionKey"), "UserSpecifiesProbabilities_O_ChiSquare_1");
  EXPECT_EQ(result.Rows("Content"), (Texts{"30;30", "10;15", "20;15"}));

  const AlgorithmElement unknown =
      Result(Counted({10, 20}), Given("grade", {Expected("2.50", 1), Expected("7", 1)}));
  EXPECT_EQ(unknown.RowNames("Content"), "1;-1");
  EXPECT_EQ(unknown.Rows("Content"), (Texts{"20;10", "0;10"}));
  EXPECT_EQ(unknown.Text("ValsNotInTheCategoreis/0"), "7");
}

TEST(ChiSquareTest, SmallExpectedCountsAreAlwaysTold) {
  EXPECT_EQ(Result(Counted({5, 5, 5, 5}), On("letter")).Messages(),
            (Messages{{220211, "helpMessage", {"0", "0", "5"}}}));
  EXPECT_EQ(Result(Counted({7, 3, 4, 5}), On("letter")).Messages(),
            (Messages{{220211, "helpMessage", {"4", "100", "4.75"}}}));
}

TEST(ChiSquareTest, EachFailureHasItsCode) {
  const QDSettings noValue = Entry("categoryValue", "a");
  const QDSettings noCategory = Entry("expectedValue", 1.0);
  const QDSettings a = Expected("a", 1);
  ExpectMessages(
      "OChiSquare", Variables(), Counted({1, 2}),
      {{"no field", Entry(), Error(220203)},
       {"an unknown field", On("nobody"), Error(220204, {"nobody"})},
       {"a continuous field", On("x"), Error(220204, {"x"})},
       {"one category", On("single"), Error(220209, {"single"})},
       {"no formation", Entry("variableName", "letter"), Error(220201, {"letter"})},
       {"no list", On("letter", "givenExpectedValue"), Error(220201, {"letter"})},
       {"an empty list", Given("letter", {}), Error(220212, {"letter"})},
       {"a list of one", Given("letter", {a}), Error(220209, {"letter"})},
       {"nothing expected", Given("letter", {a, Expected("b", 0)}), Error(220212, {"letter"})},
       {"no expected value", Given("letter", {a, noValue}), Error(220212, {"letter"})},
       {"no category value", Given("letter", {a, noCategory}), Error(220212, {"letter"})},
       {"a text for a number", Given("grade", {Expected("low", 1), Expected("1", 1)}),
        Error(220212, {"grade"})}});
  ExpectMessages("OChiSquare", Variables(), {{-1, -1, -1, 1, 1}},
                 {{"no record", On("letter"), Error(220003)}});
}

}  // namespace
