#include "tests/independent/mann_whitney.h"

#include "support/group_run.h"

namespace {

AlgorithmElement Result(const Sample& first, const Sample& second) {
  return RunOnSamples("IMannWhitneyU", {first, second});
}

struct MannWhitneyCase {
  const char* catches;
  Sample first, second;
  double u, w, standardError, z, asymptotic;
  std::optional<double> exact;
  const char* decision;
};

const Sample kOne{37.5};

// SciPy 1.17.1: mannwhitneyu(second, first, use_continuity=False, method=m).pvalue with m
// "asymptotic" and "exact"; z from its statistic and the formula of the standard error.
const MannWhitneyCase kCases[] = {
    {"ties correct the standard error and leave the exact value", kTiedFirst, kTiedSecond, 61, 116,
     12.209788997702665, 1.3104239559758553, 0.19005245385413927, 0.2110242698477993, "retain"},
    {"400 pairs have an exact value", Ascending(1, 20), Ascending(5.5, 20), 280, 490,
     36.968455021364726, 2.1640071232018374, 0.030463802722688817, 0.030411256038764864, "reject"},
    {"420 have none", Ascending(1, 20), Ascending(5.5, 21), 300, 531, 38.34057902536163,
     2.347382389307855, 0.01890584077833185, std::nullopt, "reject"},
    {"one against 400", kOne, Ascending(1, 400), 363, 80563, 115.75836902790226, 1.408105533697617,
     0.15909982270265588, 76.0 / 401.0, "retain"},
    {"one against 401", kOne, Ascending(1, 401), 364, 80965, 116.04704505788446, 1.4089113593409115,
     0.15886138023685992, std::nullopt, "retain"},
    {"the exact value decides against the asymptotic one", Ascending(1, 3), Ascending(4, 3), 9, 15,
     2.29128784747792, 1.9639610121239315, 0.0495346134356227, 0.1, "retain"},
};

TEST(MannWhitneyTest, FiguresAgreeWithSciPyAndTurnWithTheGroups) {
  for (const MannWhitneyCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result = Result(row.first, row.second);
    ExpectFigures(result, {{"MannWhitneyU", row.u},
                           {"TestStatistic", row.u},
                           {"WilcoxonW", row.w},
                           {"StandardError", row.standardError},
                           {"StandardTestStatistic", row.z, 1e-13},
                           {"AsymptoticSig2Tailed", row.asymptotic, 1e-13},
                           {"ExactSig2Tailed", row.exact, 1e-13}});
    EXPECT_EQ(result.Decision(), row.decision);
    const double pairs = static_cast<double>(row.first.size() * row.second.size());
    ExpectFigures(Result(row.second, row.first), {{"MannWhitneyU", pairs - row.u},
                                                  {"StandardTestStatistic", -row.z, 1e-13},
                                                  {"AsymptoticSig2Tailed", row.asymptotic, 1e-13},
                                                  {"ExactSig2Tailed", row.exact, 1e-13}});
  }
}

TEST(MannWhitneyTest, TheLimitOfTheExactValueIsOneOfSumsOfWeights) {
  const auto run = [](const Rows& rows) {
    return RunEntry(GroupedVariables(), rows, "IMannWhitneyU", GroupedEntry());
  };
  EXPECT_TRUE(run({{1, 0, 10}, {2, 1, 10}, {3, 0, 10}, {4, 1, 10}}).Has("ExactSig2Tailed"));
  EXPECT_FALSE(run({{1, 0, 15}, {2, 1, 15}, {3, 0, 15}, {4, 1, 15}}).Has("ExactSig2Tailed"));
}

TEST(MannWhitneyTest, ValuesWithinTheToleranceAreTied) {
  EXPECT_EQ(Result({1.0}, {1.0 + 5e-15}).Text("MannWhitneyU"), "0.5");
  EXPECT_EQ(Result({1.0}, {1.0 + 2e-14}).Text("MannWhitneyU"), "1");
}

TEST(MannWhitneyTest, WeightsFarBeyond32BitsKeepTheirSums) {
  const AlgorithmElement result = RunEntry(
      GroupedVariables(), {{1, 0, 2e9}, {2, 0, 2e9}, {3, 1, 2e9}, {4, 1, 2e9}, {5, 1, 2e9}},
      "IMannWhitneyU", GroupedEntry());
  ExpectTexts(
      result,
      {{"TotalN", "10000000000"}, {"Group0/N", "4000000000"}, {"AsymptoticSig2Tailed", "0"}});
  EXPECT_THAT(result.Number("MannWhitneyU"), IsCloseTo(2.4e19));
}

TEST(MannWhitneyTest, TheElementHoldsItsTablesInOrder) {
  const AlgorithmElement result = Result({0, 1, 1, 4}, {2, -3, 0});
  EXPECT_EQ(result.Outline(),
            "Condition(ConditionKey %0 %1) Group0(GroupIndex N MeanOfRank Interval[]) "
            "Group1(GroupIndex N MeanOfRank Interval[]) StatisticsResult(TotalN MannWhitneyU "
            "WilcoxonW TestStatistic StandardError StandardTestStatistic AsymptoticSig2Tailed "
            "ExactSig2Tailed)");
  // Ranks 2.5, 4.5, 4.5, 7 and 6, 1, 2.5.
  ExpectTexts(result, {{"Group0/GroupIndex", "0"},
                       {"Group0/MeanOfRank", "4.625"},
                       {"Group1/MeanOfRank", "3.16666666666667"}});
  // The zeros stand last, outside the bins.
  EXPECT_EQ(result.Rows("Group0/Interval"), (Texts{"2;1;1", "1;4;0"}));
  EXPECT_EQ(result.Rows("Group1/Interval"), (Texts{"1;1;1", "-3;2;0"}));
}

}  // namespace
