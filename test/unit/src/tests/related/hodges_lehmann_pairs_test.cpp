#include "tests/related/hodges_lehmann_pairs.h"

#include "support/entry_run.h"

namespace {

QDSettings* EstimateSettings(double confidence, std::int32_t weightIndex = -1) {
  QDSettings* settings = PairSettings(0, 1, weightIndex);
  settings->AddNewSetting("confidenceLevel", confidence, std::string());
  return settings;
}

Rows PairsOf(const std::vector<double>& differences) {
  Rows rows;
  for (const double d : differences) rows.push_back({0.0, d});
  return rows;
}

struct EstimateCase {
  const char* catches;
  std::vector<double> differences;
  double confidence;
  double estimate, lower, upper;
};

// Hollander and Wolfe (1999), examples 3.3 and 3.4: estimate -0.46, interval from -0.786 to -0.010.
const std::vector<double> kScores{0.878 - 1.83, 0.647 - 0.5, 0.598 - 1.62, 2.05 - 2.48, 1.06 - 1.68,
                                  1.29 - 1.88,  1.06 - 1.55, 3.14 - 3.06,  1.29 - 1.3};
const std::vector<double> kSeven{1, 1, 2, 2, 2, 7, -3};
const std::vector<double> kTied{1, -1, 1, -1, 1, 5, 1, 1, 1, 2, 1, 5};
const std::vector<double> kTwelveOfOneSize{-1, 1, -1, 1, -1, 1, -1, 1, -1, 1, -1, 1};
using Differences = std::vector<double>;

// By listing and sorting the averages in Python, ranks of the interval with SciPy 1.11.4's
// norm.ppf.
const EstimateCase kCases[] = {
    {"one pair", Differences{5}, 0.95, 5, 5, 5},
    {"an odd number of averages; ranks beyond both ends", Differences{1, 2, 3}, 0.95, 2, 1, 3},
    {"an even number of averages", Differences{0.5, 1.5, 2.5, 4}, 0.95, 2.125, 0.5, 4},
    {"ranks inside", Differences{1, 2, 3, 4}, 0.5, 2.5, 2, 3},
    {"zero differences alone", Differences{0, 0}, 0.95, 0, 0, 0},
    {"a zero moves all differences and back", Differences{0, 1, 4, -2}, 0.95, 0.75, -2, 4},
    {"an interval on values between the ends", kSeven, 0.95, 1.5, -1, 4.5},
    {"many ties narrow it by a rank on either side", kTied, 0.9, 1, 1, 2},
    {"a rank between with t^3 - t over 48 and over 49", kTwelveOfOneSize, 0.8896, 0, 0, 0},
    {"full confidence takes the ends", kSeven, 1.0, 1.5, -3, 7},
    {"depression scores", kScores, 0.95, -0.46, -0.786, -0.01},
};

TEST(HodgesLehmannPairsTest, EstimateAndIntervalAreThoseOfTheListedAverages) {
  for (const EstimateCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    NPARHodgesLehmannPairs test(EstimateSettings(row.confidence));
    ASSERT_THAT(RunAllPasses(test, PairsOf(row.differences)), IsOk());
    ExpectFigures(AlgorithmElement(test.WriteResults()),
                  {{"Estimate", row.estimate}, {"Lower", row.lower}, {"Upper", row.upper}});
  }
}

TEST(HodgesLehmannPairsTest, AWeightIsThatManyRecordsLessItsFraction) {
  const Rows weighted = {{0, 1.5, 3.7}, {0, -2, 1}, {0, 4, 2}, {0, 99, 0.9}};
  NPARHodgesLehmannPairs byWeight(EstimateSettings(0.8, 2));
  NPARHodgesLehmannPairs byRecord(EstimateSettings(0.8));
  ASSERT_THAT(RunAllPasses(byWeight, weighted), IsOk());
  ASSERT_THAT(RunAllPasses(byRecord, PairsOf({1.5, 1.5, 1.5, -2, 4, 4})), IsOk());
  EXPECT_EQ(AlgorithmElement(byWeight.WriteResults()).Xml(),
            AlgorithmElement(byRecord.WriteResults()).Xml());
}

TEST(HodgesLehmannPairsTest, DocumentHasNoDecision) {
  NPARHodgesLehmannPairs test(EstimateSettings(0.95));
  ASSERT_THAT(RunAllPasses(test, {{1, 2}, {QDMV::gMissingValue, 9}}), IsOk());
  const AlgorithmElement result(test.WriteResults());
  EXPECT_EQ(result.Type() + result.Decision(), "confidence_interval(absent)");
  EXPECT_EQ(result.Outline(),
            "Condition(ConditionKey %0 %1) StatisticsResult(Estimate) Asymptotic(Lower Upper)");
  ExpectTexts(result,
              {{"ConditionKey", "R_HodgesLehman_2"}, {"Condition/%0", "0"}, {"Condition/%1", "1"}});
}

TEST(HodgesLehmannPairsTest, NoPairIsShownAsMissing) {
  NPARHodgesLehmannPairs single(RelatedSettings({0}));
  EXPECT_THAT(RunAllPasses(single, {{1}}), HasCode(222409));
  EXPECT_EQ(AlgorithmElement(single.WriteResults()).Text("%0"), "__MISSING__");
}

}  // namespace
