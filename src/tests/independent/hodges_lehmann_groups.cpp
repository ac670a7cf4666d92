#include "tests/independent/hodges_lehmann_groups.h"

#include <cmath>

#include "catalogue/cards/hodges_lehmann_groups.h"
#include "kit/statistics/interval_ranks.h"
#include "kit/statistics/mann_whitney.h"
#include "planning/two_group_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"
#include "report/two_group_tables.h"

namespace card = catalogue::hodges_lehmann_groups;

NPARHodgesLehmannTwoIndep::NPARHodgesLehmannTwoIndep(QDSettings* settings)
    : NPARTwoGroupTest(settings, card::kTwoGroupCodes, Passes::FiguresOnly) {}

void NPARHodgesLehmannTwoIndep::Prepare(const SettingsReader& settings) {
  NPARTwoGroupTest::Prepare(settings);
}

void NPARHodgesLehmannTwoIndep::TakeUnits(const GroupTally::Units& units) {
  units.AddTo(ranks);
  for (std::size_t i = 0; i < units.count; ++i) {
    if (units.Weight(i) >= 1) {
      values[units.GroupOf(i)].Add(units.values[i], units.Weight(i));
    }
  }
}

void NPARHodgesLehmannTwoIndep::ComputeFigures() {
  ranks.CloseRun();
  for (WeightedValues& group : values) group.Sort();
  const GroupDifferences differences(values[TwoGroups::First], values[TwoGroups::Second]);
  estimate = differences.Median();
  const auto n1 = static_cast<double>(counts[0]);
  const auto n2 = static_cast<double>(counts[1]);
  const IntervalRanks limits(n1 * n2 * 0.5, std::sqrt(MannWhitneyVariance(n1, n2, ranks.TieSum())),
                             confidenceLevel);
  lower = differences.Select(ToWideInteger(limits.below) + 1);
  upper = differences.Select(ToWideInteger(limits.last));
  values = {};
}

XMLElement* NPARHodgesLehmannTwoIndep::WriteResults() {
  return WriteAlgorithm(
      *this, {.card = card::kCard, .condition = TwoGroupCondition("HodgesLehmann", groups)},
      [this](XMLElement& algorithm) {
        AddFigures(algorithm, "StatisticsResult", {{"Estimate", estimate}});
        AddFigures(algorithm, "Asymptotic", {{"Lower", lower}, {"Upper", upper}});
      });
}

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const auto variables = ResolveTwoGroups(construction, card::kTwoGroupCodes);
  return AddTwoGroupTest<NPARHodgesLehmannTwoIndep>(construction, variables);
}
