#include <algorithm>
#include <limits>
#include <numeric>

#include "support/group_run.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

const struct {
  const char* entry;
  std::vector<const char*> figures;
} kGroupTests[] = {
    {"IMannWhitneyU", {"MannWhitneyU", "StandardError", "ExactSig2Tailed"}},
    {"IWaldWolfowitzRuns",
     {"InterGroupTies", "MinimumRuns/TestStatistic", "MaximumRuns/TestStatistic"}},
    {"IMoses", {"ObservedControlSpan", "ExactSig1TailedObserved"}},
    {"IKruskalWallis", {"TestStatistic", "AsymptoticSig2Tailed"}},
    {"IJonckheereTerpstra", {"TestStatistic", "StandardError"}},
};

TEST(InfinitiesTest, RankAsTheLargestNumbersDoInEveryOrderOfTheRecords) {
  const auto texts = [](const Rows& rows, const auto& test) {
    const AlgorithmElement result = RunEntry(GroupedVariables(), rows, test.entry, GroupedEntry());
    Texts found;
    for (const char* path : test.figures) found.push_back(result.Text(path));
    return found;
  };
  for (const double sign : {1.0, -1.0}) {
    Rows rows = GroupedRows({{1, 2, sign * kInfinity}, {4, sign * kInfinity, 9}});
    const Rows finite = GroupedRows({{1, 2, sign * 99}, {4, sign * 99, 9}});
    for (const auto& test : kGroupTests) {
      SCOPED_TRACE(test.entry);
      const Texts expected = texts(finite, test);
      for (std::size_t turn = 0; turn < rows.size(); ++turn) {
        std::rotate(rows.begin(), rows.begin() + 1, rows.end());
        EXPECT_EQ(texts(rows, test), expected);
        EXPECT_EQ(texts(Rows(rows.rbegin(), rows.rend()), test), expected);
      }
    }
    EXPECT_EQ(texts(rows, kGroupTests[0])[0], "6.5");
  }
}

// By hand: the differences are -inf -inf 0 2 3 7 8 inf inf.
TEST(InfinitiesTest, OfTwoGroupsDifferByZero) {
  ExpectTexts(RunOnSamples("IHodgesLehmannEstimateGroups", {{1, 2, kInfinity}, {4, kInfinity, 9}}),
              {{"Estimate", "3"}, {"Lower", "-inf"}, {"Upper", "inf"}});
}

// By hand: the differences are 0, 2 and one infinity of each sign; their averages three times -inf,
// 0 0 1 2 and three times inf.
TEST(InfinitiesTest, OfAPairDifferByZero) {
  const QDVarList variables = VariableListBuilder().Continuous("x").Continuous("y").Build();
  const Rows rows{{kInfinity, kInfinity}, {0, kInfinity}, {2, 4}, {kInfinity, 5}};
  const auto result = [&](const char* entry) {
    return RunEntry(variables, rows, entry, Entry("variableName", Texts{"x", "y"}));
  };
  ExpectTexts(result("RHodgesLehmannEstimatePairs"),
              {{"Estimate", "0.5"}, {"Lower", "-inf"}, {"Upper", "inf"}});
  // Sizes 2 and twice infinity, of which one is negative.
  ExpectTexts(result("RWilcoxonSignedRanks"), {{"TestStatistic", "3.5"}});
}

}  // namespace
