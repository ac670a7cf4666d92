#include "support/entry_run.h"

namespace {

// Extra hours of sleep under the first drug: Student, Biometrika 6 (1908).
const Rows kSleep{{0.7}, {-1.6}, {-0.2}, {-1.2}, {-0.1}, {3.4}, {3.7}, {0.8}, {0.0}, {2.0}};

TestSettings Against(double value) {
  return Entry("variableName", "x", "userSpecifyTestValue", "true", "testValue", value);
}

/// A second column is the weight.
AlgorithmElement Result(const Rows& rows, const TestSettings& entry) {
  VariableListBuilder variables;
  variables.Continuous("x");
  if (rows.front().size() > 1) variables.Weight("n");
  return RunEntry(variables.Build(), rows, "OWilcoxonSignedRanks", entry);
}

// SciPy 1.17.1: wilcoxon(x - value, correction=False, mode="approx", zero_method="wilcox").
TEST(WilcoxonTest, FiguresAgreeWithSciPy) {
  const AlgorithmElement result = Result(kSleep, Against(0.0));
  ExpectFigures(result, {{"TotalN", 9},  // a zero difference leaves n
                         {"TestStatistic", 31},
                         {"StandardTestStatistic", 1.0069930921904569, 1e-13},
                         {"AsymptoticSig2Tailed", 0.3139380937749148, 1e-13}});
  EXPECT_EQ(result.Decision(), "retain");
  // Differences tied within rounding.
  EXPECT_EQ(Result(kSleep, Against(1.0)).Text("TestStatistic"), "21.5");
}

TEST(WilcoxonTest, TheMedianStandsInForAMissingTestValue) {
  ExpectFigures(Result(kSleep, Entry("variableName", "x")),
                {{"HypotheticalMedian", 0.35}, {"ObservedMedian", 0.35}, {"Condition/%1", 0.35}});
}

TEST(WilcoxonTest, TheHistogramStartsWithTheZeroDifferences) {
  const AlgorithmElement result = Result({{1}, {2}, {2}, {4}}, Against(2.0));
  EXPECT_EQ(result.Rows("Interval"), (Texts{"2;1;2;1", "0;1;2;4"}));
}

TEST(WilcoxonTest, WithoutADifferenceTheFiguresAreNotNumbers) {
  const AlgorithmElement result = Result({{2}, {2}}, Against(2.0));
  ExpectTexts(result, {{"TotalN", "0"}, {"StandardError", "0"}, {"StandardTestStatistic", "nan"}});
  EXPECT_EQ(result.Decision(), "retain") << "no number is below the level";
}

TEST(WilcoxonTest, EachFailureHasItsCodeAndNoIndices) {
  const auto variables =
      VariableListBuilder().Continuous("x").Nominal("letter", {"a", "b"}).Build();
  const TestSettings noValue = Entry("variableName", "x", "userSpecifyTestValue", "true");
  ExpectMessages("OWilcoxonSignedRanks", variables, {{1, 0}},
                 {{"no field", Entry(), Error(220812)},
                  {"an unknown one", Entry("variableName", "nobody"), Error(220803, {"nobody"})},
                  {"not continuous", Entry("variableName", "letter"), Error(220815, {"1"})},
                  {"no value", noValue, Error(220801)}});
  ExpectMessages("OWilcoxonSignedRanks", variables, {{QDMV::gMissingValue, 0}},
                 {{"no record", Against(0.0), Error(220003)}});
  ExpectTexts(RunEntry(variables, {{1, 0}}, "OWilcoxonSignedRanks", noValue),
              {{"Condition/%0", "__MISSING__"}, {"Condition/%1", "__MISSING__"}});
}

}  // namespace
