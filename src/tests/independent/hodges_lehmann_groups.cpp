#include "catalogue/cards/hodges_lehmann_groups.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <optional>
#include <vector>

#include "kit/order/order_statistics.h"
#include "kit/ranks/rank.h"
#include "kit/statistics/interval_ranks.h"
#include "kit/statistics/mann_whitney.h"
#include "kit/statistics/mann_whitney_exact.h"
#include "kit/statistics/order_statistic_limits.h"
#include "kit/summaries/quartiles.h"
#include "planning/two_group_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"
#include "report/extended_tables.h"
#include "report/two_group_tables.h"
#include "tests/independent/two_group_test.h"

namespace card = catalogue::hodges_lehmann_groups;

namespace {

/// Hodges-Lehmann estimate of the shift from group 1 to group 2, with its distribution-free
/// interval.
///
/// Formulas, limits, sources: docs/statistics/hodges_lehmann_groups.md.
///
/// One pass; the differences are not listed.
class NPARHodgesLehmannTwoIndep final : public NPARTwoGroupTest {
 public:
  explicit NPARHodgesLehmannTwoIndep(QDSettings* settings)
      : NPARTwoGroupTest(settings, card::kTwoGroupCodes, Passes::FiguresOnly) {}

  /// Also reads "confidenceLevel", a probability.
  XMLElement* WriteResults() override {
    return WriteAlgorithm(
        *this, {.card = card::kCard, .condition = TwoGroupCondition("HodgesLehmann", groups)},
        [this](XMLElement& algorithm) {
          AddFigures(algorithm, "StatisticsResult", {{"Estimate", estimate}});
          AddFigures(algorithm, "Asymptotic", {{"Lower", lower}, {"Upper", upper}});
        });
  }

 protected:
  void Prepare(const SettingsReader& settings) override { NPARTwoGroupTest::Prepare(settings); }

  void TakeUnits(const GroupTally::Units& units) override {
    units.AddTo(ranks);
    for (std::size_t i = 0; i < units.count; ++i) {
      if (units.Weight(i) >= 1) {
        values[units.GroupOf(i)].Add(units.values[i], units.Weight(i));
      }
    }
  }

  void ComputeFigures() override {
    ranks.CloseRun();
    for (WeightedValues& group : values) group.Sort();
    const GroupDifferences differences(values[TwoGroups::First], values[TwoGroups::Second]);
    estimate = differences.Median();
    const auto n1 = static_cast<double>(counts[0]);
    const auto n2 = static_cast<double>(counts[1]);
    const IntervalRanks limits(
        n1 * n2 * 0.5, std::sqrt(MannWhitneyVariance(n1, n2, ranks.TieSum())), confidenceLevel);
    lower = differences.Select(ToWideInteger(limits.below) + 1);
    upper = differences.Select(ToWideInteger(limits.last));
    if (wantsExtended) {
      if (!tally->HasNegativeWeight()) exact = FindExact(differences, limits);
      quartiles = {QuartilesOf(values[TwoGroups::First]), QuartilesOf(values[TwoGroups::Second])};
    }
    values = {};
  }

  void Extend(ExtendedFigures& figures) override {
    figures.Add("TotalN", TotalCount());
    if (exact) {
      figures.Add("AttainedLevel", exact->attainedLevel);
      figures.Add("LevelIsAttainable", exact->isAttainable ? 1 : 0);
      figures.Add("ExactLower", exact->lower);
      figures.Add("ExactUpper", exact->upper);
      figures.Add("ExactAttainedLevel", exact->ownLevel);
    }
    figures.Add(GroupsTable(std::array{SampleFigures{"Group0", counts[0], quartiles[0]},
                                       SampleFigures{"Group1", counts[1], quartiles[1]}}));
  }

 private:
  /// What the exact distribution without ties says of intervals.
  struct Exact {
    double attainedLevel = 0.0;  // of the asymptotic limits
    bool isAttainable = false;
    double lower = 0.0;
    double upper = 0.0;
    double ownLevel = 0.0;
  };

  [[nodiscard]] std::optional<Exact> FindExact(const GroupDifferences& differences,
                                               const IntervalRanks& limits) const {
    if (!HasExactMannWhitney(counts[0], counts[1])) return std::nullopt;
    const std::int64_t pairs = counts[0] * counts[1];
    std::vector<double> upTo = MannWhitneyProbabilities(counts[0], counts[1]);
    std::partial_sum(upTo.begin(), upTo.end(), upTo.begin());
    const auto cumulative = [&upTo](std::int64_t u) { return upTo[static_cast<std::size_t>(u)]; };
    const auto found = LimitsByOrderStatistics(pairs, confidenceLevel, cumulative);
    if (pairs < 2 || !found) return std::nullopt;
    // A rank outside the differences is that of the first or of the last one.
    const auto rankOf = [pairs](WideInteger rank) {
      return static_cast<std::int64_t>(std::clamp<WideInteger>(rank, 1, pairs));
    };
    const std::int64_t first = rankOf(ToWideInteger(limits.below) + 1);
    const std::int64_t last = rankOf(ToWideInteger(limits.last));
    return Exact{1.0 - cumulative(first - 1) - cumulative(pairs - last),
                 IsLevelAttainable(confidenceLevel, cumulative), differences.Select(found->lower),
                 differences.Select(found->upper), found->attainedLevel};
  }

  NPARRank ranks;  // for their ties
  std::array<WeightedValues, 2> values;
  double estimate = 0.0;
  double lower = 0.0;
  double upper = 0.0;
  // Only for the extended figures.
  std::optional<Exact> exact;
  std::array<Quartiles, 2> quartiles;
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const auto variables = ResolveTwoGroups(construction, card::kTwoGroupCodes);
  return AddTwoGroupTest<NPARHodgesLehmannTwoIndep>(construction, variables);
}
