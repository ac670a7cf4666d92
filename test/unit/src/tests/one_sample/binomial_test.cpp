#include "support/entry_run.h"

namespace {

/// Records of a categorical variable: `first` of code 0, then `second` of code 1.
Rows Codes(int first, int second) {
  Rows rows(static_cast<std::size_t>(first), {0.0});
  rows.insert(rows.end(), static_cast<std::size_t>(second), {1.0});
  return rows;
}

QDVarList YesNo() { return VariableListBuilder().Nominal("answer", {"yes", "no"}).Build(); }

AlgorithmElement Result(const QDVarList& variables, const Rows& rows, const TestSettings& entry) {
  return RunEntry(variables, rows, "OBinomial", entry);
}

TestSettings Answer(double p = 0.5) {
  return Entry("variableName", "answer", "testProbability", p);
}

// SciPy 1.17.1: z = (x - n p -+ 0.5) / sqrt(n p (1 - p)); norm.sf(abs(z)), doubled for p = 0.5;
// min(binom.cdf(x, n, p), binom.sf(x - 1, n, p)), doubled for p = 0.5 and cut to 1.
TEST(BinomialTest, FiguresAgreeWithSciPy) {
  ExpectFigures(Result(YesNo(), Codes(18, 7), Answer()),
                {{"TestStatistic", 18},
                 {"StandardTestStatistic", 2.0},
                 {"AsymptoticSig2Tailed", 0.04550026389635839, 1e-13},
                 {"ExactSig2Tailed", 0.043285250663757324, 1e-13}});
  // The exact value, 2 * 3214 / 2^17, is below 0.05; the asymptotic one, 0.0523, decides.
  EXPECT_EQ(Result(YesNo(), Codes(13, 4), Answer()).Decision(), "retain");
  EXPECT_FALSE(Result(YesNo(), Codes(18, 8), Answer()).Has("ExactSig2Tailed"));
  ExpectFigures(Result(YesNo(), Codes(3, 22), Answer(0.2)),
                {{"AsymptoticSig1Tailed", 0.2266273523768682, 1e-13},
                 {"ExactSig1Tailed", 0.2339932592261913, 1e-13}});
  ExpectFigures(Result(YesNo(), Codes(9, 3), Answer(0.5 + 0x1p-52)),
                {{"ExactSig1Tailed", 0.072998046875, 1e-13}});  // not doubled beside 1/2
}

TEST(BinomialTest, TheFirstRecordsCategoryIsTheFirstClass) {
  Rows rows = Codes(3, 0);
  rows.insert(rows.begin(), 5, {1.0});
  const AlgorithmElement result = Result(YesNo(), rows, Entry("variableName", "answer"));
  ExpectTexts(result, {{"TestStatistic", "5"},
                       {"ConditionKey", "ABinaryTestVariableIsSpecified_O_Binomial_5"},
                       {"Condition/%1", "1"},
                       {"Condition/%2", "0"}});
  EXPECT_EQ(result.Rows("Content"), (Texts{"62.5;37.5", "50;50"}));
}

TEST(BinomialTest, TheFirstRecordsCodeLosesItsFraction) {
  for (const double code : {0.5, -0.5, std::numeric_limits<double>::quiet_NaN()}) {
    Rows rows = Codes(3, 1);
    rows.front().front() = code;
    ExpectTexts(Result(YesNo(), rows, Entry("variableName", "answer")),
                {{"TestStatistic", "3"}, {"Condition/%1", "0"}});
  }
}

TEST(BinomialTest, ASingleCategoryLeavesTheSecondClassEmpty) {
  const auto variables = VariableListBuilder().Nominal("answer", {"yes"}).Build();
  const AlgorithmElement result = Result(variables, Codes(4, 0), Answer());
  EXPECT_EQ(result.Text("Condition/%1"), "0");
  EXPECT_EQ(result.Text("Condition/%2"), "__MISSING__");
  EXPECT_EQ(result.Rows("Content").front(), "100;0");
}

TEST(BinomialTest, GivenCategoriesMakeTheFirstClassAndUnknownOnesAreTold) {
  const auto variables =
      VariableListBuilder().NominalNumbers("grade", {1.0, 2.0, 3.0}).Weight("n").Build();
  const AlgorithmElement result =
      Result(variables, {{0.0, 2.0}, {1.0, 1.9}, {2.0, 4.0}, {-1.0, 50.0}},
             Entry("variableName", "grade", "catVarClassFormation", "givenCategoryList",
                   "givenCategoryList", Texts{"3.0", "9", "1"}));
  ExpectTexts(result, {{"ConditionKey", "CategoryListsAreSpecified_O_Binomial_5"},
                       {"Condition/%1", "2;-1;0"},
                       {"Condition/%2", "1"},
                       {"ValsNotInTheCategoreis/0", "9"},
                       {"TotalN", "7"},  // 1.9 counts as 1, the missing value not at all
                       {"TestStatistic", "6"}});
}

TEST(BinomialTest, AValueAtTheCutPointIsInTheFirstClass) {
  const auto variables = VariableListBuilder().Continuous("x").Build();
  const Rows rows{{1.0}, {2.0}, {2.0}, {3.0}, {5.0}};
  ExpectTexts(Result(variables, rows,
                     Entry("variableName", "x", "contVarClassFormation", "givenCutPoint",
                           "givenCutPoint", 2.0)),
              {{"ConditionKey", "ACutPointIsSpecified_O_Binomial_4"}, {"TestStatistic", "3"}});
  // The middle of 1 and 5.
  ExpectTexts(Result(variables, rows,
                     Entry("variableName", "x", "contVarClassFormation", "sampleMidPoint")),
              {{"Condition/%1", "3"}, {"TestStatistic", "4"}});
  ExpectTexts(Result(variables, {{QDMV::gMissingValue}},
                     Entry("variableName", "x", "contVarClassFormation", "sampleMidPoint")),
              {{"Condition/%1", "__MISSING__"}});
}

TEST(BinomialTest, AShareBelowAnUnevenProbabilityIsTold) {
  ExpectMessages("OBinomial", YesNo(), Codes(2, 8),
                 {{"below", Answer(0.3), {{221311, "helpMessage", {"0.3"}}}},
                  {"the share is p", Answer(0.2), {}},
                  {"two-sided", Answer(0.5), {}}});
}

TEST(BinomialTest, EachFailureHasItsCode) {
  const auto variables = VariableListBuilder()
                             .Nominal("answer", {"yes", "no"})
                             .Continuous("x")
                             .Nominal("three", {"a", "b", "c"})
                             .Other("odd")
                             .Nominal("none", {})
                             .Build();
  const auto formed = [](const char* name, const char* key, const char* word) {
    return Entry("variableName", name, key, word);
  };
  const char* const cut = "contVarClassFormation";
  const char* const categories = "catVarClassFormation";
  ExpectMessages(
      "OBinomial", variables, {{0.0, 1.0, 0.0, 2.0, -1.0}},
      {{"no name", Entry(), Error(221314)},
       {"an unknown name", Entry("variableName", "nobody"), Error(221303, {"nobody"})},
       {"a kind that fits no test", Entry("variableName", "odd"), Error(221304)},
       {"no list", formed("answer", categories, "givenCategoryList"), Error(221312)},
       {"no cut point", formed("x", cut, "givenCutPoint"), Error(221313)},
       {"a continuous field without cut point", Entry("variableName", "x"), Error(221315)},
       {"categories with a cut point", formed("answer", categories, "sampleMidPoint"),
        Error(221316)},
       {"p at the lower edge", Answer(0.0), Error(221317)},
       {"p at the upper edge", Answer(1.0), Error(221317)},
       {"three categories", Entry("variableName", "three"), Error(221309)},
       {"no category", Entry("variableName", "none"), Error(221310)}});
  ExpectMessages("OBinomial", variables, {{-1.0, QDMV::gMissingValue, 0, 0, 0}},
                 {{"no record of a category", Answer(), Error(221310)},
                  {"no value to be cut", formed("x", cut, "givenCutPoint").Put("givenCutPoint", 1),
                   Error(220003)}});
}

}  // namespace
