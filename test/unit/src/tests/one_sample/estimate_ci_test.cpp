#include "tests/one_sample/estimate_ci.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/algorithm_element.h"
#include "support/matchers.h"
#include "support/run_all_passes.h"
#include "support/test_settings.h"
#include "support/variables.h"

namespace {

AlgorithmElement Result(int first, int second, const TestSettings& entry) {
  const auto variables = VariableListBuilder().Nominal("answer", {"yes", "no"}).Build();
  Rows rows(static_cast<std::size_t>(first), {0.0});
  rows.insert(rows.end(), static_cast<std::size_t>(second), {1.0});
  return RunEntry(variables, rows, "OEstimateConfidenceInterval", entry.Get());
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
    TestSettings entry;
    entry.Put("variableName", "answer").Put(row.key, "true");
    // The first record's category comes first; without a success that is the second one.
    if (row.first == 0) {
      entry.Put("catVarClassFormation", "givenCategoryList");
      entry.Put("givenCategoryList", std::vector<std::string>{"yes"});
    }
    const AlgorithmElement result = Result(row.first, row.second, entry);
    EXPECT_EQ(result.Text("ConfidenceInterval/computeECIMethod"), row.method);
    EXPECT_THAT(result.Number("Estimate"), IsCloseTo(row.first / (row.first + 0.0 + row.second)));
    EXPECT_THAT(result.Number("Lower"), IsCloseTo(row.lower, row.tolerance));
    EXPECT_THAT(result.Number("Upper"), IsCloseTo(row.upper, row.tolerance));
  }
}

TEST(EstimateCITest, MethodsComeInOrderAndOnlyWhenAskedFor) {
  TestSettings entry;
  entry.Put("variableName", "answer");
  EXPECT_EQ(Result(3, 4, entry).ChildNames(),
            std::vector<std::string>{"StructuredTable Condition"});
  entry.Put("isDoProfileLikelihood", "true").Put("isDoClopperPearson", "true");
  entry.Put("isDoJeffreys", "false");
  const AlgorithmElement result = Result(3, 4, entry);
  EXPECT_EQ(result.ChildNames().size(), 3u);
  EXPECT_EQ(result.Text("computeECIMethod"), "ClopperPearson");
  EXPECT_EQ(result.Type(), "confidence_interval");
  EXPECT_EQ(result.Xml().find("decision="), std::string::npos) << "an estimate decides nothing";
}

TEST(EstimateCITest, FailuresHaveTheTestsOwnCodes) {
  const auto variables =
      VariableListBuilder().Nominal("answer", {"yes", "no"}).Continuous("x").Other("odd").Build();
  struct Row {
    std::int32_t code;
    std::vector<std::pair<const char*, const char*>> entry;
  };
  const Row rows[] = {
      {221513, {}},
      {221503, {{"variableName", "nobody"}}},
      {221504, {{"variableName", "odd"}}},
      {221511, {{"variableName", "answer"}, {"catVarClassFormation", "givenCategoryList"}}},
      {221512, {{"variableName", "x"}, {"contVarClassFormation", "givenCutPoint"}}},
      {221514, {{"variableName", "x"}}},
      {221515, {{"variableName", "answer"}, {"catVarClassFormation", "givenCutPoint"}}},
  };
  for (const Row& row : rows) {
    TestSettings entry;
    for (const auto& [key, value] : row.entry) entry.Put(key, value);
    const AlgorithmElement result =
        RunEntry(variables, {{0.0, 1.0, 1.0}}, "OEstimateConfidenceInterval", entry.Get());
    EXPECT_EQ(result.MessageCodes(), std::vector<std::int32_t>{row.code});
  }
}

}  // namespace
