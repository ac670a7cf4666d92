#include "tests/related/wilcoxon_pairs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/entry_cases.h"
#include "support/matchers.h"

namespace {

using testing::ElementsAre;

/// Pairs (first, second) to rows; the weight where there is one comes third.
struct WilcoxonCase {
  const char* catches;
  Rows rows;
  std::int32_t weightIndex;
  double rankSum, standardError, z, sig;
};

const double kNan = std::numeric_limits<double>::quiet_NaN();

// z and p from SciPy 1.11.4, wilcoxon(d, correction=False, mode="approx"), which leaves out zero
// differences; the weighted row is the second one with its last three records written as one.
const WilcoxonCase kCases[] = {
    {"statistic of the negative side; Hollander and Wolfe's depression scores, table 3.1",
     {{1.83, 0.878},
      {0.50, 0.647},
      {1.62, 0.598},
      {2.48, 2.05},
      {1.68, 1.06},
      {1.88, 1.29},
      {1.55, 1.06},
      {3.06, 3.14},
      {1.30, 1.29}},
     -1,
     5,
     std::sqrt(71.25),
     -2.073221072156823,
     0.038151710173415135},
    {"a zero takes no rank, and differences that rounding parts tie; Student's sleep data",
     {{0.7, 1.9},
      {-1.6, 0.8},
      {-0.2, 1.1},
      {-1.2, 0.1},
      {-0.1, -0.1},
      {3.4, 4.4},
      {3.7, 5.5},
      {0.8, 1.6},
      {0.0, 4.6},
      {2.0, 3.4}},
     -1,
     45,
     std::sqrt(71.25 - 6.0 / 48.0),
     2.6679112502793854,
     0.007632441648205508},
    {"a weight is that many records, less its fraction",
     {{0, 1, 1}, {0, 2, 2.9}, {3, 0, 1}, {1, 1, 4}, {0, 9, 0.5}},
     2,
     1 + 2.5 * 2,
     std::sqrt(4 * 5 * 9 / 24.0 - 6 / 48.0),
     1.0 / std::sqrt(7.375),
     std::erfc(1.0 / std::sqrt(7.375) / std::sqrt(2.0))},
    {"no difference: not a number, and no guard", {{1, 1}, {2, 2}}, -1, 0, 0, kNan, kNan},
};

TEST(WilcoxonPairsTest, FiguresAgreeWithSciPy) {
  for (const WilcoxonCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    NPARWilcoxonPairs test(PairSettings(0, 1, row.weightIndex));
    ASSERT_THAT(RunAllPasses(test, row.rows), IsOk());
    const AlgorithmElement result(test.WriteResults());
    EXPECT_THAT(result.Number("TestStatistic"), IsCloseTo(row.rankSum));
    EXPECT_THAT(result.Number("StandardError"), IsCloseTo(row.standardError));
    EXPECT_THAT(result.Number("StandardTestStatistic"), IsCloseTo(row.z, 1e-12));
    EXPECT_THAT(result.Number("AsymptoticSig2Tailed"), IsCloseTo(row.sig, 1e-12));
    EXPECT_EQ(result.Decision(), row.sig < 0.05 ? "reject" : "retain");
  }
}

TEST(WilcoxonPairsTest, DocumentHoldsCountsHistogramAndFigures) {
  NPARWilcoxonPairs test(PairSettings(1, 0, 2));
  ASSERT_THAT(RunAllPasses(test, {{3, 1, 2}, {1, 1, 3}, {QDMV::gMissingValue, 4, 1}, {0, 1, 1}}),
              IsOk());
  const AlgorithmElement result(test.WriteResults());
  EXPECT_THAT(result.ChildNames(),
              ElementsAre("StructuredTable Condition", "StructuredTable ContinuousDistribution",
                          "StructuredTable StatisticsResult"));
  EXPECT_EQ(result.Text("ConditionKey"), "R_WilcoxonSignedRanks_2");
  EXPECT_EQ(result.Text("%0"), "1");
  EXPECT_EQ(result.Text("%1"), "0");
  EXPECT_EQ(result.Text("NegativeDifferences"), "1");
  EXPECT_EQ(result.Text("Ties"), "3");
  EXPECT_EQ(result.Text("PositiveDifferences"), "2");
  EXPECT_THAT(result.Rows("Interval"), ElementsAre("1;2;3", "-1;2;0"));
  EXPECT_EQ(result.Text("TotalN"), "6");
}

TEST(WilcoxonPairsTest, TheSameFieldTwiceIsNoError) {
  NPARWilcoxonPairs test(PairSettings(0, 0));
  EXPECT_THAT(RunAllPasses(test, {{1}, {2}}), IsOk());
  EXPECT_EQ(AlgorithmElement(test.WriteResults()).Text("Ties"), "2");
}

TEST(WilcoxonPairsTest, NoWeightIsNoDataAndNoPairIsWrittenAsItStands) {
  NPARWilcoxonPairs empty(PairSettings(0, 1));
  EXPECT_THAT(RunAllPasses(empty, {}), HasCode(220003));
  NPARWilcoxonPairs single(RelatedSettings({0}));
  EXPECT_THAT(RunAllPasses(single, {{1}}), HasCode(221009));
  const AlgorithmElement result(single.WriteResults());
  EXPECT_EQ(result.Decision(), "unknown");
  EXPECT_EQ(result.Text("%0"), "-1");
  EXPECT_THAT(result.ChildNames(),
              ElementsAre("StructuredTable Condition", "StructuredTable WarningMessages"));
}

TEST(WilcoxonPairsTest, ConstructionTellsWhatIsWrongWithAnEntry) {
  ExpectMessages("RWilcoxonSignedRanks",
                 {{"no list", std::nullopt, {{221010, "error", {}}}},
                  {"unknown name", {{"x", "nobody"}}, {{221003, "error", {"nobody"}}}},
                  {"one name", {{"x"}}, {{221009, "error", {}}}},
                  {"count comes before kind", {{"g", "g", "g"}}, {{221009, "error", {}}}},
                  {"the first unfit field alone", {{"g", "g"}}, {{221004, "error", {"2"}}}},
                  {"a pair", {{"y", "x"}}, {}}},
                 [](TestSettings&) {});
}

}  // namespace
