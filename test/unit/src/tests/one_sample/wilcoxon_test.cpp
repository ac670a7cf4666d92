#include "tests/one_sample/wilcoxon.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/algorithm_element.h"
#include "support/matchers.h"
#include "support/run_all_passes.h"
#include "support/test_settings.h"
#include "support/variables.h"

namespace {

// Extra hours of sleep under the first drug: Student, Biometrika 6 (1908).
const Rows kSleep{{0.7}, {-1.6}, {-0.2}, {-1.2}, {-0.1}, {3.4}, {3.7}, {0.8}, {0.0}, {2.0}};

TestSettings Against(double value) {
  TestSettings entry;
  entry.Put("variableName", "x").Put("userSpecifyTestValue", "true").Put("testValue", value);
  return entry;
}

AlgorithmElement Result(const Rows& rows, const TestSettings& entry) {
  const auto variables = VariableListBuilder().Continuous("x").Build();
  return RunEntry(variables, rows, "OWilcoxonSignedRanks", entry.Get());
}

struct WilcoxonCase {
  const char* catches;
  double value;
  double n, rankSum, z, sig;
};

// SciPy 1.17.1: wilcoxon(x - value, correction=False, mode="approx", zero_method="wilcox").
const WilcoxonCase kCases[] = {
    {"no tie, no zero difference", 0.5, 10, 28.0, 0.050964719143762556, 0.9593536340401635},
    {"differences tied within rounding", 1.0, 10, 21.5, -0.6119741446385719, 0.5405548641319784},
    {"a zero difference leaves n", 0.0, 9, 31.0, 1.0069930921904569, 0.3139380937749148},
};

TEST(WilcoxonTest, FiguresAgreeWithSciPy) {
  for (const WilcoxonCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result = Result(kSleep, Against(row.value));
    EXPECT_EQ(result.Number("TotalN"), row.n);
    EXPECT_EQ(result.Number("TestStatistic"), row.rankSum);
    EXPECT_THAT(result.Number("StandardTestStatistic"), IsCloseTo(row.z, 1e-13));
    EXPECT_THAT(result.Number("AsymptoticSig2Tailed"), IsCloseTo(row.sig, 1e-13));
    EXPECT_EQ(result.Decision(), "retain");
  }
}

TEST(WilcoxonTest, TheMedianStandsInForAMissingTestValue) {
  TestSettings entry;
  entry.Put("variableName", "x");
  const AlgorithmElement result = Result(kSleep, entry);
  EXPECT_THAT(result.Number("HypotheticalMedian"), IsCloseTo(0.35));
  EXPECT_THAT(result.Number("ObservedMedian"), IsCloseTo(0.35));
  EXPECT_THAT(result.Number("Condition/%1"), IsCloseTo(0.35));
}

TEST(WilcoxonTest, AWeightIsThatManyRecords) {
  const auto weighted = VariableListBuilder().Continuous("x").Weight("n").Build();
  const Rows rows{{3, 2}, {-1, 3}, {2, 1}, {0, 4}};
  const Rows repeated{{3}, {3}, {-1}, {-1}, {-1}, {2}, {0}, {0}, {0}, {0}};
  const AlgorithmElement once =
      RunEntry(weighted, rows, "OWilcoxonSignedRanks", Against(0.0).Get());
  const AlgorithmElement often = Result(repeated, Against(0.0));
  for (const char* name : {"TotalN", "TestStatistic", "StandardError", "AsymptoticSig2Tailed"}) {
    EXPECT_EQ(once.Text(name), often.Text(name)) << name;
  }
  EXPECT_EQ(once.Rows("Interval"), often.Rows("Interval"));
}

TEST(WilcoxonTest, TheHistogramStartsWithTheZeroDifferences) {
  const AlgorithmElement result = Result({{1}, {2}, {2}, {4}}, Against(2.0));
  EXPECT_EQ(result.Rows("Interval"), (std::vector<std::string>{"2;1;2;1", "0;1;2;4"}));
}

TEST(WilcoxonTest, WithoutADifferenceTheFiguresAreNotNumbers) {
  const AlgorithmElement result = Result({{2}, {2}}, Against(2.0));
  EXPECT_EQ(result.Text("TotalN"), "0");
  EXPECT_EQ(result.Text("StandardError"), "0");
  EXPECT_EQ(result.Text("StandardTestStatistic"), "nan");
  EXPECT_EQ(result.Decision(), "retain") << "no number is below the level";
}

TEST(WilcoxonTest, EachFailureHasItsCodeAndNoIndices) {
  const auto variables =
      VariableListBuilder().Continuous("x").Nominal("letter", {"a", "b"}).Build();
  const TestSettings nothing;
  TestSettings noValue;
  noValue.Put("variableName", "x").Put("userSpecifyTestValue", "true");
  TestSettings unknown;
  unknown.Put("variableName", "nobody");
  TestSettings unfit;
  unfit.Put("variableName", "letter");
  const std::vector<std::pair<const TestSettings&, AlgorithmElement::Message>> cases{
      {nothing, {220812, "error", {}}},
      {unknown, {220803, "error", {"nobody"}}},
      {unfit, {220815, "error", {"1"}}},
      {noValue, {220801, "error", {}}},
  };
  for (const auto& [entry, message] : cases) {
    const AlgorithmElement result =
        RunEntry(variables, {{1, 0}}, "OWilcoxonSignedRanks", entry.Get());
    EXPECT_EQ(result.Messages(), std::vector<AlgorithmElement::Message>{message});
    EXPECT_EQ(result.Text("Condition/%0"), "__MISSING__");
    EXPECT_EQ(result.Text("Condition/%1"), "__MISSING__");
  }
  EXPECT_EQ(Result({{QDMV::gMissingValue}}, Against(0.0)).MessageCodes(),
            std::vector<std::int32_t>{220003});
}

}  // namespace
