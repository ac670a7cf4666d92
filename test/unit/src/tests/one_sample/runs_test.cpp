#include "tests/one_sample/runs.h"

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

/// A sequence of `runs` runs of 1 and -1 with that many of each; it starts with 1.
Rows Sequence(int runs, int above, int below) {
  Rows rows;
  const auto append = [&rows](int count, double value) {
    rows.insert(rows.end(), static_cast<std::size_t>(count), {value});
  };
  int aboveRuns = (runs + 1) / 2;
  int belowRuns = runs / 2;
  for (int run = 0; run < runs; ++run) {
    int& left = run % 2 == 0 ? above : below;
    int& runsLeft = run % 2 == 0 ? aboveRuns : belowRuns;
    const int count = runsLeft == 1 ? left : 1;
    append(count, run % 2 == 0 ? 1.0 : -1.0);
    left -= count;
    --runsLeft;
  }
  return rows;
}

TestSettings CutAt(double value) {
  TestSettings entry;
  entry.Put("variableName", "x").Put("contVarClassFormation", "cutPointValue");
  return std::move(entry.Put("cutPointValue", value));
}

AlgorithmElement RunContinuous(const Rows& rows, const TestSettings& entry) {
  const auto variables = VariableListBuilder().Continuous("x").Build();
  return RunEntry(variables, rows, "ORuns", entry.Get());
}

struct RunsCase {
  const char* catches;
  int runs, above, below;
  double mean, sd, z, sig;
};

// The formulas of J. V. Bradley (1968) in Python with SciPy 1.17.1's norm.cdf; without correction
// they agree with statsmodels 0.15.0, runstest_1samp(x, correction=False).
const RunsCase kCases[] = {
    {"few runs, n 49 is corrected", 4, 24, 25, 25.489795918367346, 3.461876623201505,
     -6.063126507078181, 1.335005750142051e-09},
    {"n 50 is not", 30, 25, 25, 26.0, 3.499271061118826, 1.1430952132988164, 0.2529990614746843},
    {"just over half a run", 26, 24, 25, 25.489795918367346, 3.461876623201505,
     0.002947557854681047, 0.9976481925011327},
    {"a small sample", 5, 4, 3, 4.428571428571429, 1.178030178747903, 0.06063390625908303,
     0.9516507699020017},
    {"half a run counts as none", 3, 2, 2, 3.0, 0.81649658092772603, 0.0, 1.0},
};

TEST(RunsTest, FiguresAgreeWithTheFormulas) {
  for (const RunsCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result =
        RunContinuous(Sequence(row.runs, row.above, row.below), CutAt(0.0));
    EXPECT_EQ(result.Text("TestStatistic"), std::to_string(row.runs));
    EXPECT_THAT(result.Number("RunsParameters/Mean"), IsCloseTo(row.mean));
    EXPECT_THAT(result.Number("RunsParameters/StdDev"), IsCloseTo(row.sd));
    EXPECT_THAT(result.Number("StandardError"), IsCloseTo(row.sd));
    EXPECT_THAT(result.Number("StandardTestStatistic"), IsCloseTo(row.z, 1e-13));
    EXPECT_THAT(result.Number("AsymptoticSig2Tailed"), IsCloseTo(row.sig, 1e-13));
  }
}

TEST(RunsTest, AValueAtTheCutPointIsAbove) {
  const AlgorithmElement result = RunContinuous({{2.0}, {3.0}, {1.0}, {2.0}}, CutAt(2.0));
  EXPECT_EQ(result.Text("TestStatistic"), "3");
  EXPECT_EQ(result.Text("Condition/ConditionKey"), "ACutPointIsSpecified_O_Runs_2");
  EXPECT_EQ(result.Text("Condition/%1"), "2");
}

TEST(RunsTest, MedianAndMeanComeFromTheSample) {
  const Rows rows{{1.0}, {9.0}, {2.0}, {3.0}, {QDMV::gMissingValue}};
  TestSettings median;
  median.Put("variableName", "x").Put("contVarClassFormation", "cutPointMedian");
  EXPECT_EQ(RunContinuous(rows, median).Text("Condition/%1"), "2.5");
  TestSettings mean;
  mean.Put("variableName", "x").Put("contVarClassFormation", "cutPointMean");
  const AlgorithmElement result = RunContinuous(rows, mean);
  EXPECT_EQ(result.Text("Condition/%1"), "3.75");
  EXPECT_EQ(result.Text("TestStatistic"), "3") << "the missing value is no step";
}

