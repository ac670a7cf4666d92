#include "tests/related/wilcoxon_pairs.h"

#include <cmath>
#include <limits>

#include "support/entry_run.h"

namespace {

/// Pairs (first, second) to rows; the weight where there is one comes third.
struct WilcoxonCase {
  const char* catches;
  Rows rows;
  std::int32_t weightIndex;
  double rankSum, standardError, z, sig;
};

const double kNan = std::numeric_limits<double>::quiet_NaN();

// Student, Biometrika 6 (1908): extra hours of sleep.
const Rows kSleep{{0.7, 1.9}, {-1.6, 0.8}, {-0.2, 1.1}, {-1.2, 0.1}, {-0.1, -0.1},
                  {3.4, 4.4}, {3.7, 5.5},  {0.8, 1.6},  {0.0, 4.6},  {2.0, 3.4}};
const Rows kWeighted{{0, 1, 1}, {0, 2, 2.9}, {3, 0, 1}, {1, 1, 4}, {0, 9, 0.5}};
const Rows kEqual{{1, 1}, {2, 2}};

// z and p from SciPy 1.11.4, wilcoxon(d, correction=False, mode="approx"), which leaves out zero
// differences; the weighted row is one with its last three records written as one.
const WilcoxonCase kCases[] = {
    {"a zero takes no rank, and differences that rounding parts tie", kSleep, -1, 45,
     std::sqrt(71.25 - 6.0 / 48.0), 2.6679112502793854, 0.007632441648205508},
    {"a weight is that many records, less its fraction", kWeighted, 2, 1 + 2.5 * 2,
     std::sqrt(4 * 5 * 9 / 24.0 - 6 / 48.0), 1.0 / std::sqrt(7.375),
     std::erfc(1.0 / std::sqrt(7.375) / std::sqrt(2.0))},
    {"no difference: not a number, and no guard", kEqual, -1, 0, 0, kNan, kNan},
};

TEST(WilcoxonPairsTest, FiguresAgreeWithSciPy) {
  for (const WilcoxonCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    NPARWilcoxonPairs test(PairSettings(0, 1, row.weightIndex));
    ASSERT_THAT(RunAllPasses(test, row.rows), IsOk());
    const AlgorithmElement result(test.WriteResults());
    ExpectFigures(result, {{"TestStatistic", row.rankSum},
                           {"StandardError", row.standardError},
                           {"StandardTestStatistic", row.z, 1e-12},
                           {"AsymptoticSig2Tailed", row.sig, 1e-12}});
    EXPECT_EQ(result.Decision(), row.sig < 0.05 ? "reject" : "retain");
  }
}

TEST(WilcoxonPairsTest, DocumentHoldsCountsHistogramAndFigures) {
  NPARWilcoxonPairs test(PairSettings(1, 0, 2));
  ASSERT_THAT(RunAllPasses(test, {{3, 1, 2}, {1, 1, 3}, {QDMV::gMissingValue, 4, 1}, {0, 1, 1}}),
              IsOk());
  const AlgorithmElement result(test.WriteResults());
  EXPECT_EQ(result.Outline(),
            "Condition(ConditionKey %0 %1) ContinuousDistribution(NegativeDifferences Ties "
            "PositiveDifferences Interval[]) StatisticsResult(TotalN TestStatistic StandardError "
            "StandardTestStatistic AsymptoticSig2Tailed)");
  ExpectTexts(result, {{"ConditionKey", "R_WilcoxonSignedRanks_2"},
                       {"Condition/%0", "1"},
                       {"Condition/%1", "0"},
                       {"NegativeDifferences", "1"},
                       {"Ties", "3"},
                       {"PositiveDifferences", "2"},
                       {"TotalN", "6"}});
  EXPECT_EQ(result.Rows("Interval"), (Texts{"1;2;3", "-1;2;0"}));
}

TEST(WilcoxonPairsTest, TheSameFieldTwiceIsNoErrorAndNoPairIsWrittenAsItStands) {
  NPARWilcoxonPairs twice(PairSettings(0, 0));
  EXPECT_THAT(RunAllPasses(twice, {{1}, {2}}), IsOk());
  EXPECT_EQ(AlgorithmElement(twice.WriteResults()).Text("Ties"), "2");
  NPARWilcoxonPairs single(RelatedSettings({0}));
  EXPECT_THAT(RunAllPasses(single, {{1}}), HasCode(221009));
  EXPECT_EQ(AlgorithmElement(single.WriteResults()).Text("%0"), "-1");
}

}  // namespace
