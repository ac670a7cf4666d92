#include "tests/one_sample/wilcoxon.h"

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

struct WilcoxonCase {
  const char* catches;
  double value;
  double n, rankSum, z, sig;
};

// SciPy 1.17.1: wilcoxon(x - value, correction=False, mode="approx", zero_method="wilcox").
const WilcoxonCase kCases[] = {
    {"differences tied within rounding", 1.0, 10, 21.5, -0.6119741446385719, 0.5405548641319784},
    {"a zero difference leaves n", 0.0, 9, 31.0, 1.0069930921904569, 0.3139380937749148},
};

TEST(WilcoxonTest, FiguresAgreeWithSciPy) {
  for (const WilcoxonCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result = Result(kSleep, Against(row.value));
    ExpectFigures(result, {{"TotalN", row.n},
                           {"TestStatistic", row.rankSum},
                           {"StandardTestStatistic", row.z, 1e-13},
                           {"AsymptoticSig2Tailed", row.sig, 1e-13}});
    EXPECT_EQ(result.Decision(), "retain");
  }
}

TEST(WilcoxonTest, TheMedianStandsInForAMissingTestValue) {
  ExpectFigures(Result(kSleep, Entry("variableName", "x")),
                {{"HypotheticalMedian", 0.35}, {"ObservedMedian", 0.35}, {"Condition/%1", 0.35}});
}

TEST(WilcoxonTest, AWeightIsThatManyRecords) {
  const AlgorithmElement once = Result({{3, 2}, {-1, 3}, {2, 1}, {0, 4}}, Against(0.0));
  const Rows repeated{{3}, {3}, {-1}, {-1}, {-1}, {2}, {0}, {0}, {0}, {0}};
  EXPECT_EQ(once.Xml(), Result(repeated, Against(0.0)).Xml());
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
