#include "tests/independent/moses.h"

#include <algorithm>
#include <cmath>

#include "catalogue/cards/moses.h"
#include "kit/statistics/moses.h"
#include "planning/two_group_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"
#include "report/extended_tables.h"
#include "report/two_group_tables.h"

namespace card = catalogue::moses;

NPARMoses::NPARMoses(QDSettings* settings)
    : NPARTwoGroupTest(settings, card::kTwoGroupCodes, Passes::WithHistograms) {}

void NPARMoses::Prepare(const SettingsReader& settings) {
  std::int32_t given = 0;
  if (settings.Find("NumberOfOutliers", given)) givenOutliers = given;
  NPARTwoGroupTest::Prepare(settings);
}

void NPARMoses::TakeUnits(const GroupTally::Units& units) { units.AddTo(ranks); }

void NPARMoses::ComputeFigures() {
  ranks.CloseRun();
  for (std::size_t group = 0; group < counts.size(); ++group) {
    const double rankSum = ranks.GroupEntry(static_cast<double>(group)).rankSum;
    meanRanks[group] = rankSum / static_cast<double>(counts[group]);
  }
  const std::int64_t control = counts[TwoGroups::First];
  outliers = givenOutliers ? *givenOutliers : std::max<std::int64_t>(1, control / 20);
  if (control - 2 * outliers < 1) {
    Fail(card::kBadOutliers);
    return;
  }
  ends = ControlRanks({1, outliers + 1, control - outliers, control});
}

void NPARMoses::TakeUnitsAgain(const GroupTally::Units& units) { ends.Add(units); }

void NPARMoses::Finish() {
  ends.CloseRun();
  observed = SpanOf(0, ends.Of(0), ends.Of(3));
  trimmed = SpanOf(outliers, ends.Of(1), ends.Of(2));
}

void NPARMoses::Extend(ExtendedFigures& figures) { figures.Add(TwoGroupsTable(*tally, meanRanks)); }

NPARMoses::Span NPARMoses::SpanOf(std::int64_t trimmedUnits, double first, double last) const {
  const std::int64_t length = TruncateToInt64(std::floor(last - first + 1.0 + 0.5));
  return {length,
          MosesSpanTail(counts[TwoGroups::First], counts[TwoGroups::Second], trimmedUnits, length)};
}

XMLElement* NPARMoses::WriteResults() {
  return WriteAlgorithm(*this,
                        {.card = card::kCard,
                         .decidingSig = trimmed.sig,
                         .condition = TwoGroupCondition("Moses", groups)},
                        [this](XMLElement& algorithm) {
                          AddTwoGroupTables(algorithm, groups, *tally, {counts[0], meanRanks[0]},
                                            {counts[1], meanRanks[1]});
                          AddFigures(algorithm, "StatisticsResult",
                                     {{"TotalN", TotalCount()},
                                      {"NumberOfOutliers", outliers},
                                      {"ObservedControlSpan", observed.length},
                                      {"ExactSig1TailedObserved", observed.sig},
                                      {"TestStatistic", trimmed.length},
                                      {"ExactSig1Tailed", trimmed.sig}});
                        });
}

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const auto variables = ResolveTwoGroups(construction, card::kTwoGroupCodes);
  if (construction.ReadFlag("userSpecifyNumberOfOutliers")) {
    std::int32_t outliers = -1;
    static_cast<void>(construction.Read("NumberOfOutliers", outliers));
    if (outliers < 0) construction.Fail(card::kBadOutliers);
    construction.Put("NumberOfOutliers", outliers);
  }
  return AddTwoGroupTest<NPARMoses>(construction, variables);
}
