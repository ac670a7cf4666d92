#include "host/render/effect_size.h"

#include <gtest/gtest.h>

#include <cmath>

namespace npar_host {
namespace {

ResultTest TestOf(const char* name, std::vector<ResultStatistic> statistics) {
  ResultTest test;
  test.name = name;
  test.classification = test.name.starts_with("I") ? "Independent_Samples" : "Related_Samples";
  test.statistics = std::move(statistics);
  test.conditionParameters = {"0", "1"};
  return test;
}

ResultGroup Group(const char* meanRank) { return {{0}, {{"", "MeanOfRank", meanRank}}, {}}; }

ResultDistribution Differences(const char* negative, const char* positive) {
  return {{{"", "NegativeDifferences", negative}, {"", "PositiveDifferences", positive}}, {}};
}

ResultTest MannWhitney() {
  // Five and five values without ties, rank sums 21 and 34: U = 34 - 15 = 19 of 25 pairs.
  ResultTest test = TestOf("IMannWhitneyU", {{"", "TotalN", "10"}});
  test.groups = {Group("4.2"), Group("6.8")};
  return test;
}

ResultTest WilcoxonPairs() {
  // Kerby (2014): rank sums 45 of 55 for and 10 against the hypothesis, r = 35 / 55.
  ResultTest test = TestOf("RWilcoxonSignedRanks", {{"", "TestStatistic", "45"}});
  test.differences = Differences("3", "7");
  return test;
}

ResultTest McNemar(const char* upper, const char* lower) {
  ResultTest test = TestOf("RMcNemar", {});
  test.tables = {{"CategoryFieldsComparison", {}, {}, {{"794", upper}, {lower, "570"}}}};
  return test;
}

ResultTest Binomial(const char* observed, const char* hypothesized) {
  ResultTest test = TestOf("OBinomial", {});
  test.tables = {{"TwoClassComparison", {}, {}, {{observed, "0"}, {hypothesized, "0"}}}};
  return test;
}

struct EffectSizeCase {
  const char* catches;
  ResultTest test;
  const char* symbol;
  double value;
};

// Values by hand from the formulas of docs/effect_sizes.md.
const EffectSizeCase kCases[] = {
    {"2 U / (n1 n2) - 1; the first group is the larger", MannWhitney(), "r", 2.0 * 19 / 25 - 1},
    {"share of the pairs' rank sums", WilcoxonPairs(), "r", 35.0 / 55},
    {"one sample: n is the total",
     TestOf("OWilcoxonSignedRanks", {{"", "TotalN", "4"}, {"", "TestStatistic", "1"}}), "r",
     (1.0 - 9.0) / 10},
    {"Hollander and Wolfe's rounding times: W = 11.142857 / (22 * 2)",
     TestOf(
         "RFriedmansTwoWayByRanks",
         {{"", "TotalN", "22"}, {"", "TestStatistic", "11.142857"}, {"", "DegreeOfFreedom", "2"}}),
     "W", 11.142857 / 44},
    {"the test's own figure", TestOf("RKendallsCoefficient", {{"", "KendallsW", "0.25"}}), "W",
     0.25},
    {"Agresti's approval table: 150 of 236 changes", McNemar("150", "86"), "g", 150.0 / 236 - 0.5},
    {"the larger of the changes in the other cell", McNemar("86", "150"), "g", 150.0 / 236 - 0.5},
    // 10 of 10 against 1/4: pi - 2 asin(1/2); z / sqrt(N) would be 1.6.
    {"no correlation above 1", Binomial("100", "25"), "h", 2.0943951023931953},
    {"fewer than hypothesised", Binomial("0", "50"), "h", -1.5707963267948966},
    {"root of chi-square over N",
     TestOf("OChiSquare", {{"", "TotalN", "100"}, {"", "TestStatistic", "9"}}), "w", 0.3},
    {"two columns", TestOf("IMedian", {{"", "TotalN", "64"}, {"", "TestStatistic", "16"}}), "V",
     0.5},
    {"sign of z kept", TestOf("RSign", {{"", "TotalN", "16"}, {"", "StandardTestStatistic", "-2"}}),
     "r", -0.5},
};

TEST(EffectSizeTest, AgreesWithHandComputation) {
  for (const EffectSizeCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const auto effect = FindEffectSize({}, row.test);
    ASSERT_TRUE(effect);
    EXPECT_EQ(effect->symbol, row.symbol);
    EXPECT_NEAR(effect->value, row.value, 1e-14);
  }
}

struct TotalCase {
  const char* catches;
  const char* values;
  const char* groups;
  bool listwise;
  std::optional<double> total;
};

TEST(EffectSizeTest, EpsilonSquaredNeedsTheNumberOfGroupedRecords) {
  const TotalCase cases[] = {
      {"both complete", "50", "50", false, 50.0},
      {"values missing", "41", "50", false, 41.0},
      {"groups missing", "50", "41", false, 41.0},
      {"both missing: on the same records or not?", "41", "41", false, std::nullopt},
      {"both missing, listwise: the same records", "41", "41", true, 41.0},
  };
  for (const TotalCase& row : cases) {
    SCOPED_TRACE(row.catches);
    ResultDocument document;
    document.totalFreq = 50.0;
    document.listwise = row.listwise;
    document.fields.resize(2);
    document.fields[0].distribution = ResultDistribution{{{"", "TotalN", row.values}}, {}};
    document.fields[1].distribution = ResultDistribution{{{"", "TotalN", row.groups}}, {}};
    const auto effect =
        FindEffectSize(document, TestOf("IKruskalWallis", {{"", "TestStatistic", "10"}}));
    ASSERT_EQ(effect.has_value(), row.total.has_value());
    EXPECT_EQ(EffectSizeGap(document, TestOf("IKruskalWallis", {{"", "TestStatistic", "10"}}))
                  .starts_with("No epsilon squared: "),
              !effect);
    if (effect) {
      EXPECT_DOUBLE_EQ(effect->value, 10.0 / (*row.total - 1.0));
      continue;
    }
    // Another test of the same fields tells, one of other fields does not.
    const ResultTest test = TestOf("IKruskalWallis", {{"", "TestStatistic", "10"}});
    document.tests = {TestOf("IMedian", {{"", "TotalN", "36"}})};
    document.tests[0].conditionParameters = {"1", "1"};
    EXPECT_FALSE(FindEffectSize(document, test));
    document.tests[0].conditionParameters = {"0", "1", "12.5"};
    ASSERT_TRUE(FindEffectSize(document, test));
    EXPECT_DOUBLE_EQ(FindEffectSize(document, test)->value, 10.0 / 35.0);
  }
}

TEST(EffectSizeTest, IsAbsentWhereItHasNoValue) {
  ResultTest failed = MannWhitney();
  failed.messages = {{220003, "error", {}, {}}};
  EXPECT_FALSE(FindEffectSize({}, failed));
  EXPECT_FALSE(FindEffectSize({}, McNemar("0", "0")));  // nobody changed
  EXPECT_FALSE(FindEffectSize({}, TestOf("RMcNemar", {})));
  EXPECT_FALSE(FindEffectSize({}, TestOf("RSign", {{"", "TotalN", "16"}})));
  EXPECT_FALSE(FindEffectSize(
      {}, TestOf("RSign", {{"", "TotalN", "16"}, {"", "StandardTestStatistic", "nan"}})));
  // Ties between the groups: the number of runs is a range.
  const ResultStatistic total{"", "TotalN", "16"};
  const ResultStatistic z{"MaximumRuns", "StandardTestStatistic", "-2"};
  const ResultTest tied = TestOf("IWaldWolfowitzRuns", {total, {"", "InterGroupTies", "1"}, z});
  EXPECT_FALSE(FindEffectSize({}, tied));
  EXPECT_EQ(EffectSizeGap({}, tied),
            "No effect size: ties between the groups leave more than one number of runs possible.");
  EXPECT_TRUE(
      FindEffectSize({}, TestOf("IWaldWolfowitzRuns", {total, {"", "InterGroupTies", "0"}, z})));
}

}  // namespace
}  // namespace npar_host
