#include "support/entry_run.h"

namespace {

AlgorithmElement Result(int first, int second, const TestSettings& entry) {
  // Another field is never answered.
  const auto variables =
      VariableListBuilder().Nominal("answer", {"yes", "no"}).Nominal("other", {"a"}).Build();
  Rows rows(static_cast<std::size_t>(first), {0.0, -1.0});
  rows.insert(rows.end(), static_cast<std::size_t>(second), {1.0, -1.0});
  return RunEntry(variables, rows, "OEstimateConfidenceInterval", entry);
}

TEST(EstimateCITest, MethodsComeInOrderAndOnlyWhenAskedFor) {
  TestSettings entry = Entry("variableName", "answer");
  EXPECT_EQ(Result(3, 4, entry).Outline(), "Condition(ConditionKey %0 %1 %2)");
  entry.Put("isDoProfileLikelihood", "true", "isDoClopperPearson", "true", "isDoJeffreys", "false");
  const AlgorithmElement result = Result(3, 4, entry);
  EXPECT_EQ(result.ChildNames().size(), 3u);
  EXPECT_EQ(result.Text("computeECIMethod"), "ClopperPearson");
  // SciPy 1.17.1: beta.ppf(0.025, 3, 5), beta.ppf(0.975, 4, 4)
  ExpectFigures(result, {{"Estimate", 3.0 / 7.0},
                         {"Lower", 0.09898827844250786, 1e-11},
                         {"Upper", 0.8159484323599169, 1e-11}});
  EXPECT_EQ(result.Type(), "confidence_interval");
  EXPECT_EQ(result.Decision(), "(absent)") << "an estimate decides nothing";
}

TEST(EstimateCITest, FailuresHaveTheTestsOwnCodes) {
  const auto variables =
      VariableListBuilder().Nominal("answer", {"yes", "no"}).Continuous("x").Other("odd").Build();
  const char* const cut = "contVarClassFormation";
  const char* const categories = "catVarClassFormation";
  ExpectMessages(
      "OEstimateConfidenceInterval", variables, {{0.0, 1.0, 1.0}},
      {{"no name", Entry(), Error(221513)},
       {"an unknown name", Entry("variableName", "nobody"), Error(221503, {"nobody"})},
       {"a kind that fits no test", Entry("variableName", "odd"), Error(221504)},
       {"no list", Entry("variableName", "answer", categories, "givenCategoryList"), Error(221511)},
       {"no cut point", Entry("variableName", "x", cut, "givenCutPoint"), Error(221512)},
       {"no formation", Entry("variableName", "x"), Error(221514)},
       {"categories with a cut point", Entry("variableName", "answer", categories, "givenCutPoint"),
        Error(221515)}});
}

}  // namespace
