#include "tests/one_sample/confidence_interval.h"

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

struct IntervalCase {
  const char* catches;
  const char* key;
  const char* method;
  int first, second;
  double lower, upper;
  double tolerance;
};

// statsmodels 0.15.0: proportion_confint(count, nobs, 0.05, "beta" or "jeffreys"); profile limits
// by mpmath.findroot on the log-likelihood ratio, met to the solver's 1e-7; at the edges by hand:
// exp(-chi2.ppf(0.95, 1) / (2 n)).
const IntervalCase kCases[] = {
    {"quantiles of F", "isDoClopperPearson", "ClopperPearson", 7, 13, 0.15390920478454118,
     0.5921885345328282, 1e-11},
    {"no success", "isDoClopperPearson", "ClopperPearson", 0, 10, 0.0, 0.30849710781876083, 1e-11},
    {"no failure", "isDoClopperPearson", "ClopperPearson", 10, 0, 0.6915028921812392, 1.0, 1e-11},
    {"quantiles of beta", "isDoJeffreys", "Jeffreys", 7, 13, 0.172276213631912, 0.5677660938414961,
     1e-11},
    {"no success, lower limit 0", "isDoJeffreys", "Jeffreys", 0, 10, 0.0, 0.2171962675092106,
     1e-11},
    {"no failure, upper limit 1", "isDoJeffreys", "Jeffreys", 10, 0, 0.7828037324907894, 1.0,
     1e-11},
    {"Newton's steps", "isDoProfileLikelihood", "ProfileLikelihood", 7, 13, 0.168302823226138,
     0.567940289594670, 1e-7},
    {"profile without success", "isDoProfileLikelihood", "ProfileLikelihood", 0, 10, 0.0,
     0.1747533280498298, 1e-12},
    {"profile without failure", "isDoProfileLikelihood", "ProfileLikelihood", 10, 0,
     0.8252466719501702, 1.0, 1e-12},
};

TEST(EstimateCITest, LimitsAgreeWithPublishedMethods) {
  for (const IntervalCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    TestSettings entry = Entry("variableName", "answer", row.key, "true");
    // The first record's category comes first; without a success that is the second one.
    if (row.first == 0) {
      entry.Put("catVarClassFormation", "givenCategoryList", "givenCategoryList", Texts{"yes"});
    }
    const AlgorithmElement result = Result(row.first, row.second, entry);
    EXPECT_EQ(result.Text("ConfidenceInterval/computeECIMethod"), row.method);
    ExpectFigures(result, {{"Estimate", row.first / (row.first + 0.0 + row.second)},
                           {"Lower", row.lower, row.tolerance},
                           {"Upper", row.upper, row.tolerance}});
  }
}

TEST(EstimateCITest, MethodsComeInOrderAndOnlyWhenAskedFor) {
  TestSettings entry = Entry("variableName", "answer");
  EXPECT_EQ(Result(3, 4, entry).Outline(), "Condition(ConditionKey %0 %1 %2)");
  entry.Put("isDoProfileLikelihood", "true", "isDoClopperPearson", "true", "isDoJeffreys", "false");
  const AlgorithmElement result = Result(3, 4, entry);
  EXPECT_EQ(result.ChildNames().size(), 3u);
  EXPECT_EQ(result.Text("computeECIMethod"), "ClopperPearson");
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
