#include "tests/one_sample/binomial.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "support/algorithm_element.h"
#include "support/matchers.h"
#include "support/run_all_passes.h"
#include "support/test_settings.h"
#include "support/variables.h"

namespace {

using Texts = std::vector<std::string>;

/// Records of a categorical variable: `first` of code 0, then `second` of code 1.
Rows Codes(int first, int second) {
  Rows rows(static_cast<std::size_t>(first), {0.0});
  rows.insert(rows.end(), static_cast<std::size_t>(second), {1.0});
  return rows;
}

QDVarList YesNo() { return VariableListBuilder().Nominal("answer", {"yes", "no"}).Build(); }

AlgorithmElement Result(const QDVarList& variables, const Rows& rows, const TestSettings& entry) {
  return RunEntry(variables, rows, "OBinomial", entry.Get());
}

struct BinomialCase {
  const char* catches;
  int first, second;
  double p;
  double z, asymptotic;
  std::optional<double> exact;
};

// SciPy 1.17.1: z = (x - n p -+ 0.5) / sqrt(n p (1 - p)); norm.sf(abs(z)), doubled for p = 0.5;
// min(binom.cdf(x, n, p), binom.sf(x - 1, n, p)), doubled for p = 0.5 and cut to 1.
const BinomialCase kCases[] = {
    {"the last n with an exact value", 18, 7, 0.5, 2.0, 0.04550026389635839, 0.043285250663757324},
    {"the first n without", 18, 8, 0.5, 1.7650452162436565, 0.07755616674366546, std::nullopt},
    {"one-sided, lower tail", 3, 22, 0.2, -0.75, 0.2266273523768682, 0.2339932592261913},
    {"upper tail of an even test", 9, 3, 0.5, 1.4433756729740645, 0.14891467317876572,
     0.14599609375},
    {"doubled tails above 1", 6, 6, 0.5, 0.0, 1.0, 1.0},
    {"a small p", 2, 18, 0.3, -1.7078251276599332, 0.04383439756496462, 0.03548313229846864},
};

TEST(BinomialTest, FiguresAgreeWithSciPy) {
  for (const BinomialCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result =
        Result(YesNo(), Codes(row.first, row.second),
               TestSettings().Put("variableName", "answer").Put("testProbability", row.p));
    const bool twoTailed = row.p == 0.5;
    EXPECT_THAT(result.Number("StandardTestStatistic"), IsCloseTo(row.z));
    EXPECT_THAT(result.Number(twoTailed ? "AsymptoticSig2Tailed" : "AsymptoticSig1Tailed"),
                IsCloseTo(row.asymptotic, 1e-13));
    EXPECT_THAT(result.Number(twoTailed ? "ExactSig2Tailed" : "ExactSig1Tailed"),
                IsCloseTo(row.exact, 1e-13));
    EXPECT_EQ(result.Text("TestStatistic"), std::to_string(row.first));
  }
}

TEST(BinomialTest, TheAsymptoticValueDecides) {
  // Asymptotic 0.0455, exact 0.0433: at 0.0455 only the exact one would reject.
  const AlgorithmElement result =
      Result(YesNo(), Codes(18, 7), TestSettings().Put("variableName", "answer"));
  EXPECT_EQ(result.Decision(), "reject");
  const AlgorithmElement even =
      Result(YesNo(), Codes(6, 6), TestSettings().Put("variableName", "answer"));
  EXPECT_EQ(even.Decision(), "retain");
}

TEST(BinomialTest, TheFirstRecordsCategoryIsTheFirstClass) {
  Rows rows = Codes(3, 0);
  rows.insert(rows.begin(), 5, {1.0});
  const AlgorithmElement result =
      Result(YesNo(), rows, TestSettings().Put("variableName", "answer"));
  EXPECT_EQ(result.Text("TestStatistic"), "5");
  EXPECT_EQ(result.Text("Condition/ConditionKey"), "ABinaryTestVariableIsSpecified_O_Binomial_5");
  EXPECT_EQ(result.Text("Condition/%1"), "1");
  EXPECT_EQ(result.Text("Condition/%2"), "0");
  EXPECT_EQ(result.Rows("Content"), (Texts{"62.5;37.5", "50;50"}));
}

TEST(BinomialTest, ASingleCategoryLeavesTheSecondClassEmpty) {
  const auto variables = VariableListBuilder().Nominal("answer", {"yes"}).Build();
  const AlgorithmElement result =
      Result(variables, Codes(4, 0), TestSettings().Put("variableName", "answer"));
  EXPECT_EQ(result.Text("Condition/%2"), "__MISSING__");
  EXPECT_EQ(result.Rows("Content").front(), "100;0");
}

TEST(BinomialTest, GivenCategoriesMakeTheFirstClassAndUnknownOnesAreTold) {
  const auto variables =
      VariableListBuilder().NominalNumbers("grade", {1.0, 2.0, 3.0}).Weight("n").Build();
  const Rows rows{{0.0, 2.0}, {1.0, 1.9}, {2.0, 4.0}, {-1.0, 50.0}};
  const AlgorithmElement result = Result(variables, rows,
                                         TestSettings()
                                             .Put("variableName", "grade")
                                             .Put("catVarClassFormation", "givenCategoryList")
                                             .Put("givenCategoryList", Texts{"3.0", "9", "1"}));
  EXPECT_EQ(result.Text("Condition/ConditionKey"), "CategoryListsAreSpecified_O_Binomial_5");
  EXPECT_EQ(result.Text("Condition/%1"), "2;-1;0");
  EXPECT_EQ(result.Text("Condition/%2"), "1");
  EXPECT_EQ(result.Text("ValsNotInTheCategoreis/0"), "9");
  EXPECT_EQ(result.Text("TotalN"), "7") << "1.9 counts as 1, the missing value not at all";
  EXPECT_EQ(result.Text("TestStatistic"), "6");
}

TEST(BinomialTest, AValueAtTheCutPointIsInTheFirstClass) {
  const auto variables = VariableListBuilder().Continuous("x").Build();
  const Rows rows{{1.0}, {2.0}, {2.0}, {3.0}, {5.0}};
  const TestSettings given = [] {
    TestSettings entry;
    entry.Put("variableName", "x").Put("contVarClassFormation", "givenCutPoint");
    entry.Put("givenCutPoint", 2.0);
    return entry;
  }();
  const AlgorithmElement result = Result(variables, rows, given);
  EXPECT_EQ(result.Text("Condition/ConditionKey"), "ACutPointIsSpecified_O_Binomial_4");
  EXPECT_EQ(result.Text("TestStatistic"), "3");

  TestSettings middle;
  middle.Put("variableName", "x").Put("contVarClassFormation", "sampleMidPoint");
  const AlgorithmElement midpoint = Result(variables, rows, middle);
  EXPECT_EQ(midpoint.Text("Condition/%1"), "3") << "the middle of 1 and 5";
  EXPECT_EQ(midpoint.Text("TestStatistic"), "4");
}

TEST(BinomialTest, AShareBelowAnUnevenProbabilityIsTold) {
  using Messages = std::vector<AlgorithmElement::Message>;
  const auto run = [](double p) {
    return Result(YesNo(), Codes(2, 8),
                  TestSettings().Put("variableName", "answer").Put("testProbability", p));
  };
  EXPECT_EQ(run(0.3).Messages(), (Messages{{221311, "helpMessage", {"0.3"}}}));
  EXPECT_EQ(run(0.2).Messages(), Messages{}) << "the share is p";
  EXPECT_EQ(run(0.5).Messages(), Messages{}) << "two-sided";
}

struct FailureCase {
  const char* catches;
  std::int32_t code;
  Texts params;
  TestSettings entry;
  Rows rows = {{0.0, 1.0, 0.0, 2.0, -1.0}};
};

TEST(BinomialTest, EachFailureHasItsCodeAndLeavesTheDecisionOpen) {
  const auto variables = VariableListBuilder()
                             .Nominal("answer", {"yes", "no"})
                             .Continuous("x")
                             .Nominal("three", {"a", "b", "c"})
                             .Other("odd")
                             .Nominal("none", {})
                             .Build();
  const auto entry = [](const char* name) {
    TestSettings settings;
    settings.Put("variableName", name);
    return settings;
  };
  std::vector<FailureCase> cases;
  const auto add = [&](const char* catches, std::int32_t code, TestSettings settings,
                       Texts params = {}) {
    cases.push_back({catches, code, std::move(params), std::move(settings)});
  };
  add("no name", 221314, TestSettings());
  add("an unknown name", 221303, entry("nobody"), {"nobody"});
  add("a kind that fits no test", 221304, entry("odd"));
  TestSettings noList = entry("answer");
  noList.Put("catVarClassFormation", "givenCategoryList");
  add("no list", 221312, std::move(noList));
  TestSettings noCut = entry("x");
  noCut.Put("contVarClassFormation", "givenCutPoint");
  add("no cut point", 221313, std::move(noCut));
  add("a continuous field without cut point", 221315, entry("x"));
  TestSettings cutOfCategories = entry("answer");
  cutOfCategories.Put("catVarClassFormation", "sampleMidPoint");
  add("categories with a cut point", 221316, std::move(cutOfCategories));
  for (const double p : {0.0, 1.0}) {
    TestSettings edge = entry("answer");
    edge.Put("testProbability", p);
    add("p at the edge", 221317, std::move(edge));
  }
  add("three categories", 221309, entry("three"));
  add("no category", 221310, entry("none"));
  for (const FailureCase& row : cases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result = Result(variables, row.rows, row.entry);
    EXPECT_EQ(result.Decision(), "unknown");
    EXPECT_EQ(result.Messages(),
              (std::vector<AlgorithmElement::Message>{{row.code, "error", row.params}}));
    EXPECT_FALSE(result.Has("StatisticsResult"));
  }
}

TEST(BinomialTest, NoRecordInTheClassesFails) {
  const auto variables =
      VariableListBuilder().Nominal("answer", {"yes", "no"}).Continuous("x").Build();
  const Rows rows{{-1.0, QDMV::gMissingValue}};
  EXPECT_EQ(Result(variables, rows, TestSettings().Put("variableName", "answer")).MessageCodes(),
            std::vector<std::int32_t>{221310});
  TestSettings cut;
  cut.Put("variableName", "x").Put("contVarClassFormation", "givenCutPoint");
  cut.Put("givenCutPoint", 1.0);
  EXPECT_EQ(Result(variables, rows, cut).MessageCodes(), std::vector<std::int32_t>{220003});
}

TEST(BinomialTest, WithoutSummariesThereAreNoFrequencies) {
  TestSettings settings;
  settings.Put("variableIndex", 0).Put("measureLevel", 2);
  NPARBinomial test(settings.Release());
  EXPECT_THAT(test.BeginPass(), HasCode(221306));
}

}  // namespace