TEST(RunsTest, AWeightCountsInItsGroupAndIsOneStep) {
  const auto variables = VariableListBuilder().Continuous("x").Weight("n").Build();
  const AlgorithmElement result =
      RunEntry(variables, {{1, 5.9}, {-1, 2}, {-2, 1}, {3, 4}}, "ORuns", CutAt(0.0).Get());
  EXPECT_EQ(result.Text("TotalN"), "12");
  EXPECT_EQ(result.Text("TestStatistic"), "3");
}

TEST(RunsTest, CategoriesAreSplitByTheDataOrByAList) {
  const auto two = VariableListBuilder().Nominal("answer", {"yes", "no"}).Build();
  TestSettings fromData;
  fromData.Put("variableName", "answer").Put("catVarClassFormation", "getFromData");
  const AlgorithmElement data = RunEntry(two, {{1}, {0}, {0}, {1}}, "ORuns", fromData.Get());
  EXPECT_EQ(data.Text("TestStatistic"), "3");
  EXPECT_EQ(data.Text("Condition/%1"), "1") << "the first record's category comes first";
  EXPECT_EQ(data.Text("Condition/%2"), "0");

  const auto three = VariableListBuilder().Nominal("letter", {"a", "b", "c"}).Build();
  TestSettings list;
  list.Put("variableName", "letter").Put("catVarClassFormation", "givenCategoryList");
  list.Put("givenCategoryList", Texts{"c", "z", "a"});
  const AlgorithmElement result = RunEntry(three, {{0}, {2}, {1}, {1}, {0}}, "ORuns", list.Get());
  EXPECT_EQ(result.Text("TestStatistic"), "3");
  EXPECT_EQ(result.Text("Condition/ConditionKey"), "CategoryListsAreSpecified_O_Runs_3");
  EXPECT_EQ(result.Text("Condition/%1"), "2;0;-1");
  EXPECT_EQ(result.Text("Condition/%2"), "1");
  EXPECT_EQ(result.Text("ValsNotInTheCategoreis/0"), "z");
}

TEST(RunsTest, EachFailureHasItsCode) {
  const auto variables = VariableListBuilder()
                             .Continuous("x")
                             .Nominal("answer", {"yes", "no"})
                             .Nominal("letter", {"a", "b", "c"})
                             .Other("odd")
                             .Build();
  struct Row {
    AlgorithmElement::Message message;
    TestSettings entry;
  };
  std::vector<Row> rows;
  const auto add = [&rows](std::int32_t code, Texts params, const char* name, const char* key,
                           const char* word, Texts list = {}) {
    TestSettings entry;
    if (name != nullptr) entry.Put("variableName", name);
    if (key != nullptr) entry.Put(key, word);
    if (!list.empty()) entry.Put("givenCategoryList", list);
    rows.push_back({{code, "error", std::move(params)}, std::move(entry)});
  };
  const char* cut = "contVarClassFormation";
  const char* categories = "catVarClassFormation";
  add(220101, {}, nullptr, nullptr, nullptr);
  add(220103, {"nobody"}, "nobody", nullptr, nullptr);
  add(220101, {"x"}, "x", nullptr, nullptr);
  add(220101, {"x"}, "x", cut, "cutPointMode");
  add(220101, {"odd"}, "odd", cut, "cutPointMean");
  add(220110, {"x"}, "x", cut, "cutPointValue");
  add(220101, {"answer"}, "answer", categories, "byChance");
  add(220111, {"letter"}, "letter", categories, "getFromData");
  add(220109, {"answer"}, "answer", categories, "givenCategoryList");
  add(220109, {"answer"}, "answer", categories, "givenCategoryList", {"maybe"});
  add(220109, {"answer"}, "answer", categories, "givenCategoryList", {"no", "yes"});
  for (const Row& row : rows) {
    const AlgorithmElement result = RunEntry(variables, {{1, 0, 0, 1}}, "ORuns", row.entry.Get());
    EXPECT_EQ(result.Messages(), std::vector<AlgorithmElement::Message>{row.message});
    EXPECT_EQ(result.Decision(), "unknown");
  }
  for (const double one : {1.0, -1.0}) {
    EXPECT_EQ(RunContinuous({{one}, {one}}, CutAt(0.0)).MessageCodes(),
              std::vector<std::int32_t>{220112});
  }
}

}  // namespace
