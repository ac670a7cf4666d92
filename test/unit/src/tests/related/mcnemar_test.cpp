#include "support/entry_run.h"

namespace {

QDVarList Pair() {
  return VariableListBuilder()
      .Nominal("before", {"yes", "no"})
      .Nominal("after", {"yes", "no"})
      .Weight("n")
      .Build();
}

/// The first record is a success of both, so that "yes" is the success.
Rows Cells(double both, double onlyFirst, double onlySecond, double neither) {
  return {{0, 0, both}, {0, 1, onlyFirst}, {1, 0, onlySecond}, {1, 1, neither}};
}

TestSettings On(const Texts& names) { return Entry("variableName", names); }

const TestSettings kPair = On({"before", "after"});

AlgorithmElement Result(const QDVarList& variables, const Rows& rows,
                        const TestSettings& entry = kPair) {
  return RunEntry(variables, rows, "RMcNemar", entry);
}

// (|b - c| - 1)^2 / (b + c) with SciPy 1.17.1's chi2.sf(x, 1); min(1, 2 binom.cdf(min(b, c), n,
// 0.5)).
TEST(McNemarTest, FiguresAgreeWithSciPy) {
  const AlgorithmElement result = Result(Pair(), Cells(4, 20, 5, 9));
  ExpectFigures(result, {{"TestStatistic", 7.84},
                         {"AsymptoticSig2Tailed", 0.005110260660855866, 1e-13},
                         {"ExactSig2Tailed", 0.004077315330505371, 1e-13}});
  EXPECT_EQ(result.Messages(), (Messages{{221612, "helpMessage", {}}}));
  EXPECT_EQ(result.Decision(), "reject");
  // The exact value, 2 * 3214 / 2^17, is below 0.05; the asymptotic one, 0.0523, decides.
  EXPECT_EQ(Result(Pair(), Cells(4, 13, 4, 9)).Decision(), "retain");
  const AlgorithmElement next = Result(Pair(), Cells(4, 20, 6, 9));
  EXPECT_FALSE(next.Has("ExactSig2Tailed"));
  EXPECT_EQ(next.Messages(), Messages{});
}

TEST(McNemarTest, TheFirstRecordSaysWhatSuccessIs) {
  Rows rows = Cells(4, 3, 2, 9);
  const AlgorithmElement yes = Result(Pair(), rows);
  EXPECT_EQ(yes.Rows("Content"), (Texts{"4;3", "2;9"}));
  EXPECT_EQ(yes.Text("RowSuccessList"), "0");
  EXPECT_EQ(yes.Text("ColumnFailList"), "1");
  std::swap(rows.front(), rows.back());
  const AlgorithmElement no = Result(Pair(), rows);
  EXPECT_EQ(no.Rows("Content"), (Texts{"9;2", "3;4"}));
  EXPECT_EQ(no.Text("RowSuccessList"), "1");
}

TEST(McNemarTest, GivenValuesMakeTheSuccessesOfBothFields) {
  const auto variables = VariableListBuilder()
                             .NominalNumbers("a", {1, 2, 3})
                             .NominalNumbers("b", {3, 2, 1})
                             .Weight("n")
                             .Build();
  const AlgorithmElement result = Result(
      variables, {{0, 0, 5}, {1, 1, 7}, {2, 2, 11}, {2, 0, 13}},
      On({"a", "b"})
          .Put("classFormation", "givenCategoryList", "categoriesList", Texts{"1", "9", "2.0"}));
  EXPECT_EQ(result.Rows("Content"), (Texts{"7;5", "11;13"}));
  ExpectTexts(result, {{"ConditionKey", "CategoryListsAreSpecified_R_McNemar_2"},
                       {"RowSuccessList", "0;-1;1"},
                       {"ColumnSuccessList", "2;-1;1"},
                       {"RowValsNotInTheCategoreis/0", "9"},
                       {"ColumnFailList", "2"}});  // read from the first field's key
}

TEST(McNemarTest, ConstantFieldsMayDiffer) {
  const auto variables =
      VariableListBuilder().Nominal("a", {"yes"}).Nominal("b", {"no"}).Weight("n").Build();
  const AlgorithmElement result = Result(variables, {{0, 0, 8}}, On({"a", "b"}));
  EXPECT_EQ(result.Rows("Content"), (Texts{"0;8", "0;0"}));
  // Neither field has a second category.
  ExpectTexts(result, {{"RowSuccessList", "0"}, {"RowFailList", ""}, {"ColumnFailList", "0"}});
}

TEST(McNemarTest, EachFailureHasItsCode) {
  const auto variables = VariableListBuilder()
                             .Nominal("before", {"yes", "no"})
                             .Nominal("after", {"yes", "no"})
                             .NominalNumbers("grade", {0, 1})
                             .Nominal("letter", {"a", "b", "c"})
                             .Nominal("always", {"yes"})
                             .Continuous("x")
                             .Build();
  const TestSettings given = TestSettings(kPair).Put("classFormation", "givenCategoryList");
  const auto values = [&given](const Texts& texts) {
    return TestSettings(given).Put("categoriesList", texts);
  };
  ExpectMessages("RMcNemar", variables, {{0, 1, 0, 0, 0, 1}},
                 {{"no list", Entry(), Error(221603)},
                  {"one field", On({"before"}), Error(221614)},
                  {"three fields", On({"before", "after", "letter"}), Error(221614)},
                  {"unknown name", On({"before", "nobody"}), Error(221613, {"nobody"})},
                  {"a continuous field", On({"x", "after"}), Error(221613)},
                  {"kinds that differ", On({"before", "grade"}), Error(221613)},
                  {"three categories", On({"before", "letter"}), Error(221609)},
                  {"one category", On({"always", "always"}), Error(221609)},
                  {"no given value", given, Error(221611)},
                  {"an unknown one", values({"maybe"}), Error(221611)},
                  {"all values", values({"yes", "no"}), Error(221611)}});
}

}  // namespace
