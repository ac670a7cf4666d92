#include "tests/related/mcnemar.h"

#include <gtest/gtest.h>

#include <optional>
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

TestSettings Entry(const Texts& names) {
  TestSettings entry;
  entry.Put("variableName", names);
  return entry;
}

AlgorithmElement Result(const QDVarList& variables, const Rows& rows, const TestSettings& entry) {
  return RunEntry(variables, rows, "RMcNemar", entry.Get());
}

struct McNemarCase {
  const char* catches;
  int onlyFirst, onlySecond;
  double chiSquare, asymptotic;
  std::optional<double> exact;
};

// (|b - c| - 1)^2 / (b + c) with SciPy 1.17.1's chi2.sf(x, 1); min(1, 2 binom.cdf(min(b, c), n,
// 0.5)).
const McNemarCase kCases[] = {
    {"the first n without an exact value", 20, 6, 6.5, 0.010787449254670376, std::nullopt},
    {"the last n with one", 20, 5, 7.84, 0.005110260660855866, 0.004077315330505371},
    {"a difference of one is corrected away", 2, 1, 0.0, 1.0, 1.0},
    {"one side empty", 3, 0, 4.0 / 3.0, 0.24821307898992026, 0.25},
    {"both sides equal", 7, 7, 0.0, 1.0, 1.0},
    {"no discordant pair", 0, 0, 0.0, 1.0, 1.0},
};

TEST(McNemarTest, FiguresAgreeWithSciPy) {
  for (const McNemarCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result =
        Result(Pair(), Cells(4, row.onlyFirst, row.onlySecond, 9), Entry({"before", "after"}));
    EXPECT_THAT(result.Number("TestStatistic"), IsCloseTo(row.chiSquare));
    EXPECT_THAT(result.Number("AsymptoticSig2Tailed"), IsCloseTo(row.asymptotic, 1e-13));
    EXPECT_THAT(result.Number("ExactSig2Tailed"), IsCloseTo(row.exact, 1e-13));
    EXPECT_EQ(result.Messages(), row.exact ? (Messages{{221612, "helpMessage", {}}}) : Messages{});
    EXPECT_EQ(result.Decision(), row.asymptotic < 0.05 ? "reject" : "retain");
  }
}

TEST(McNemarTest, TheFirstRecordSaysWhatSuccessIs) {
  Rows rows = Cells(4, 3, 2, 9);
  const AlgorithmElement yes = Result(Pair(), rows, Entry({"before", "after"}));
  EXPECT_EQ(yes.Rows("Content"), (Texts{"4;3", "2;9"}));
  EXPECT_EQ(yes.Text("RowSuccessList"), "0");
  EXPECT_EQ(yes.Text("ColumnFailList"), "1");
  std::swap(rows.front(), rows.back());
  const AlgorithmElement no = Result(Pair(), rows, Entry({"before", "after"}));
  EXPECT_EQ(no.Rows("Content"), (Texts{"9;2", "3;4"}));
  EXPECT_EQ(no.Text("RowSuccessList"), "1");
}

TEST(McNemarTest, GivenValuesMakeTheSuccessesOfBothFields) {
  const auto variables = VariableListBuilder()
                             .NominalNumbers("a", {1, 2, 3})
                             .NominalNumbers("b", {3, 2, 1})
                             .Weight("n")
                             .Build();
  TestSettings entry = Entry({"a", "b"});
  entry.Put("classFormation", "givenCategoryList").Put("categoriesList", Texts{"1", "9", "2.0"});
  const AlgorithmElement result =
      Result(variables, {{0, 0, 5}, {1, 1, 7}, {2, 2, 11}, {2, 0, 13}}, entry);
  EXPECT_EQ(result.Text("Condition/ConditionKey"), "CategoryListsAreSpecified_R_McNemar_2");
  EXPECT_EQ(result.Rows("Content"), (Texts{"7;5", "11;13"}));
  EXPECT_EQ(result.Text("RowSuccessList"), "0;-1;1");
  EXPECT_EQ(result.Text("ColumnSuccessList"), "2;-1;1");
  EXPECT_EQ(result.Text("RowValsNotInTheCategoreis/0"), "9");
  EXPECT_EQ(result.Text("ColumnFailList"), "2") << "read from the first field's key";
}

TEST(McNemarTest, ConstantFieldsMayDiffer) {
  const auto variables =
      VariableListBuilder().Nominal("a", {"yes"}).Nominal("b", {"no"}).Weight("n").Build();
  const AlgorithmElement result = Result(variables, {{0, 0, 8}}, Entry({"a", "b"}));
  EXPECT_EQ(result.Rows("Content"), (Texts{"0;8", "0;0"}));
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
  const auto given = [](const Texts& names, const Texts& values) {
    TestSettings entry = Entry(names);
    entry.Put("classFormation", "givenCategoryList");
    if (!values.empty()) entry.Put("categoriesList", values);
    return entry;
  };
  std::vector<std::pair<TestSettings, AlgorithmElement::Message>> cases;
  const auto add = [&cases](TestSettings entry, std::int32_t code, Texts params = {}) {
    cases.emplace_back(std::move(entry), AlgorithmElement::Message{code, "error", params});
  };
  add(TestSettings(), 221603);
  add(Entry({"before"}), 221614);
  add(Entry({"before", "after", "letter"}), 221614);
  add(Entry({"before", "nobody"}), 221613, {"nobody"});
  add(Entry({"x", "after"}), 221613);
  add(Entry({"before", "grade"}), 221613);
  add(Entry({"before", "letter"}), 221609);
  add(Entry({"always", "always"}), 221609);
  add(given({"before", "after"}, {}), 221611);
  add(given({"before", "after"}, {"maybe"}), 221611);
  add(given({"before", "after"}, {"yes", "no"}), 221611);
  for (const auto& [entry, message] : cases) {
    const AlgorithmElement result = Result(variables, {{0, 1, 0, 0, 0, 1}}, entry);
    EXPECT_EQ(result.Messages(), Messages{message});
    EXPECT_EQ(result.Decision(), "unknown");
  }
  TestSettings settings;
  settings.Put("variablePairFirstIndex", 0).Put("variablePairSecondIndex", 1);
  NPARMcNemar test(settings.Release(), &variables);
  EXPECT_THAT(test.BeginPass(), HasCode(221606)) << "no summaries";
}

}  // namespace
