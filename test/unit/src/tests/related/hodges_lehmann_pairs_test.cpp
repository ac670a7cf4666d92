#include "tests/related/hodges_lehmann_pairs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/entry_cases.h"
#include "support/matchers.h"

namespace {

using testing::ElementsAre;

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

// By listing and sorting the averages in Python, ranks of the interval with SciPy 1.11.4's
// norm.ppf.
const EstimateCase kCases[] = {
    {"one pair", {5}, 0.95, 5, 5, 5},
    {"an odd number of averages; ranks beyond both ends", {1, 2, 3}, 0.95, 2, 1, 3},
    {"an even number of averages, different values in the middle",
     {0.5, 1.5, 2.5, 4},
     0.95,
     2.125,
     0.5,
     4},
    {"ranks inside", {1, 2, 3, 4}, 0.5, 2.5, 2, 3},
    {"zero differences alone", {0, 0}, 0.95, 0, 0, 0},
    {"a zero moves all differences and back", {0, 1, 4, -2}, 0.95, 0.75, -2, 4},
    {"an interval on values between the ends", {1, 1, 2, 2, 2, 7, -3}, 0.95, 1.5, -1, 4.5},
    {"many ties narrow it by a rank on either side",
     {1, -1, 1, -1, 1, 5, 1, 1, 1, 2, 1, 5},
     0.9,
     1,
     1,
     2},
    {"full confidence takes the ends", {1, 1, 2, 2, 2, 7, -3}, 1.0, 1.5, -3, 7},
    // Hollander and Wolfe (1999), examples 3.3 and 3.4: estimate -0.46, interval from -0.786 to
    // -0.010.
    {"depression scores",
     {0.878 - 1.83, 0.647 - 0.5, 0.598 - 1.62, 2.05 - 2.48, 1.06 - 1.68, 1.29 - 1.88, 1.06 - 1.55,
      3.14 - 3.06, 1.29 - 1.3},
     0.95,
     -0.46,
     -0.786,
     -0.01},
};

TEST(HodgesLehmannPairsTest, EstimateAndIntervalAreThoseOfTheListedAverages) {
  for (const EstimateCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    NPARHodgesLehmannPairs test(EstimateSettings(row.confidence));
    ASSERT_THAT(RunAllPasses(test, PairsOf(row.differences)), IsOk());
    const AlgorithmElement result(test.WriteResults());
    EXPECT_THAT(result.Number("Estimate"), IsCloseTo(row.estimate));
    EXPECT_THAT(result.Number("Lower"), IsCloseTo(row.lower));
    EXPECT_THAT(result.Number("Upper"), IsCloseTo(row.upper));
    EXPECT_EQ(test.GetPassesLeft(), 0);
  }
}

TEST(HodgesLehmannPairsTest, AWeightIsThatManyRecordsLessItsFraction) {
  const Rows weighted = {{0, 1.5, 3.7}, {0, -2, 1}, {0, 4, 2}, {0, 99, 0.9}};
  NPARHodgesLehmannPairs byWeight(EstimateSettings(0.8, 2));
  NPARHodgesLehmannPairs byRecord(EstimateSettings(0.8));
  ASSERT_THAT(RunAllPasses(byWeight, weighted), IsOk());
  ASSERT_THAT(RunAllPasses(byRecord, PairsOf({1.5, 1.5, 1.5, -2, 4, 4})), IsOk());
  const AlgorithmElement expected(byRecord.WriteResults());
  const AlgorithmElement found(byWeight.WriteResults());
  EXPECT_EQ(found.Xml(), expected.Xml());
}

TEST(HodgesLehmannPairsTest, DocumentHasNoDecision) {
  NPARHodgesLehmannPairs test(EstimateSettings(0.95));
  ASSERT_THAT(RunAllPasses(test, {{1, 2}, {QDMV::gMissingValue, 9}}), IsOk());
  EXPECT_EQ(
      AlgorithmElement(test.WriteResults()).Xml(),
      R"(<Algorithm name="RHodgesLehmannEstimatePairs" type="confidence_interval" classification="Related_Samples">
 <StructuredTable name="Condition">
  <Attribute name="ConditionKey" value="R_HodgesLehman_2" />
  <Attribute name="%0" value="0" />
  <Attribute name="%1" value="1" />
 </StructuredTable>
 <StructuredTable name="StatisticsResult">
  <Attribute name="Estimate" value="1" />
 </StructuredTable>
 <StructuredTable name="Asymptotic">
  <Attribute name="Lower" value="1" />
  <Attribute name="Upper" value="1" />
 </StructuredTable>
</Algorithm>
)");
}

TEST(HodgesLehmannPairsTest, NoWeightIsNoDataAndNoPairIsNoEstimate) {
  NPARHodgesLehmannPairs empty(EstimateSettings(0.95, 2));
  EXPECT_THAT(RunAllPasses(empty, {{1, 2, 0.5}}), HasCode(220003));
  NPARHodgesLehmannPairs single(RelatedSettings({0}));
  EXPECT_THAT(RunAllPasses(single, {{1}}), HasCode(222409));
  const AlgorithmElement result(single.WriteResults());
  EXPECT_EQ(result.Text("%0"), "__MISSING__");
  EXPECT_THAT(result.ChildNames(),
              ElementsAre("StructuredTable Condition", "StructuredTable WarningMessages"));
}

TEST(HodgesLehmannPairsTest, ConstructionTellsWhatIsWrongWithAnEntry) {
  ExpectMessages("RHodgesLehmannEstimatePairs",
                 {{"no list", std::nullopt, {{222410, "error", {}}}},
                  {"unknown name", {{"x", "nobody"}}, {{222403, "error", {"nobody"}}}},
                  {"one name", {{"x"}}, {{222409, "error", {}}}},
                  {"an unfit field", {{"x", "g"}}, {{222404, "error", {"2"}}}},
                  {"a pair", {{"y", "x"}}, {}}},
                 [](TestSettings&) {});
}

}  // namespace
