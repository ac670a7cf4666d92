#include "catalogue/cards/mann_whitney.h"

#include <cstdint>
#include <optional>

#include "kit/groups/two_group_runs.h"
#include "kit/ranks/rank.h"
#include "kit/statistics/brunner_munzel.h"
#include "kit/statistics/mann_whitney.h"
#include "kit/statistics/mann_whitney_exact.h"
#include "kit/statistics/normal.h"
#include "kit/statistics/superiority.h"
#include "planning/two_group_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"
#include "report/extended_tables.h"
#include "report/two_group_tables.h"
#include "tests/independent/two_group_test.h"

namespace card = catalogue::mann_whitney;

namespace {

/// Mann-Whitney U test: does a continuous field tend to larger values in one of two groups?
///
/// Formulas, limits, sources: docs/statistics/mann_whitney.md.
///
/// U is that of group 1 as it stands, W the rank sum of group 2. The exact value decides where
/// there is one.
class NPARMannWU final : public NPARTwoGroupTest {
 public:
  explicit NPARMannWU(QDSettings* settings)
      : NPARTwoGroupTest(settings, card::kTwoGroupCodes, Passes::WithHistograms) {}

  XMLElement* WriteResults() override {
    return WriteAlgorithm(*this,
                          {.card = card::kCard,
                           .decidingSig = exactSig.value_or(approximation.sig),
                           .condition = TwoGroupCondition("MannWhitneyU", groups, false)},
                          [this](XMLElement& algorithm) {
                            AddTwoGroupTables(algorithm, groups, *tally, {counts[0], meanRanks[0]},
                                              {counts[1], meanRanks[1]});
                            AddNormalStatistics(algorithm,
                                                {{"TotalN", TotalCount()},
                                                 {"MannWhitneyU", mannWhitneyU},
                                                 {"WilcoxonW", wilcoxonW},
                                                 {"TestStatistic", mannWhitneyU}},
                                                approximation, exactSig);
                          });
  }

 protected:
  void TakeUnits(const GroupTally::Units& units) override {
    units.AddTo(ranks);
    if (wantsExtended) runs.Take(units);
  }

  void ComputeFigures() override {
    ranks.CloseRun();
    const auto n1 = static_cast<double>(counts[0]);
    const auto n2 = static_cast<double>(counts[1]);
    const double rankSum1 = ranks.GroupEntry(TwoGroups::First).rankSum;
    wilcoxonW = ranks.GroupEntry(TwoGroups::Second).rankSum;
    meanRanks = {rankSum1 / n1, wilcoxonW / n2};
    mannWhitneyU = MannWhitneyU(n1, n2, rankSum1);
    if (ExactMannWhitneyDecides(n1, n2)) {
      exactSig = ExactMannWhitneyP(counts[0], counts[1], mannWhitneyU);
    }
    approximation = MannWhitneyApproximation(mannWhitneyU, n1, n2, ranks.TieSum());
  }

  void Extend(ExtendedFigures& figures) override {
    const double deviation =
        mannWhitneyU - static_cast<double>(counts[0]) * static_cast<double>(counts[1]) * 0.5;
    AddNormalFigures(figures, deviation, approximation.standardError);
    if (!tally->HasNegativeWeight()) {
      runs.CloseRun();
      AddExact(figures);
      AddSuperiority(figures);
    }
    figures.Add(TwoGroupsTable(*tally, meanRanks));
  }

 private:
  void AddExact(ExtendedFigures& figures) const {
    if (!HasExactMannWhitney(counts[0], counts[1])) return;
    const MannWhitneyExact exact = ConditionalMannWhitney(runs.Kept());
    AddConditionalFigures(figures, exact.sigs);
    figures.Add("ConditionalExactPointProbability", exact.point);
  }

  void AddSuperiority(ExtendedFigures& figures) const {
    const Placements& placements = runs.GetPlacements();
    const std::array<double, 2> sizes{static_cast<double>(counts[0]),
                                      static_cast<double>(counts[1])};
    const double doubledPairs = 2.0 * sizes[0] * sizes[1];
    const double theta = static_cast<double>(placements.Sum(TwoGroups::Second)) / doubledPairs;
    const auto [lower, upper] = SuperiorityInterval(theta, sizes[0], sizes[1], confidenceLevel);
    // 2 theta - 1 from whole numbers, so that a difference from 0 keeps its digits.
    const double excess =
        static_cast<double>(placements.Sum(TwoGroups::Second) - placements.Sum(TwoGroups::First)) /
        doubledPairs;
    figures.Add("ProbabilityOfSuperiority", theta);
    figures.Add("ProbabilityOfSuperiorityLower", lower);
    figures.Add("ProbabilityOfSuperiorityUpper", upper);
    figures.Add("RankBiserial", excess);
    figures.Add("RankBiserialLower", 2.0 * lower - 1.0);
    figures.Add("RankBiserialUpper", 2.0 * upper - 1.0);

    const std::optional<double> first = placements.Scatter(TwoGroups::First);
    const std::optional<double> second = placements.Scatter(TwoGroups::Second);
    if (counts[0] < 2 || counts[1] < 2 || !first || !second) return;
    const auto test = BrunnerMunzel(excess * 0.5, sizes, {*first, *second}, confidenceLevel);
    if (!test) return;
    figures.Add("BrunnerMunzelStatistic", test->statistic);
    figures.Add("BrunnerMunzelDegreeOfFreedom", test->degreeOfFreedom);
    figures.Add("BrunnerMunzelSig2Tailed", test->sigs.twoSided);
    figures.Add("BrunnerMunzelSig1TailedLess", test->sigs.less);
    figures.Add("BrunnerMunzelSig1TailedGreater", test->sigs.greater);
    figures.Add("BrunnerMunzelLower", test->interval.lower);
    figures.Add("BrunnerMunzelUpper", test->interval.upper);
  }

  NPARRank ranks;
  TwoGroupRuns runs;  // only for the extended figures
  std::array<double, 2> meanRanks{0.0, 0.0};
  double mannWhitneyU = 0.0;
  double wilcoxonW = 0.0;
  NormalFigures approximation;
  std::optional<double> exactSig;
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const auto variables = ResolveTwoGroups(construction, card::kTwoGroupCodes);
  return AddTwoGroupTest<NPARMannWU>(construction, variables);
}
